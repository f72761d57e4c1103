#pragma once

#include "pscstream.h"

// The fixed columns of the performance table: the same for every test of a run, so that the table
// loads with one call into whatever reads comma-separated values.
//   Function,Types | the registered parameter columns | Clocks,Unit,Rate,Result,Comment[,Interest]

// Works out psTest::m_numParmsColm and m_numResultColm from what was registered and chosen.
void psSetTableColumns();
// The name line's cells.
void psFuncTitleToCStream(psCStream& table);
void psParmsTitleToCStream(psCStream& table);
void psResultTitleToCStream(psCStream& table);
