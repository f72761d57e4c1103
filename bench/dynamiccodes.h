// Deflate's dynamic codes for a block (RFC 1951, 3.2.7): what a caller of the library's Huffman
// coding makes from the frequencies that the match search counted.
#pragma once

#include <array>

#include "ntkdc.h"

struct DynamicCodes {
    std::array<NtkHuffCode, 288> lit;
    std::array<NtkHuffCode, 30> dist;
    unsigned headerBits; // of the block's header, which describes the codes
    unsigned endBits;    // of the code that ends the block
};

// The frequencies are those of 286 and 30 symbols.
DynamicCodes dynamicCodes(const Ntk32u* litFreq, const Ntk32u* distFreq);
