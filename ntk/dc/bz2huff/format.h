// Constants of the bzip2 format and checks of arguments that encoder and decoder share.
#pragma once

#include "../anyaddress.h"
#include "../callerblock.h"
#include "ntkdefs.h"

namespace ntk::bz2huff {

using Symbol = AnyAddress<Ntk16u>;

inline constexpr int groupSymbols = 50; // encoded with one table
inline constexpr int minTables = 2;
inline constexpr int maxTables = 6;
inline constexpr int maxAlphabet = 258; // 255 nonzero positions, two run digits, end of block
inline constexpr int maxBlockSymbols = 900000;
inline constexpr int maxSelectors = maxBlockSymbols / groupSymbols + 2;
inline constexpr int maxCodeBits = 20;        // what a decoder must accept
inline constexpr int maxEncodedCodeBits = 17; // what the encoder produces

// Widths of the fields before the symbols.
inline constexpr int tableCountBits = 3;
inline constexpr int selectorCountBits = 15;
inline constexpr int firstLengthBits = 5;

constexpr bool isAlphabet(int symbols) {
    return symbols >= 1 && symbols <= maxAlphabet;
}

// The number of bits pending between two calls.
constexpr NtkStatus checkBits(int codeLenBits) {
    return codeLenBits < 0 || codeLenBits > 32 ? ntkStsBadValue : ntkStsNoErr;
}

// Checks the lengths first, then the number of pending bits.
constexpr NtkStatus checkCall(int codeLenBits, int srcLen, int dstLen) {
    return srcLen < 0 || dstLen < 0 ? ntkStsBadSize : checkBits(codeLenBits);
}

// The pending bits of *pCode at the top of 64 bits, the others cleared.
constexpr Ntk64u pendingBits(Ntk32u code, int bits) {
    return bits == 0 ? 0 : Ntk64u{code} >> (32 - bits) << (64 - bits);
}

// The move-to-front list of the tables: a selector is coded as the position of its table.
class TableOrder {
public:
    int placeOf(int table) const {
        int place = 0;
        while (m_tables[place] != table) {
            place++;
        }
        return place;
    }
    // Moves the table at the position, below maxTables, to the front and returns it.
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
