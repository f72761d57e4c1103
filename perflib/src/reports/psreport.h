#pragma once

#include "pscstream.h"
#include "psdata.h"
#include "psostream.h"

class psConditions;
class psTestList;

// Processor, OS, computer, library and start time, written before the first test. Always five
// items, so that the readers of a table know how many lines to skip. Never waits for the
// processor's frequency.
class psReportTitle {
public:
    explicit psReportTitle(const psTestList& tests);
    const psDataList& items() const { return m_items; }

private:
    psDataList m_items;
};
psOStream& operator<<(psOStream& out, const psReportTitle& report);
// One line of two cells per item.
psCStream& operator<<(psCStream& table, const psReportTitle& report);
// All items on one line, each in a cell as the text has it.
void psTitleToSummary(psCStream& summary, const psReportTitle& report);

// The closing summary.
class psReportEnd {
public:
    explicit psReportEnd(const psTestList& tests);
    const psDataList& items() const { return m_items; }

private:
    psDataList m_items;
};
psOStream& operator<<(psOStream& out, const psReportEnd& report);
psCStream& operator<<(psCStream& table, const psReportEnd& report);

// What "-e" prints: the selected tests; with mode 1 also the library's functions and which of
// them any test covers, with mode -1 the tests' function names alone, each once.
class psReportList {
public:
    psReportList(const psTestList& tests, const psConditions& conditions, int mode);
    const psStringList& lines() const { return m_lines; } // without line ends
    const psList<psStringList>& rows() const { return m_rows; }

private:
    void addTests(const psTestList& tests, const psConditions& conditions);
    void addFunctions(const psTestList& tests);
    void addNames(const psTestList& tests, const psConditions& conditions);
    void addTable(const psList<psStringList>& rows);

    psStringList m_lines;
    psList<psStringList> m_rows; // the same as cells
};
psOStream& operator<<(psOStream& out, const psReportList& report);
psCStream& operator<<(psCStream& table, const psReportList& report);

// The functions worth a test: those of a library without its services (initialisers, allocators,
// getters and setters), told by their names.
psStringList createFuncList(const psStringList& names);
