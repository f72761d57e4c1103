#include "pstable.h"

#include <algorithm>
#include <iterator>

#include "psbase.h"
#include "pscputick_gcc.h"
#include "pstestformat.h"
#include "pstest.h"

namespace {

// A result column that is added here has a name, a cell and a place in every line.
constexpr psTableColumn resultColumns[] = {
    {"Clocks",
     [](psTest& test, const psMeasurement& m) {
         return m.isMeasured() ? test.formatClocks(m.clocksPerUnit()) : psString();
     },
     nullptr},
    {"Unit", [](psTest&, const psMeasurement& m) { return m.unit; }, nullptr},
    {"Rate",
     [](psTest& test, const psMeasurement& m) {
         const bool has = m.isMeasured() && m.flopsPerCall > 0 && m.times.clocksPerCall > 0;
         return has ? test.formatClocks(psCpuTicker::getFreq() * m.flopsPerCall /
                                        m.times.clocksPerCall)
                    : psString();
     },
     nullptr},
    {"Result",
     [](psTest&, const psMeasurement& m) { return psString(psResultShortName(m.result)); },
     nullptr},
    {"Comment", [](psTest&, const psMeasurement& m) { return m.comment; }, nullptr},
    {"Interest",
     [](psTest&, const psMeasurement& m) { return psString(m.hot && !m.deprecated ? "+" : ""); },
     [] { return psTest::m_hot != 0; }},
    {"Spread", [](psTest&, const psMeasurement& m) { return psSpreadText(m); }, nullptr},
};

constexpr int functionColumns = 2;
constexpr int unnamedParmColumns = 8;
constexpr int mostParmColumns =
    psCStream::maxColumns - functionColumns - static_cast<int>(std::size(resultColumns));

bool isWanted(const psTableColumn& column) {
    return !column.isWanted || column.isWanted();
}

psStringList parmColumns() {
    psStringList names;
    if (!g_pParmColumns) {
        for (int i = 1; i <= unnamedParmColumns; i++) {
            names.append("Parm" + psText(i));
        }
        return names;
    }
    for (const psString& name : *g_pParmColumns) {
        if (names.count() < mostParmColumns) {
            names.append(name);
        }
    }
    return names;
}
} // namespace

void psSetTableColumns() {
    psTest::m_numParmsColm = functionColumns + parmColumns().count();
    psTest::m_numResultColm = static_cast<int>(
        std::count_if(std::begin(resultColumns), std::end(resultColumns), isWanted));
}

void psFuncTitleToCStream(psCStream& table) {
    table << "Function"
          << "Types";
}

void psParmsTitleToCStream(psCStream& table) {
    for (const psString& name : parmColumns()) {
        table << name;
    }
    table.skipToColm(psTest::m_numParmsColm);
}

void psResultTitleToCStream(psCStream& table) {
    for (const psTableColumn& column : resultColumns) {
        if (isWanted(column)) {
            table << column.name;
        }
    }
}

void psResultToCStream(psCStream& table, psTest& test, const psMeasurement& record) {
    for (const psTableColumn& column : resultColumns) {
        if (isWanted(column)) {
            table << column.cell(test, record);
        }
    }
}

void psValuesToCStream(psCStream& table, const psMeasurement& record) {
    for (const psString& name : parmColumns()) {
        const psValue* const value = record.values.find(name);
        table << (value ? psValueText(*value) : psString());
    }
}
