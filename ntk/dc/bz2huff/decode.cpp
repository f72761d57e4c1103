// Huffman decoder of the bzip2 format. Format: see encode.cpp.
//
// Method: for every code table, a lookup table of 1024 entries gives symbol and length of any code
// of up to 10 bits; longer codes, which are rare, are found by comparing with the end of each
// length's range of codes. A 64-bit buffer is refilled from the source with one load for two to
// five codes, depending on the longest code of the table. A group of 50 symbols for which source
// and destination are certain to suffice is decoded without checking either; other groups are
// decoded symbol by symbol.
//
// State: the tables, the selectors, and the position in the block. The position is 0 after a
// context is unpacked and after an end-of-block symbol. A group count of 0 means that there is no
// context.
//
// Hostile sources: over-subscribed codes are rejected when they are unpacked. Unused bit patterns
// are detected while decoding. Every iteration of every loop consumes bits or room.
//
// Limits: 258 symbols, codes of 20 bits. Up to 32767 selectors are read, because other programs
// write superfluous ones; those beyond the longest block are discarded.

#include "ntkdc.h"

#include <algorithm>

#include "msbreader.h"
#include "decodetable.h"

namespace ntk::bz2huff {

namespace {

struct DecodeState {
    int alphabet;
    int position; // symbols of the block decoded so far
    int groups;
    Ntk8u selectors[maxSelectors];
    DecodeTable tables[maxTables];
};

bool unpackSelectors(MsbReader& reader, int tables, int count, Ntk8u* selectors) {
    TableOrder order;
    for (int i = 0; i < count; i++) {
        int place = 0;
        while (reader.take(1) == 1) {
            if (++place >= tables) {
                return false;
            }
        }
        if (reader.failed()) {
            return false;
        }
        const Ntk8u table = order.moveToFront(place);
        if (i < maxSelectors) {
            selectors[i] = table;
        }
    }
    return true;
}

bool unpackLengths(MsbReader& reader, int alphabet, Ntk8u* lengths) {
    auto length = static_cast<int>(reader.take(firstLengthBits));
    for (int s = 0; s < alphabet; s++) {
        while (length >= 1 && length <= maxCodeBits && reader.take(1) == 1) {
            length += reader.take(1) == 0 ? 1 : -1;
        }
        if (length < 1 || length > maxCodeBits || reader.failed()) {
            return false;
        }
        lengths[s] = static_cast<Ntk8u>(length);
    }
    return true;
}

bool unpackContext(MsbReader& reader, DecodeState& state) {
    const auto tables = static_cast<int>(reader.take(tableCountBits));
    const auto groups = static_cast<int>(reader.take(selectorCountBits));
    if (tables < minTables || tables > maxTables || groups < 1 ||
        !unpackSelectors(reader, tables, groups, state.selectors)) {
        return false;
    }
    for (int t = 0; t < tables; t++) {
        Ntk8u lengths[maxAlphabet];
        if (!unpackLengths(reader, state.alphabet, lengths) ||
            !state.tables[t].build(lengths, state.alphabet)) {
            return false;
        }
    }
    state.groups = std::min(groups, maxSelectors);
    return true;
}

class BlockDecoder {
public:
    BlockDecoder(const DecodeState& state, MsbReader& reader, Symbol* dst, int capacity)
        : m_state(state), m_reader(reader), m_at(dst), m_end(dst + capacity),
          m_position(state.position) {}

    NtkStatus run() {
        while (true) {
            const int group = m_position / groupSymbols;
            if (group >= m_state.groups) {
                return ntkStsBadSrcData;
            }
            const DecodeTable& table = m_state.tables[m_state.selectors[group]];
            if (!wholeGroup(table)) {
                const NtkStatus status = singleSymbol(table);
                if (status != ntkStsNoErr || m_position == 0) {
                    return status;
                }
            }
        }
    }

    const Symbol* at() const { return m_at; }
    int position() const { return m_position; }

private:
    // Decodes a whole group, if source and room are certain to suffice for one. Also false if a
    // symbol in it needs the careful way; those before it are then decoded.
    bool wholeGroup(const DecodeTable& table) {
        constexpr int mostBytes = groupSymbols * maxCodeBits / 8 + 8;
        if (m_position % groupSymbols != 0 || m_end - m_at < groupSymbols ||
            m_reader.remaining() < mostBytes) {
            return false;
        }
        const int codesPerRefill = 56 / table.maxLength();
        switch (codesPerRefill) {
        case 2: return decodeGroup<2>(table);
        case 3: return decodeGroup<3>(table);
        case 4: return decodeGroup<4>(table);
        default: return decodeGroup<5>(table);
        }
    }

