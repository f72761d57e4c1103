#include "pstable.h"

#include "psbase.h"
#include "pstest.h"

namespace {
constexpr int functionColumns = 2;
constexpr int resultColumns = 5;
constexpr int unnamedParmColumns = 8;
constexpr int mostParmColumns =
    psCStream::maxColumns - functionColumns - resultColumns - 1; // 1: 'Interest'

int parmColumns() {
    const int count = g_pParmColumns ? g_pParmColumns->count() : unnamedParmColumns;
    return count < mostParmColumns ? count : mostParmColumns;
}
} // namespace

void psSetTableColumns() {
    psTest::m_numParmsColm = functionColumns + parmColumns();
    psTest::m_numResultColm = resultColumns + (psTest::m_hot ? 1 : 0);
}

void psFuncTitleToCStream(psCStream& table) {
    table << "Function"
          << "Types";
}

void psParmsTitleToCStream(psCStream& table) {
    if (g_pParmColumns) {
        for (const psString& name : *g_pParmColumns) {
            table << name;
        }
    } else {
        for (int i = 1; i <= unnamedParmColumns; i++) {
            table << "Parm" + psText(i);
        }
    }
    table.skipToColm(psTest::m_numParmsColm);
}

void psResultTitleToCStream(psCStream& table) {
    table << "Clocks"
          << "Unit"
          << "Rate"
          << "Result"
          << "Comment";
    if (psTest::m_hot) {
        table << "Interest";
    }
}
