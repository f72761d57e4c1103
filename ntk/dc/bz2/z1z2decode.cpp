// Runs of zeroes in the move-to-front positions: decoder. Format: see z1z2encode.cpp.
//
// Method: that of the encoder, reversed. Two masks over 64 symbols mark the digits, and those that
// are RUNB. A run of d digits whose RUNB bits are the number b has 2^d - 1 + b zeroes. Whatever a
// window cannot handle, a symbol out of range or a run that may be too long for the room left, is
// left to the loop that goes symbol by symbol and determines the status.

#include "ntkdcbz2.h"

#include <climits>
#include <cstring>

#include "z1z2.h"

namespace ntk::bz2 {

namespace {

__m128i load(const Symbol* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

struct WindowMasks {
    Ntk64u digits = 0;
    Ntk64u runB = 0;
    bool inRange = true;
};

// Turns the 16-bit lanes of two comparisons into bits of a mask.
Ntk64u asBits(__m128i low, __m128i high, unsigned shift) {
    const int bits = _mm_movemask_epi8(_mm_packs_epi16(low, high));
    return static_cast<Ntk64u>(static_cast<unsigned>(bits)) << shift;
}

WindowMasks masksOf(const Symbol* p, unsigned maxSymbol) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i one = _mm_set1_epi16(1);
    const __m128i most = _mm_set1_epi16(static_cast<short>(maxSymbol));
    __m128i beyond = zero;
    WindowMasks m;
    for (unsigned i = 0; i < windowLength; i += vectorLength) {
        const __m128i a = load(p + i);
        const __m128i b = load(p + i + 8);
        beyond =
            _mm_or_si128(beyond, _mm_or_si128(_mm_subs_epu16(a, most), _mm_subs_epu16(b, most)));
        m.digits |= asBits(_mm_cmpeq_epi16(_mm_srli_epi16(a, 1), zero),
                           _mm_cmpeq_epi16(_mm_srli_epi16(b, 1), zero), i);
        m.runB |= asBits(_mm_cmpeq_epi16(a, one), _mm_cmpeq_epi16(b, one), i);
    }
    m.inRange = _mm_movemask_epi8(_mm_cmpeq_epi8(beyond, zero)) == 0xffff;
    return m;
}

void narrow16(const Symbol* from, Ntk8u* to) {
    const __m128i one = _mm_set1_epi16(1);
    const __m128i v =
        _mm_packus_epi16(_mm_sub_epi16(load(from), one), _mm_sub_epi16(load(from + 8), one));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), v);
}

Ntk8u* putOthers(const Symbol* from, unsigned length, Ntk8u* to) {
    narrow16(from, to);
    for (unsigned i = vectorLength; i < length; i += vectorLength) {
        narrow16(from + i, to + i);
    }
    return to + length;
}

Ntk8u* putZeroes(std::size_t run, Ntk8u* to) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_setzero_si128());
    if (run > vectorLength) {
        std::memset(to, 0, run);
    }
    return to + run;
}

// The digits read so far of a run.
struct Run {
    unsigned digits = 0;
    Ntk64u bits = 0;

    void add(unsigned count, Ntk64u runB) {
        bits |= (runB & lowBits(count)) << digits;
        digits += count;
    }
    Ntk64u length() const { return lowBits(digits) + bits; }
};

constexpr unsigned mostDigits = 31; // of a run that windows decode

// Decodes one window, including the run that extends into it. False if it was not decoded whole:
// the source is then left before the run that was too long, or unchanged.
bool decodeWindow(Span<const Symbol>& src, Span<Ntk8u>& dst, Run& run, unsigned maxSymbol) {
    const WindowMasks m = masksOf(src.p, maxSymbol);
    if (!m.inRange) {
        return false;
    }
    unsigned at = 0;
    while (true) {
        const Ntk64u others = ~m.digits >> at;
        const unsigned digits =
            others == 0 ? windowLength - at : static_cast<unsigned>(__builtin_ctzll(others));
        if (run.digits + digits > mostDigits) {
            src.p += at;
            return false;
        }
        run.add(digits, m.runB >> at);
        at += digits;
        if (at == windowLength) {
            break;
        }
        if (run.length() + windowRoom > dst.left()) {
            src.p += at - digits;
            run.digits -= digits;
            return false;
        }
        dst.p = putZeroes(run.length(), dst.p);
        run = Run{};
        const Ntk64u nextDigits = m.digits >> at;
        const unsigned length = nextDigits == 0
                                    ? windowLength - at
                                    : static_cast<unsigned>(__builtin_ctzll(nextDigits));
        dst.p = putOthers(src.p + at, length, dst.p);
        at += length;
        if (at == windowLength) {
            break;
        }
    }
    src.p += windowLength;
    return true;
}

// Decodes windows as long as they fit both sides and need no special handling. Ends before a run.
void decodeWindows(Span<const Symbol>& src, Span<Ntk8u>& dst, unsigned maxSymbol) {
    Run run;
    while (src.left() >= windowLength + vectorLength && dst.left() >= windowRoom &&
           decodeWindow(src, dst, run, maxSymbol)) {
    }
    src.p -= run.digits;
}

// Takes the digits of the run that begins at the source's position; returns its length, 0 if that
// is above INT_MAX.
Ntk64u takeRun(Span<const Symbol>& src) {
    Run run;
    while (!src.empty() && src.p->value < 2) {
        if (run.digits > mostDigits) {
            return 0;
        }
        run.add(1, src.p++->value);
    }
    return run.length() > INT_MAX ? 0 : run.length();
}

NtkStatus decodeRest(Span<const Symbol>& src, Span<Ntk8u>& dst, unsigned maxSymbol) {
    while (!src.empty()) {
        if (src.p->value > maxSymbol) {
            return ntkStsBadSrcData;
        }
        const Symbol* const from = src.p;
        const bool isRun = from->value < 2;
        const Ntk64u length = isRun ? takeRun(src) : 1;
        if (length == 0) {
            return ntkStsBadSrcData;
        }
        if (length > dst.left()) {
            src.p = from;
            return ntkStsDstFull;
        }
        if (isRun) {
            std::memset(dst.p, 0, length);
        } else {
            *dst.p = static_cast<Ntk8u>(src.p++->value - 1);
        }
        dst.p += length;
    }
    return ntkStsNoErr;
}

} // namespace

NtkStatus decodeZ1Z2(Span<const Symbol>& src, Span<Ntk8u>& dst, unsigned maxSymbol) {
    decodeWindows(src, dst, maxSymbol);
    return decodeRest(src, dst, maxSymbol);
}

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksDecodeZ1Z2_BZ2_16u8u(Ntk16u** ppSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen) {
    if (anyNull(ppSrc, pSrcLen, pDst, pDstLen) || *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    Span<const Symbol> src(atAnyAddress(*ppSrc), *pSrcLen);
    Span<Ntk8u> dst(pDst, *pDstLen);
    const NtkStatus status = decodeZ1Z2(src, dst, largestSymbol);
    if (status < 0) {
        return status;
    }
    *ppSrc += *pSrcLen - static_cast<int>(src.left());
    *pSrcLen = static_cast<int>(src.left());
    *pDstLen = static_cast<int>(dst.p - pDst);
    return status;
}
