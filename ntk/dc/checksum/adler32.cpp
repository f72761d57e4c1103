// Kernels of Adler-32.
//
// The two sums are accumulated over a run of bytes and reduced modulo 65521 at its end. 5552 is the
// longest run for which the second sum fits 32 bits (RFC 1950): 255 n (n + 1) / 2 + (n + 1) 65520
// is below 2^32.

#include "kernels.h"

#include <algorithm>

#include <immintrin.h>
#include <libdeflate.h>

namespace ntk {

namespace {

constexpr Ntk32u modulus = 65521;
constexpr std::size_t longestRun = 5552;

struct Sums {
    Ntk32u bytes; // 1 + sum of the bytes
    Ntk32u sums;  // sum of the values of `bytes` after each byte

    explicit Sums(Ntk32u value) : bytes(value & 0xffff), sums(value >> 16) {}

    void add(const Ntk8u* data, std::size_t length) {
        for (std::size_t i = 0; i < length; ++i) {
            bytes += data[i];
            sums += bytes;
        }
    }
    void reduce() {
        bytes %= modulus;
        sums %= modulus;
    }
    Ntk32u value() const { return (sums << 16) | bytes; }
};

Ntk32u runLibdeflate(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return libdeflate_adler32(value, data, length);
}

[[gnu::target("ssse3")]] Ntk32u horizontalSum(__m128i words) {
    words = _mm_add_epi32(words, _mm_shuffle_epi32(words, 0x4e));
    words = _mm_add_epi32(words, _mm_shuffle_epi32(words, 0xb1));
    return static_cast<Ntk32u>(_mm_cvtsi128_si32(words));
}

// Adds blocks of 16 bytes. In the second sum, byte k of a block counts 16 - k times, and the value
// of `bytes` before the block counts 16 times; `before` sums up the latter, to be multiplied at the
// end.
[[gnu::target("ssse3")]] void addBlocks(Sums& s, const Ntk8u* data, std::size_t blocks) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i ones = _mm_set1_epi16(1);
    const __m128i weights = _mm_set_epi8(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    __m128i bytes = zero;
    __m128i before = zero;
    __m128i weighted = zero;
    s.sums += s.bytes * static_cast<Ntk32u>(16 * blocks);
    for (; blocks > 0; --blocks, data += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
        before = _mm_add_epi32(before, bytes);
        bytes = _mm_add_epi32(bytes, _mm_sad_epu8(block, zero));
        weighted = _mm_add_epi32(weighted, _mm_madd_epi16(_mm_maddubs_epi16(block, weights), ones));
    }
    s.bytes += horizontalSum(bytes);
    s.sums += horizontalSum(weighted) + 16 * horizontalSum(before);
}

Ntk32u runSsse3(Ntk32u value, const Ntk8u* data, std::size_t length) {
    Sums s(value);
    while (length > 0) {
        const std::size_t run = std::min(length, longestRun);
        addBlocks(s, data, run / 16);
        s.add(data + run / 16 * 16, run % 16);
        s.reduce();
        data += run;
        length -= run;
    }
    return s.value();
}

Ntk32u runGeneric(Ntk32u value, const Ntk8u* data, std::size_t length) {
    Sums s(value);
    while (length > 0) {
        const std::size_t run = std::min(length, longestRun);
        s.add(data, run);
        s.reduce();
        data += run;
        length -= run;
    }
    return s.value();
}

constexpr Candidate<ChecksumFunction> candidates[] = {
    {"libdeflate", NTK_CPU_SSE2, NTK_CPU_AVX2, runLibdeflate},
    {"ssse3", NTK_CPU_SSSE3, 0, runSsse3},
    {"generic", 0, 0, runGeneric},
};

} // namespace

constinit Choice<ChecksumFunction> adler32Kernel(candidates);

} // namespace ntk
