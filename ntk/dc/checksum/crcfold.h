// CRC registers of 32 bits by carry-less multiplication (V. Gopal et al., "Fast CRC Computation for
// Generic Polynomials Using PCLMULQDQ Instruction", 2009).
//
// The message is a polynomial over GF(2) whose first bit is the highest coefficient. 16 bytes A
// that are D bits ahead of 16 bytes B may be replaced by B + A * x^D mod P without changing the
// remainder; with A = H * x^64 + L that is B + H * (x^(D+64) mod P) + L * (x^D mod P), two
// multiplications whose products fit 128 bits. Four such folds with D = 512 run side by side to
// hide the latency of the multiplication, then the four are folded into one, and the remaining 16
// bytes go through the tables.
//
// Reflected CRCs read the same bytes in reversed bit order: a 128-bit word then holds the first bit
// lowest, a product is one position too low (hence the shifted constants), and the 32-bit constant
// is 32 bits too high, which reduces the exponent by 32.
#pragma once

#include <immintrin.h>

#include "crctables.h"

namespace ntk {

// x^exponent mod P, most significant bit first.
constexpr Ntk32u powerModulo(Ntk32u polynomial, int exponent) {
    Ntk32u r = 1;
    for (int i = 0; i < exponent; ++i) {
        r = (r << 1) ^ ((r >> 31) != 0 ? polynomial : 0);
    }
    return r;
}

// The pair of constants that fold 16 bytes over a distance in bits: for the low and the high half
// of the register.
struct FoldConstants {
    Ntk64u low;
    Ntk64u high;
};

template <Ntk32u polynomial> struct ReflectedFold {
    using Tables = ReflectedCrc<polynomial>;

    static constexpr FoldConstants constants(int bits) {
        return {static_cast<Ntk64u>(reflected(powerModulo(polynomial, bits + 32))) << 1,
                static_cast<Ntk64u>(reflected(powerModulo(polynomial, bits - 32))) << 1};
    }
    [[gnu::target("sse4.1,pclmul")]] static __m128i inBitOrder(__m128i bytes) { return bytes; }
    [[gnu::target("sse4.1,pclmul")]] static __m128i asFirstBits(Ntk32u crc) {
        return _mm_cvtsi32_si128(static_cast<int>(crc));
    }
};

template <Ntk32u polynomial> struct ForwardFold {
    using Tables = ForwardCrc<polynomial>;

    static constexpr FoldConstants constants(int bits) {
        return {powerModulo(polynomial, bits), powerModulo(polynomial, bits + 64)};
    }
    [[gnu::target("sse4.1,pclmul")]] static __m128i inBitOrder(__m128i bytes) {
        return _mm_shuffle_epi8(bytes,
                                _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    }
    [[gnu::target("sse4.1,pclmul")]] static __m128i asFirstBits(Ntk32u crc) {
        return _mm_set_epi32(static_cast<int>(crc), 0, 0, 0);
    }
};

template <class Fold> struct FoldedCrc {
    [[gnu::target("sse4.1,pclmul")]] static Ntk32u update(Ntk32u crc, const Ntk8u* data,
                                                          std::size_t length) {
        if (length < stride) {
            return Fold::Tables::update(crc, data, length);
        }
        __m128i a = _mm_xor_si128(load(data), Fold::asFirstBits(crc));
        __m128i b = load(data + 16);
        __m128i c = load(data + 32);
        __m128i d = load(data + 48);
        data += stride;
        length -= stride;
        const __m128i far = pair(Fold::constants(512));
        for (; length >= stride; data += stride, length -= stride) {
            a = folded(a, far, load(data));
            b = folded(b, far, load(data + 16));
            c = folded(c, far, load(data + 32));
            d = folded(d, far, load(data + 48));
        }
        const __m128i near = pair(Fold::constants(128));
        a = folded(folded(folded(a, near, b), near, c), near, d);
        for (; length >= 16; data += 16, length -= 16) {
            a = folded(a, near, load(data));
        }
        Ntk8u rest[16];
        _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), Fold::inBitOrder(a));
        return Fold::Tables::update(Fold::Tables::update(0, rest, 16), data, length);
    }

private:
    static constexpr std::size_t stride = 64;

    [[gnu::target("sse4.1,pclmul")]] static __m128i load(const Ntk8u* data) {
        return Fold::inBitOrder(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data)));
    }
    [[gnu::target("sse4.1,pclmul")]] static __m128i pair(FoldConstants c) {
        return _mm_set_epi64x(static_cast<long long>(c.high), static_cast<long long>(c.low));
    }
    [[gnu::target("sse4.1,pclmul")]] static __m128i folded(__m128i ahead, __m128i constants,
                                                           __m128i next) {
        const __m128i low = _mm_clmulepi64_si128(ahead, constants, 0x00);
        const __m128i high = _mm_clmulepi64_si128(ahead, constants, 0x11);
        return _mm_xor_si128(_mm_xor_si128(low, high), next);
    }
};

// Our own kernels of a CRC: they take and return the finished value, the register complemented.
template <class Fold> Ntk32u crcByFolding(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return ~FoldedCrc<Fold>::update(~value, data, length);
}
template <class Fold> Ntk32u crcByTables(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return ~Fold::Tables::update(~value, data, length);
}

} // namespace ntk
