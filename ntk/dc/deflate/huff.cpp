// Huffman coding of deflate's entries.
//
// Format (RFC 1951, 3.2.5): a literal is its code; a match is the code of its length's symbol, the
// length's extra bits, the code of its distance's symbol and the distance's extra bits. Bits fill
// bytes from the least significant one on; the codes are passed with their bits reversed, so that
// codes and extra bits are appended in the same way.
//
// Method: a call first builds tables from the caller's codes, in which a literal or a length (extra
// bits included) is one lookup and a distance another one. A literal has distance 0, mapped to a
// symbol of its own that has no bits, so literals and matches take the same path: in real data
// their order is unpredictable. The bits of two entries are joined before they are appended to a
// 64-bit buffer, which is stored as a whole; the store extends beyond the complete bytes. That the
// bits of all entries can be looked up before it is known where they begin is what the AVX-512
// kernel uses. It takes a third of the clocks of the generic one on all data; the generic one with
// BMI2's shifts would take 0.8 of them.
//
// Invariants: before an entry the buffer holds fewer than 8 bits, and an entry adds at most 48; two
// that add more than 56 are appended one after the other. Every entry adds at least one bit, so a
// store of 8 bytes before the last 64 entries stays within what these will fill. The last entries
// are stored byte by byte.
//
// Limits: codes of up to 15 bits.

#include "ntkdc.h"

#include "../callerblock.h"
#include "huffkernels.h"

namespace ntk::deflate {

namespace {

using Code = AnyAddress<NtkHuffCode>;

bool haveValidLengths(const Code* codes, int count) {
    Ntk32u longest = 0;
    for (int i = 0; i < count; ++i) {
        longest = codes[i].value.len > longest ? codes[i].value.len : longest;
    }
    return longest <= maxCodeBits;
}

NtkStatus putEntries(BitWriter& writer, const HuffTables& tables, const HuffEntries& entries) {
    for (int i = putEntriesKernel.get()(writer, tables, entries); i < entries.count; ++i) {
        if (entries.dist[i].value > maxDistance) {
            return ntkStsBadSrcData;
        }
        const EntryBits bits = entryBits(tables, entries.lit[i], entries.dist[i].value);
        if (!bits.hasCode) {
            return ntkStsBadValue;
        }
        writer.put(bits.value, bits.count);
        writer.storeComplete();
    }
    return ntkStsNoErr;
}

} // namespace

} // namespace ntk::deflate

using namespace ntk;
using namespace ntk::deflate;

NtkStatus ntksDeflateHuff_8u(const Ntk8u* pLit, const Ntk16u* pDist, int srcLen, Ntk32u* pCode,
                             int* pCodeLen, const NtkHuffCode* pLitCodes,
                             const NtkHuffCode* pDistCodes, Ntk8u* pDst, int* pDstIdx) {
    if (anyNull(pLit, pDist, pCode, pCodeLen, pLitCodes, pDistCodes, pDst, pDstIdx)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0 || *pCodeLen < 0 || *pCodeLen > 32 || *pDstIdx < 0) {
        return ntkStsBadSize;
    }
    const Code* const litCodes = atAnyAddress(pLitCodes);
    const Code* const distCodes = atAnyAddress(pDistCodes);
    if (!haveValidLengths(litCodes, firstLengthSymbol + lengthSymbols) ||
        !haveValidLengths(distCodes, distanceSymbols)) {
        return ntkStsBadValue;
    }
    const Ntk64u pending = *pCode & ((1ULL << *pCodeLen) - 1);
    BitWriter writer(pDst + *pDstIdx, pending, static_cast<unsigned>(*pCodeLen));
    writer.storeComplete();
    const HuffTables tables(litCodes, distCodes);
    const NtkStatus status = putEntries(writer, tables, {pLit, atAnyAddress(pDist), srcLen});
    if (status == ntkStsNoErr) {
        *pDstIdx = static_cast<int>(writer.end() - pDst);
        *pCode = writer.bits();
        *pCodeLen = writer.count();
    }
    return status;
}
