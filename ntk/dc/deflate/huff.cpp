// Huffman coding of deflate's entries.
//
// Format (RFC 1951, 3.2.5): a literal is its code; a match is the code of its length's symbol, the
// length's extra bits, the code of its distance's symbol and the distance's extra bits. Bits fill
// bytes from the least significant one on; the codes are passed with their bits reversed, so that
// codes and extra bits are appended in the same way.
//
// Method: a call first builds tables from the caller's codes, in which a literal or a length (extra
// bits included) is one lookup and a distance another one. A literal has distance 0, mapped to a
// symbol after the last one that has no bits, so literals and matches take the same path: in real
// data their order is unpredictable. Up to 55 bits accumulate in a 64-bit buffer, which is stored
// as a whole; the store extends beyond the complete bytes.
//
// Invariants: before an entry the buffer holds fewer than 8 bits, and an entry adds at most 48.
// Every entry adds at least one bit, so a store of 8 bytes before the last 64 entries stays within
// what these will fill. The last entries are stored byte by byte.
//
// Limits: codes of up to 15 bits.

#include "ntkdc.h"

#include <cstring>

#include "../anyaddress.h"
#include "../callerblock.h"
#include "symbols.h"

namespace ntk::deflate {

namespace {

constexpr Ntk32u maxCodeBits = 15;

struct Bits {
    Ntk32u value;
    Ntk32u count;
};

// The count of a symbol without a code: recognisable in a sum.
constexpr Ntk32u noCode = 0x80;

using Code = AnyAddress<NtkHuffCode>;

constexpr Bits bitsOf(const Code& code) {
    return {code.value.code, code.value.len == 0 ? noCode : code.value.len};
}

struct Tables {
    // Literals, then lengths with their extra bits.
    Bits literalOrLength[literalSymbols + maxMatch - minMatch + 1];
    Bits distance[distanceSymbols + 1];
    Ntk8u extraBits[distanceSymbols + 1];

    Tables(const Code* litCodes, const Code* distCodes) {
        for (int i = 0; i < literalSymbols; ++i) {
            literalOrLength[i] = bitsOf(litCodes[i]);
        }
        int first = 0; // smallest length - 3 of the symbol
        for (int i = 0; i <= maxMatch - minMatch; ++i) {
            const int symbol = lengthSymbolOf[i];
            first = i == 0 || symbol != lengthSymbolOf[i - 1] ? i : first;
            Bits bits = bitsOf(litCodes[firstLengthSymbol + symbol]);
            bits.value |= static_cast<Ntk32u>(i - first) << (bits.count & maxCodeBits);
            bits.count += lengthExtraBits[symbol];
            literalOrLength[literalSymbols + i] = bits;
        }
        for (int i = 0; i < distanceSymbols; ++i) {
            distance[i] = bitsOf(distCodes[i]);
            extraBits[i] = static_cast<Ntk8u>(distanceExtraBits(i));
        }
        distance[distanceSymbols] = {0, 0};
        extraBits[distanceSymbols] = 0;
    }
};

bool haveValidLengths(const Code* codes, int count) {
    Ntk32u longest = 0;
    for (int i = 0; i < count; ++i) {
        longest = codes[i].value.len > longest ? codes[i].value.len : longest;
    }
    return longest <= maxCodeBits;
}

class BitWriter {
public:
    BitWriter(Ntk8u* dst, Ntk64u bits, unsigned count) : m_dst(dst), m_bits(bits), m_count(count) {}

    void put(Ntk64u value, unsigned count) {
        m_bits |= value << m_count;
        m_count += count;
    }
    // Stores 8 bytes and keeps the complete ones.
    void storeAhead() {
        std::memcpy(m_dst, &m_bits, sizeof m_bits);
        drop(m_count >> 3);
    }
    void storeComplete() {
        for (; m_count >= 8; drop(1)) {
            *m_dst = static_cast<Ntk8u>(m_bits);
        }
    }
    const Ntk8u* end() const { return m_dst; }
    Ntk32u bits() const { return static_cast<Ntk32u>(m_bits); }
    int count() const { return static_cast<int>(m_count); }

private:
    void drop(unsigned bytes) {
        m_dst += bytes;
        m_bits >>= 8 * bytes;
        m_count -= 8 * bytes;
    }

    Ntk8u* m_dst;
    Ntk64u m_bits;
    unsigned m_count;
};

inline NtkStatus putEntry(BitWriter& writer, const Tables& tables, unsigned literal,
                          unsigned dist) {
    if (dist > maxDistance) [[unlikely]] {
        return ntkStsBadSrcData;
    }
    const unsigned isMatch = (dist + 0xFFFF) >> 16;
    const Bits first = tables.literalOrLength[isMatch * literalSymbols + literal];
    const unsigned symbol = distanceSymbolOf[slotOf(dist)];
    const Bits second = tables.distance[symbol];
    if (((first.count + second.count) & ~(noCode - 1)) != 0) [[unlikely]] {
        return ntkStsBadValue;
    }
    const unsigned extraBits = tables.extraBits[symbol];
    const Ntk64u extra = (dist - 1) & ((1U << extraBits) - 1);
    const Ntk64u distBits = second.value | extra << second.count;
    writer.put(first.value | distBits << first.count, first.count + second.count + extraBits);
    return ntkStsNoErr;
}

// The local copy of the writer stays in registers: byte stores cannot alias it.
NtkStatus putEntries(BitWriter& result, const Tables& tables, const Ntk8u* lit,
                     const AnyAddress<Ntk16u>* dist, int count) {
    constexpr int entriesPerStore = 64; // of at least one bit each
    BitWriter writer = result;
    NtkStatus status = ntkStsNoErr;
    int i = 0;
    for (; i < count - entriesPerStore && status == ntkStsNoErr; ++i) {
        status = putEntry(writer, tables, lit[i], dist[i].value);
        writer.storeAhead();
    }
    for (; i < count && status == ntkStsNoErr; ++i) {
        status = putEntry(writer, tables, lit[i], dist[i].value);
        writer.storeComplete();
    }
    result = writer;
    return status;
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
    const Tables tables(litCodes, distCodes);
    const NtkStatus status = putEntries(writer, tables, pLit, atAnyAddress(pDist), srcLen);
    if (status == ntkStsNoErr) {
        *pDstIdx = static_cast<int>(writer.end() - pDst);
        *pCode = writer.bits();
        *pCodeLen = writer.count();
    }
    return status;
}
