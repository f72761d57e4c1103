#pragma once

#include "pscstream.h"
#include "psdata.h"
#include "psostream.h"
#include "psresult.h"

class psTest;

// What one test writes at its beginning and at its end.

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
