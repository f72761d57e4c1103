// Huffman encoder of the bzip2 format.
//
// The format has no published standard; it is that of the bzip2 program. An encoded block consists
// of, most significant bits first:
//   3 bits   number of tables, 2 to 6
//   15 bits  number of selectors: one for every 50 symbols of the block; the last group may be
//            shorter
//   per selector, the position of its table in a move-to-front list of the tables, in unary: that
//            many ones, then a zero
//   per table, the lengths of its codes: 5 bits for an initial length; then for every symbol of the
//            alphabet "10" to increment the length or "11" to decrement it, repeatedly, and "0"
//            when it is that of the symbol
//   the codes of the symbols, each from the table of its group; the last symbol of the alphabet
//   ends
//            the block.
// Codes are canonical, so they follow from the lengths: see codelengths.h.
//
// Method: choosetables.cpp chooses tables and selectors for the symbols, the only place where
// encoders differ in compression. Encoding is then a table lookup per symbol. Bits accumulate in a
// 64-bit buffer whose whole bytes are stored together; near the end of the destination, and within
// a group that an earlier call began, symbols are encoded one by one with a check of the room.
//
// State: the plan, the codes that follow from it, and the position in the block, which determines
// the group and thereby the table. The position is 0 after the context is packed and after an
// end-of-block symbol, and never counts a symbol whose bits are not in the destination or in
// *pCode.
//
// Limits: 258 symbols, 18002 groups; codes of 17 bits, as bzip2 makes them since 1.0.3.

#include "ntkdc.h"

#include <algorithm>

#include "msbwriter.h"
#include "choosetables.h"
#include "codelengths.h"

namespace ntk::bz2huff {

namespace {

struct EncodeState {
    int alphabet;
    int position; // symbols of the block encoded so far
    Plan plan;
    Code codes[maxTables][maxAlphabet];
};

bool packSelectors(const Plan& plan, MsbWriter& writer) {
    TableOrder order;
    for (int i = 0; i < plan.groups; i++) {
        const int place = order.placeOf(plan.selectors[i]);
        order.moveToFront(place);
        if (!writer.put((2U << place) - 2, static_cast<Ntk32u>(place) + 1)) {
            return false;
        }
    }
    return true;
}

bool packLengths(const Ntk8u* lengths, int alphabet, MsbWriter& writer) {
    constexpr Ntk32u longer = 2;
    constexpr Ntk32u shorter = 3;
    int current = lengths[0];
    bool fits = writer.put(static_cast<Ntk32u>(current), firstLengthBits);
    for (int s = 0; s < alphabet && fits; s++) {
        for (; current < lengths[s] && fits; current++) {
            fits = writer.put(longer, 2);
        }
        for (; current > lengths[s] && fits; current--) {
            fits = writer.put(shorter, 2);
        }
        fits = fits && writer.put(0, 1);
    }
    return fits;
}

bool packContext(const EncodeState& state, MsbWriter& writer) {
    const Plan& plan = state.plan;
    bool fits = writer.put(static_cast<Ntk32u>(plan.tables), tableCountBits) &&
                writer.put(static_cast<Ntk32u>(plan.groups), selectorCountBits) &&
                packSelectors(plan, writer);
    for (int t = 0; t < plan.tables && fits; t++) {
        fits = packLengths(plan.lengths[t], state.alphabet, writer);
    }
    return fits && writer.drain();
}

class BlockEncoder {
public:
    BlockEncoder(const EncodeState& state, MsbWriter& writer, const Symbol* src, int srcLen)
        : m_state(state), m_writer(writer), m_at(src), m_end(src + srcLen),
          m_position(state.position) {}

    NtkStatus run() {
        m_writer.drain(); // even if no symbol follows
        while (m_at < m_end) {
            const int group = m_position / groupSymbols;
            if (group >= m_state.plan.groups) {
                return ntkStsBadSrcData;
            }
            const Code* const codes = m_state.codes[m_state.plan.selectors[group]];
            if (!wholeGroup(codes)) {
                const NtkStatus status = singleSymbol(codes);
                if (status != ntkStsNoErr || m_position == 0) {
                    return status;
                }
            }
        }
        return ntkStsNoErr;
    }

    const Symbol* at() const { return m_at; }
    int position() const { return m_position; }

private:
    // Encodes a whole group, if it is one with ordinary symbols only and certain to fit.
    bool wholeGroup(const Code* codes) {
        constexpr int mostBytes = (groupSymbols * maxEncodedCodeBits + 7) / 8 + 8;
        if (m_position % groupSymbols != 0 || m_end - m_at < groupSymbols ||
            m_writer.room() < mostBytes) {
            return false;
        }
        const Ntk16u largest = largestOfGroup(m_at);
        if (largest >= m_state.alphabet - 1) {
            return false;
        }
        putGroup(codes);
        m_at += groupSymbols;
        m_position += groupSymbols;
        return true;
    }

