// The choice of the code tables of a block, and of the table for each group of symbols.
#pragma once

#include "format.h"

namespace ntk::bz2huff {

// How a block is to be encoded.
struct Plan {
    int tables;
    int groups;
    Ntk8u lengths[maxTables][maxAlphabet];
    Ntk8u selectors[maxSelectors]; // the table of each group
};

// symbols: `count` of them at any address, 1 to maxBlockSymbols; those outside the alphabet are
// ignored.
void choosePlan(const Ntk16u* symbols, int count, int alphabet, Plan& plan);

} // namespace ntk::bz2huff
