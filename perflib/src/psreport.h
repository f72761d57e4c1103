#pragma once

#include <ctime>

#include "pscstream.h"
#include "psdata.h"
#include "psostream.h"

class psConditions;
class psTest;
class psTestList;

// Frames of the report blocks, and the texts that need no test.
class psReportFormat {
public:
    static psString firstLine();
    static psString lastLine();
    static psString sepLine();
    // " Label    : value" with the label in 9 characters.
    static psString getPieceItem(const psString& label, const psString& value);
    // "hh:mm:ss" of whole seconds; hours may have more digits. From 100 hours on the text
    // "UNKNOWN (Very large value)".
    static psString getTimeStr(double seconds);
    // ctime's text without the line end.
    static psString getDateStr(time_t t);
};

// "NAME, 2 x 2.40 GHz, Max cache size 266240 K": brand or "Unknown CPU", count and frequency
// where known (0: not), cache where known.
psString psProcessorText(const psString& brand, int processors, int freqMHz, int cacheBytes);

// Processor, OS, computer, library and start time, written before the first test.
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
// All items on one line.
void psTitleToSummary(psCStream& summary, const psReportTitle& report);

class psReportTestTitle {
public:
    explicit psReportTestTitle(const psTest& test);
    const psDataList& items() const { return m_items; }

private:
    psDataList m_items;
};
psOStream& operator<<(psOStream& out, const psReportTestTitle& report);

// The record of one finished test.
class psReportTestResult {
public:
    psReportTestResult() = default; // its table form is the header line
    explicit psReportTestResult(psTest& test);
    const psStringList& cells() const { return m_cells; }
    bool isHeader() const { return m_cells.empty(); }
    bool measuredNothing() const { return m_measuredNothing; }
    const psString& text() const { return m_text; }

private:
    psStringList m_cells;
    psString m_text;
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
// them a test covers, with mode -1 the tests' function names alone.
class psReportList {
public:
    psReportList(const psTestList& tests, const psConditions& conditions, int mode);
    const psStringList& lines() const { return m_lines; }

private:
    psStringList m_lines;
};
psOStream& operator<<(psOStream& out, const psReportList& report);
psCStream& operator<<(psCStream& table, const psReportList& report);
