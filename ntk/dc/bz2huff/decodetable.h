// From bits to symbols by one table of canonical codes.
#pragma once

#include "format.h"

namespace ntk::bz2huff {

class DecodeTable {
public:
    static constexpr int lookupBits = 10;

    // A code of the table; length 0 when there is none.
    struct Found {
        int symbol;
        int length;
    };

    // lengths: one for each symbol, 1 to maxCodeBits. False when they ask for more codes than
    // there are; codes that leave patterns unused are sound.
    bool build(const Ntk8u* lengths, int alphabet);

    // The entry for the next bits, which stand at the top: symbol << 5 | length. No length when the
    // code is longer than lookupBits, is none, or ends the block; find() tells which. So that the
    // decoder's loop has one thing to look out for.
    Ntk32u entry(Ntk64u bits) const { return m_lookup[bits >> (64 - lookupBits)]; }
    Found find(Ntk64u bits) const;

    int maxLength() const { return m_maxLength; }
    int endOfBlock() const { return m_endOfBlock; }

private:
    bool countLengths(const Ntk8u* lengths, int alphabet, int* counts);
    void fillLookup();

    Ntk16u m_lookup[1 << lookupBits];
    Ntk32u m_limit[maxCodeBits + 1]; // the first pattern of maxCodeBits bits that is above the
                                     // codes of up to this length
    int m_firstIndex[maxCodeBits +
                     1];           // in m_symbols: of the first code of a length, less that code
    Ntk16u m_symbols[maxAlphabet]; // in the order of their codes
    int m_maxLength;
    int m_endOfBlock; // the last symbol of the alphabet
};

} // namespace ntk::bz2huff
