// The figures of the bzip2 format that encoder and decoder share, and how both find their state.
#pragma once

#include "../callerblock.h"
#include "ntkdefs.h"

namespace ntk::bz2huff {

inline constexpr int groupSymbols = 50; // coded with one table
inline constexpr int minTables = 2;
inline constexpr int maxTables = 6;
inline constexpr int maxAlphabet = 258; // 256 byte values, less one, two run lengths, end of block
inline constexpr int maxBlockSymbols = 900000;
inline constexpr int maxSelectors = maxBlockSymbols / groupSymbols + 2;
inline constexpr int maxCodeBits = 20;        // what a decoder must take
inline constexpr int maxEncodedCodeBits = 17; // what the encoder makes

// Widths of the fields in front of the symbols.
inline constexpr int tableCountBits = 3;
inline constexpr int selectorCountBits = 15;
inline constexpr int firstLengthBits = 5;

constexpr bool isAlphabet(int symbols) {
    return symbols >= 1 && symbols <= maxAlphabet;
}

// The bits that a call takes over from the one before it, or leaves to the one after it.
constexpr NtkStatus checkBits(int codeLenBits) {
    return codeLenBits < 0 || codeLenBits > 32 ? ntkStsBadValue : ntkStsNoErr;
}

// The lengths first, then the bits.
constexpr NtkStatus checkCall(int codeLenBits, int srcLen, int dstLen) {
    return srcLen < 0 || dstLen < 0 ? ntkStsBadSize : checkBits(codeLenBits);
}

// Of *pCode: the pending bits in 64, those below them cleared.
constexpr Ntk64u pendingBits(Ntk32u code, int bits) {
    return bits == 0 ? 0 : Ntk64u{code} >> (32 - bits) << (64 - bits);
}

// Selectors are coded as places in a list of the tables, which each selected table leads then.
class TableOrder {
public:
    int placeOf(int table) const {
        int place = 0;
        while (m_tables[place] != table) {
            place++;
        }
        return place;
    }
    // The table at the place, below maxTables.
    Ntk8u moveToFront(int place) {
        const Ntk8u table = m_tables[place];
        Ntk8u carried = table;
        for (int i = 0; i <= place; i++) {
            const Ntk8u here = m_tables[i];
            m_tables[i] = carried;
            carried = here;
        }
        return table;
    }

private:
    Ntk8u m_tables[maxTables] = {0, 1, 2, 3, 4, 5};
};

template <class State> NtkStatus stateSize(int blockLen, int* pSize) {
    if (pSize == nullptr) {
        return ntkStsNullPtr;
    }
    if (blockLen < 0 || blockLen > maxBlockSymbols) {
        return ntkStsBadSize;
    }
    *pSize = stateBytes<State>();
    return ntkStsNoErr;
}

} // namespace ntk::bz2huff
