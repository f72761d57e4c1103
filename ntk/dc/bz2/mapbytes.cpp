// Replacing bytes through a table of 256.
//
// Generic: a load per byte. With AVX-512 VBMI one instruction looks up 64 bytes at once in a table
// of 128, by their lower seven bits; two lookups and a blend by the eighth bit cover all 256.

#include <immintrin.h>

#include "bytekernels.h"

namespace ntk::bz2 {

namespace {

void mapGeneric(const Ntk8u table[256], Ntk8u* bytes, std::size_t length) {
    for (std::size_t i = 0; i < length; i++) {
        bytes[i] = table[bytes[i]];
    }
}

[[gnu::target("avx512f,avx512bw,avx512vbmi")]] void mapVbmi(const Ntk8u table[256], Ntk8u* bytes,
                                                            std::size_t length) {
    const __m512i part0 = _mm512_loadu_si512(table);
    const __m512i part1 = _mm512_loadu_si512(table + 64);
    const __m512i part2 = _mm512_loadu_si512(table + 128);
    const __m512i part3 = _mm512_loadu_si512(table + 192);
    for (std::size_t i = 0; i < length; i += 64) {
        const __mmask64 lanes = length - i >= 64 ? ~0ULL : (1ULL << (length - i)) - 1;
        const __m512i x = _mm512_maskz_loadu_epi8(lanes, bytes + i);
        const __m512i low = _mm512_permutex2var_epi8(part0, x, part1);
        const __m512i high = _mm512_permutex2var_epi8(part2, x, part3);
        const __m512i y = _mm512_mask_blend_epi8(_mm512_movepi8_mask(x), low, high);
        _mm512_mask_storeu_epi8(bytes + i, lanes, y);
    }
}

constexpr Candidate<MapBytes> candidates[] = {
    {"avx512vbmi", NTK_CPU_AVX512F | NTK_CPU_AVX512BW | NTK_CPU_AVX512VBMI, 0, mapVbmi},
    {"generic", 0, 0, mapGeneric},
};

} // namespace

constinit Choice<MapBytes> mapBytesKernel{candidates};

} // namespace ntk::bz2
