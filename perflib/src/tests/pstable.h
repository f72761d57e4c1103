#pragma once

#include "pscstream.h"
#include "psmeasurement.h"

class psTest;

// The fixed columns of the performance table: the same for every test of a run, so that the table
// loads with one call into whatever reads comma-separated values.
//   Function,Types | the registered parameter columns |
//   Clocks,Unit,Rate,Result,Comment[,Interest],Spread

// A column: its name and how its cell is made of a record. The test is asked for what it may write
// in its own way (psTest::formatClocks).
struct psTableColumn {
    const char* name;
    psString (*cell)(psTest& test, const psMeasurement& record);
    bool (*isWanted)(); // null: always
};

// Works out psTest::m_numParmsColm and m_numResultColm from what was registered and chosen.
void psSetTableColumns();

// The three groups of a line: names, and cells of one record.
void psFuncTitleToCStream(psCStream& table);
void psParmsTitleToCStream(psCStream& table);
void psResultTitleToCStream(psCStream& table);
void psResultToCStream(psCStream& table, psTest& test, const psMeasurement& record);
// The values that the test has added, each in the column of its name; other columns stay empty.
void psValuesToCStream(psCStream& table, const psMeasurement& record);