    static Ntk16u largestOfGroup(const Symbol* symbols) {
        Ntk16u largest = 0;
        for (int i = 0; i < groupSymbols; i++) {
            largest = std::max(largest, Ntk16u{symbols[i].value});
        }
        return largest;
    }

    // Two codes and 7 pending bits are at most 41 bits.
    void putGroup(const Code* codes) {
        MsbWriter writer = m_writer; // in registers
        for (int i = 0; i < groupSymbols; i += 2) {
            const Code& first = codes[m_at[i].value];
            const Code& second = codes[m_at[i + 1].value];
            writer.append(first.bits, first.length);
            writer.append(second.bits, second.length);
            writer.store();
        }
        m_writer = writer;
    }

    NtkStatus singleSymbol(const Code* codes) {
        const int symbol = m_at->value;
        if (symbol >= m_state.alphabet) {
            return ntkStsBadSrcData;
        }
        if (!m_writer.put(codes[symbol].bits, codes[symbol].length)) {
            return ntkStsDstFull;
        }
        m_at++;
        m_position = symbol == m_state.alphabet - 1 ? 0 : m_position + 1;
        return ntkStsNoErr;
    }

    const EncodeState& m_state;
    MsbWriter& m_writer;
    const Symbol* m_at;
    const Symbol* m_end;
    int m_position;
};

} // namespace

} // namespace ntk::bz2huff

using namespace ntk;
using namespace ntk::bz2huff;

NtkStatus ntksEncodeHuffGetSize_BZ2_16u8u(int blockLen, int* pStateSize) {
    return stateSize<EncodeState>(blockLen, pStateSize);
}

NtkStatus ntksEncodeHuffInit_BZ2_16u8u(int sizeDictionary, const int* /*pFreqTable*/,
                                       const Ntk16u* pSrc, int srcLen, Ntk8u* pState) {
    if (anyNull(pSrc, pState)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 1 || srcLen > maxBlockSymbols) {
        return ntkStsBadSize;
    }
    if (!isAlphabet(sizeDictionary)) {
        return ntkStsBadValue;
    }
    EncodeState& state = stateIn<EncodeState>(pState);
    state.alphabet = sizeDictionary;
    state.position = 0;
    choosePlan(pSrc, srcLen, sizeDictionary, state.plan);
    for (int t = 0; t < state.plan.tables; t++) {
        makeCodes(state.plan.lengths[t], sizeDictionary, state.codes[t]);
    }
    return ntkStsNoErr;
}

NtkStatus ntksPackHuffContext_BZ2_16u8u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u* pDst, int* pDstLen,
                                        Ntk8u* pState) {
    if (anyNull(pCode, pCodeLenBits, pDst, pDstLen, pState)) {
        return ntkStsNullPtr;
    }
    const NtkStatus status = checkCall(*pCodeLenBits, 0, *pDstLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    EncodeState& state = stateIn<EncodeState>(pState);
    MsbWriter writer(pendingBits(*pCode, *pCodeLenBits), *pCodeLenBits, pDst, *pDstLen);
    if (!packContext(state, writer)) {
        return ntkStsDstTooSmall;
    }
    state.position = 0;
    writer.saveTo(pCode, pCodeLenBits, pDstLen);
    return ntkStsNoErr;
}

NtkStatus ntksEncodeHuff_BZ2_16u8u(Ntk32u* pCode, int* pCodeLenBits, Ntk16u** ppSrc, int* pSrcLen,
                                   Ntk8u* pDst, int* pDstLen, Ntk8u* pState) {
    if (anyNull(pCode, pCodeLenBits, ppSrc, pSrcLen, pDst, pDstLen, pState) || *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    const NtkStatus callStatus = checkCall(*pCodeLenBits, *pSrcLen, *pDstLen);
    if (callStatus != ntkStsNoErr) {
        return callStatus;
    }
    EncodeState& state = stateIn<EncodeState>(pState);
    MsbWriter writer(pendingBits(*pCode, *pCodeLenBits), *pCodeLenBits, pDst, *pDstLen);
    BlockEncoder encoder(state, writer, atAnyAddress(*ppSrc), *pSrcLen);
    const NtkStatus status = encoder.run();
    if (status < ntkStsNoErr) {
        return status;
    }
    state.position = encoder.position();
    *pSrcLen -= static_cast<int>(encoder.at() - atAnyAddress(*ppSrc));
    *ppSrc += encoder.at() - atAnyAddress(*ppSrc);
    writer.saveTo(pCode, pCodeLenBits, pDstLen);
    return status;
}
