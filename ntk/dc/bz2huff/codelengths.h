// Huffman code lengths, and the canonical codes with these lengths.
#pragma once

#include "format.h"

namespace ntk::bz2huff {

// Computes code lengths, 1 to maxEncodedCodeBits. A frequency of 0 counts as 1: every symbol gets a
// code. The frequencies add up to at most maxBlockSymbols.
void makeCodeLengths(const int* frequencies, int alphabet, Ntk8u* lengths);

struct Code {
    Ntk32u bits; // right-aligned
    Ntk32u length;
};

// Assigns ascending codes by length, and by symbol within a length. The lengths are those of
// makeCodeLengths.
void makeCodes(const Ntk8u* lengths, int alphabet, Code* codes);

} // namespace ntk::bz2huff