    template <int CodesPerRefill> bool decodeGroup(const DecodeTable& table) {
        MsbReader reader = m_reader; // in registers
        Symbol* at = m_at;
        const Symbol* const end = at + groupSymbols;
        bool isOrdinary = true;
        while (isOrdinary && end - at >= CodesPerRefill) {
            isOrdinary = decodeCodes<CodesPerRefill>(table, reader, at);
        }
        isOrdinary = isOrdinary && decodeCodes<groupSymbols % CodesPerRefill>(table, reader, at);
        m_position += static_cast<int>(at - m_at);
        m_at = at;
        m_reader = reader;
        return isOrdinary;
    }

    template <int Count>
    static bool decodeCodes(const DecodeTable& table, MsbReader& reader, Symbol*& at) {
        if constexpr (Count > 0) {
            reader.refillFast();
        }
        for (int i = 0; i < Count; i++) {
            const Ntk32u entry = table.entry(reader.bits());
            auto length = static_cast<int>(entry & 31);
            auto symbol = static_cast<Ntk16u>(entry >> 5);
            if (length == 0) [[unlikely]] {
                const DecodeTable::Found found = table.find(reader.bits());
                if (found.length == 0 || found.symbol == table.endOfBlock()) {
                    return false;
                }
                length = found.length;
                symbol = static_cast<Ntk16u>(found.symbol);
            }
            reader.skip(length);
            (at++)->value = symbol;
        }
        return true;
    }

    NtkStatus singleSymbol(const DecodeTable& table) {
        if (m_at == m_end) {
            return ntkStsDstFull;
        }
        m_reader.refill();
        const DecodeTable::Found found = table.find(m_reader.bits());
        // If bits are missing, what was found or not found is meaningless.
        const int needed = found.length > 0 ? found.length : table.maxLength();
        if (needed > m_reader.count()) {
            return ntkStsSrcEnd;
        }
        if (found.length == 0) {
            return ntkStsBadSrcData;
        }
        m_reader.skip(found.length);
        (m_at++)->value = static_cast<Ntk16u>(found.symbol);
        m_position = found.symbol == m_state.alphabet - 1 ? 0 : m_position + 1;
        return ntkStsNoErr;
    }

    const DecodeState& m_state;
    MsbReader& m_reader;
    Symbol* m_at;
    Symbol* m_end;
    int m_position;
};

} // namespace

} // namespace ntk::bz2huff

using namespace ntk;
using namespace ntk::bz2huff;

NtkStatus ntksDecodeHuffGetSize_BZ2_8u16u(int blockLen, int* pStateSize) {
    return stateSize<DecodeState>(blockLen, pStateSize);
}

NtkStatus ntksDecodeHuffInit_BZ2_8u16u(int sizeDictionary, Ntk8u* pState) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    if (!isAlphabet(sizeDictionary)) {
        return ntkStsBadValue;
    }
    DecodeState& state = stateIn<DecodeState>(pState);
    state.alphabet = sizeDictionary;
    state.position = 0;
    state.groups = 0;
    return ntkStsNoErr;
}

NtkStatus ntksUnpackHuffContext_BZ2_8u16u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc,
                                          int* pSrcLen, Ntk8u* pState) {
    if (anyNull(pCode, pCodeLenBits, ppSrc, pSrcLen, pState) || *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    const NtkStatus status = checkCall(*pCodeLenBits, *pSrcLen, 0);
    if (status != ntkStsNoErr) {
        return status;
    }
    DecodeState& state = stateIn<DecodeState>(pState);
    state.position = 0;
    state.groups = 0;
    MsbReader reader(pendingBits(*pCode, *pCodeLenBits), *pCodeLenBits, *ppSrc, *pSrcLen);
    if (!unpackContext(reader, state)) {
        return ntkStsBadSrcData;
    }
    reader.unreadBytes();
    reader.saveTo(pCode, pCodeLenBits, ppSrc, pSrcLen);
    return ntkStsNoErr;
}

NtkStatus ntksDecodeHuff_BZ2_8u16u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc, int* pSrcLen,
                                   Ntk16u* pDst, int* pDstLen, Ntk8u* pState) {
    if (anyNull(pCode, pCodeLenBits, ppSrc, pSrcLen, pDst, pDstLen, pState) || *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    const NtkStatus callStatus = checkCall(*pCodeLenBits, *pSrcLen, *pDstLen);
    if (callStatus != ntkStsNoErr) {
        return callStatus;
    }
    DecodeState& state = stateIn<DecodeState>(pState);
    MsbReader reader(pendingBits(*pCode, *pCodeLenBits), *pCodeLenBits, *ppSrc, *pSrcLen);
    Symbol* const dst = atAnyAddress(pDst);
    BlockDecoder decoder(state, reader, dst, *pDstLen);
    const NtkStatus status = decoder.run();
    if (status < ntkStsNoErr) {
        return status;
    }
    state.position = decoder.position();
    *pDstLen = static_cast<int>(decoder.at() - dst);
    if (status != ntkStsSrcEnd) { // otherwise less than a code is left
        reader.unreadBytes();
    }
    reader.saveTo(pCode, pCodeLenBits, ppSrc, pSrcLen);
    return status;
}
