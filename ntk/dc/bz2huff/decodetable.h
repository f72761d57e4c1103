// Decodes symbols by one table of canonical codes.
#pragma once

#include "format.h"

namespace ntk::bz2huff {

class DecodeTable {
public:
    static constexpr int lookupBits = 10;

    // A code of the table; length 0 if there is none.
    struct Found {
        int symbol;
        int length;
    };

    // lengths: one for each symbol, 1 to maxCodeBits. False if the code is over-subscribed; an
    // incomplete one is accepted.
    bool build(const Ntk8u* lengths, int alphabet);

    // The entry for the next bits, which are at the top: symbol << 5 | length. The length is 0 if
    // the code is longer than lookupBits, does not exist, or ends the block, so that the decoder's
    // loop has a single condition to check; find() tells which it is.
    Ntk32u entry(Ntk64u bits) const { return m_lookup[bits >> (64 - lookupBits)]; }
    Found find(Ntk64u bits) const;

    int maxLength() const { return m_maxLength; }
    int endOfBlock() const { return m_endOfBlock; }

private:
    bool countLengths(const Ntk8u* lengths, int alphabet, int* counts);
    void fillLookup();

    Ntk16u m_lookup[1 << lookupBits];
    // By length: the first pattern of maxCodeBits bits above the codes of up to this length.
    Ntk32u m_limit[maxCodeBits + 1];
    // By length: index in m_symbols of its first code, minus that code.
    int m_firstIndex[maxCodeBits + 1];
    Ntk16u m_symbols[maxAlphabet]; // in the order of their codes
    int m_maxLength;
    int m_endOfBlock; // the last symbol of the alphabet
};

} // namespace ntk::bz2huff
