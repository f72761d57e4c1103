// Runs of zeroes in the move-to-front positions: encoder.
//
// Format (the bzip2 program by Julian Seward): a run of n zeroes is written as the digits of n in
// bijective base 2, whose digits are 1 (RUNA, symbol 0) and 2 (RUNB, symbol 1), least significant
// first: 1 is A, 2 B, 3 AA, 4 BA, 5 AB, 6 BB, 7 AAA. Every n has one representation, and none needs
// an end mark. A byte b above 0 becomes the symbol b + 1. The alphabet of a block with k byte
// values in use thus has the symbols 0 to k, and k + 1 for the end of the block, which the caller
// writes.
//
// The digits are those of n + 1 in binary without the leading 1: bit 0 for A, 1 for B.
//
// Method: zeroes and other bytes alternate irregularly, and a branch on each byte would be
// mispredicted every few bytes. So 64 bytes at a time are turned into a mask, its sequences of
// equal bits are counted as trailing zeroes or ones, and each is written without a branch: 16
// symbols, or 4 digits, of which the pointer then passes as many as there are. The last bytes of
// the source, and those for the last of the destination's room, are encoded one by one. Symbols are
// counted afterwards, in the output.
//
// State: none between calls. Within a call, a run may span windows; it is written where it ends.

#include "ntkdcbz2.h"

#include <cstring>

#include "z1z2.h"

namespace ntk::bz2 {

namespace {

__m128i load(const Ntk8u* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

Ntk64u zeroMask(const Ntk8u* p) {
    Ntk64u mask = 0;
    for (unsigned i = 0; i < windowLength; i += vectorLength) {
        const int zeroes = _mm_movemask_epi8(_mm_cmpeq_epi8(load(p + i), _mm_setzero_si128()));
        mask |= static_cast<Ntk64u>(static_cast<unsigned>(zeroes)) << i;
    }
    return mask;
}

void widen16(const Ntk8u* from, Symbol* to) {
    const __m128i v = load(from);
    const __m128i one = _mm_set1_epi16(1);
    const __m128i low = _mm_add_epi16(_mm_unpacklo_epi8(v, _mm_setzero_si128()), one);
    const __m128i high = _mm_add_epi16(_mm_unpackhi_epi8(v, _mm_setzero_si128()), one);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), low);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), high);
}

unsigned digitCount(Ntk32u run) {
    return 31 - static_cast<unsigned>(__builtin_clz(run + 1));
}

// Writes the digits, and up to four symbols in excess.
Symbol* putRun(Ntk32u run, Symbol* to) {
    unsigned left = digitCount(run);
    Ntk32u bits = run + 1;
    while (true) {
        // Moves bit i of four to the lowest bit of 16-bit lane i.
        const Ntk64u four = ((bits & 15) * 0x200040008001ULL) & 0x1000100010001ULL;
        std::memcpy(to, &four, sizeof four);
        if (left <= 4) {
            return to + left;
        }
        to += 4;
        bits >>= 4;
        left -= 4;
    }
}

Symbol* putOthers(const Ntk8u* from, unsigned length, Symbol* to) {
    widen16(from, to);
    for (unsigned i = vectorLength; i < length; i += vectorLength) {
        widen16(from + i, to + i);
    }
    return to + length;
}

// Encodes one window after a run of `run` zeroes; returns the length of the run at its end, which
// may continue.
Ntk32u encodeWindow(const Ntk8u* from, Ntk32u run, Symbol*& to) {
    Ntk64u zeroes = zeroMask(from);
    unsigned left = windowLength;
    while (zeroes != lowBits(left - 1) * 2 + 1) {
        const auto more = static_cast<unsigned>(__builtin_ctzll(~zeroes));
        to = putRun(run + more, to);
        run = 0;
        zeroes >>= more;
        from += more;
        left -= more;
        const unsigned others = zeroes == 0 ? left : static_cast<unsigned>(__builtin_ctzll(zeroes));
        to = putOthers(from, others, to);
        if (others == left) {
            return 0;
        }
        zeroes >>= others;
        from += others;
        left -= others;
    }
    return run + left;
}

// Encodes windows as long as they fit both sides. Ends before a run that may continue.
void encodeWindows(Span<const Ntk8u>& src, Span<Symbol>& dst) {
    Ntk32u run = 0;
    while (src.left() >= windowLength + vectorLength && dst.left() >= windowRoom) {
        run = encodeWindow(src.p, run, dst.p);
        src.p += windowLength;
    }
    src.p -= run;
}

Ntk32u zeroesAt(const Span<const Ntk8u>& src) {
    const Ntk8u* p = src.p;
    while (p < src.end && *p == 0) {
        p++;
    }
    return static_cast<Ntk32u>(p - src.p);
}

// Encodes symbol by symbol. False if the destination is full.
bool encodeRest(Span<const Ntk8u>& src, Span<Symbol>& dst) {
    while (!src.empty()) {
        if (*src.p != 0) {
            if (dst.empty()) {
                return false;
            }
            *dst.p++ = {static_cast<Ntk16u>(*src.p++ + 1)};
            continue;
        }
        const Ntk32u run = zeroesAt(src);
        if (digitCount(run) > dst.left()) {
            return false;
        }
        for (Ntk32u bits = run + 1; bits > 1; bits >>= 1) {
            *dst.p++ = {static_cast<Ntk16u>(bits & 1)};
        }
        src.p += run;
    }
    return true;
}

// Counts in two tables alternately, so that equal neighbours do not wait for each other's counter.
void addFrequencies(const Symbol* symbols, std::size_t count, AnyAddress<int>* freqTable) {
    Ntk32u frequencies[2][largestSymbol + 1] = {};
    for (std::size_t i = 0; i < count; i++) {
        frequencies[i & 1][symbols[i].value]++;
    }
    for (unsigned s = 0; s <= largestSymbol; s++) {
        const Ntk32u sum =
            static_cast<Ntk32u>(freqTable[s].value) + frequencies[0][s] + frequencies[1][s];
        freqTable[s].value = static_cast<int>(sum);
    }
}

} // namespace

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksEncodeZ1Z2_BZ2_8u16u(Ntk8u** ppSrc, int* pSrcLen, Ntk16u* pDst, int* pDstLen,
                                   int freqTable[258]) {
    if (anyNull(ppSrc, pSrcLen, pDst, pDstLen, freqTable) || *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    Span<const Ntk8u> src(*ppSrc, *pSrcLen);
    Span<Symbol> dst(atAnyAddress(pDst), *pDstLen);
    encodeWindows(src, dst);
    const bool done = encodeRest(src, dst);
    const auto written = static_cast<std::size_t>(dst.p - atAnyAddress(pDst));
    addFrequencies(atAnyAddress(pDst), written, atAnyAddress(freqTable));
    *ppSrc += *pSrcLen - static_cast<int>(src.left());
    *pSrcLen = static_cast<int>(src.left());
    *pDstLen = static_cast<int>(written);
    return done ? ntkStsNoErr : ntkStsDstFull;
}
