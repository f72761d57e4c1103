#include "indexscan.h"

#include <algorithm>

#include <immintrin.h>

namespace ntk::lz4 {

namespace {

// A word above the limit sets the top bit of the difference or has it set itself. Without branches,
// so that the compiler vectorises it.
bool scanGeneric(const Ntk32u* words, std::size_t count, Ntk32u limit) {
    Ntk32u signs = 0;
    for (std::size_t i = 0; i < count; ++i) {
        signs |= (limit - words[i]) | words[i];
    }
    return (signs >> 31) == 0;
}

// Four maxima side by side: each has a latency of one clock, and two can start per clock.
[[gnu::target("avx2")]] bool scanAvx2(const Ntk32u* words, std::size_t count, Ntk32u limit) {
    constexpr std::size_t lanes = 8;
    __m256i largest[4] = {};
    for (std::size_t i = 0; i < count; i += 4 * lanes) {
        for (std::size_t k = 0; k < 4; ++k) {
            const auto* at = reinterpret_cast<const __m256i*>(words + i + k * lanes);
            largest[k] = _mm256_max_epu32(largest[k], _mm256_loadu_si256(at));
        }
    }
    alignas(32) Ntk32u m[lanes];
    _mm256_store_si256(reinterpret_cast<__m256i*>(m),
                       _mm256_max_epu32(_mm256_max_epu32(largest[0], largest[1]),
                                        _mm256_max_epu32(largest[2], largest[3])));
    return *std::max_element(m, m + lanes) <= limit;
}

constexpr Candidate<IndexScanFunction> candidates[] = {
    {"avx2", NTK_CPU_AVX2, 0, scanAvx2},
    {"generic", 0, 0, scanGeneric},
};

} // namespace

constinit Choice<IndexScanFunction> noneAbove(candidates);

} // namespace ntk::lz4
