#pragma once

#include <ctime>

#include "pscstream.h"
#include "psdata.h"
#include "psostream.h"
#include "psresult.h"

class psConditions;
class psTest;
class psTestList;

// Frames and items of the report blocks, and the texts that need no test. The lines of a frame come
// with their line end.
class psReportFormat {
public:
    static psString firstLine();
    static psString lastLine();
    static psString sepLine();
    // Whether an item ends its line, as it does at first. As a cell of a table it must not.
    void setEndLine(bool on) { m_endLine = on; }
    // " Label    : value" with the label in 9 characters.
    psString getPieceItem(const psString& label, const psString& value) const;
    psString getItems(const psDataList& items) const; // one after the other
    // "hh:mm:ss" of whole seconds; from 100 hours on "UNKNOWN (Very large value)".
    static psString getTimeStr(double seconds);
    // ctime's text without the line end.
    static psString getDateStr(time_t t);

private:
    bool m_endLine = true;
};

// "NAME, x2, 2.40 GHz, Max cache size 266240 K": brand or "Unknown CPU", then count, frequency and
// cache where known (0: not).
psString psProcessorText(const psString& brand, int processors, int freqMHz, int cacheBytes);

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

class psReportTestTitle {
public:
    explicit psReportTestTitle(const psTest& test);
    const psDataList& items() const { return m_items; }

private:
    psDataList m_items;
};
psOStream& operator<<(psOStream& out, const psReportTestTitle& report);
// Writes nothing: the record that follows the test says the same in its columns.
psCStream& operator<<(psCStream& table, const psReportTestTitle& report);

// The name of a class as the table shows it: without the namespaces around it.
psString psWithoutNamespaces(const psString& typeName);

// The record of one finished test.
class psReportTestResult {
public:
    psReportTestResult() = default; // its table form is the header line
    explicit psReportTestResult(psTest& test);
    const psStringList& cells() const { return m_cells; }
    bool isHeader() const { return m_cells.empty(); }
    psResult result() const { return m_result; }
    bool measuredNothing() const { return m_measuredNothing; }
    const psString& text() const { return m_text; }

private:
    psStringList m_cells;
    psString m_text;
    psResult m_result = PS_UNDEFINED;
    bool m_measuredNothing = false;
};
psOStream& operator<<(psOStream& out, const psReportTestResult& report);
psCStream& operator<<(psCStream& table, const psReportTestResult& report);

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
