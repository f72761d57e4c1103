// Huffman code lengths, and the canonical codes that follow from them.
#pragma once

#include "format.h"

namespace ntk::bz2huff {

// Lengths, 1 to maxEncodedCodeBits, of codes that are short for frequent symbols. A frequency of 0
// counts as 1: every symbol gets a code. Frequencies sum up to at most maxBlockSymbols.
void makeCodeLengths(const int* frequencies, int alphabet, Ntk8u* lengths);

struct Code {
    Ntk32u bits; // right-aligned
    Ntk32u length;
};

// Codes are given out by length, within a length by symbol, counting upwards. Lengths as made by
// makeCodeLengths.
void makeCodes(const Ntk8u* lengths, int alphabet, Code* codes);

} // namespace ntk::bz2huff
