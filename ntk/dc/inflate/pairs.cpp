#include "pairs.h"

#include <immintrin.h>

namespace ntk::inflate {

namespace {

// Joined are the fields of the second entry and, in the lower value byte, the first literal: a
// second literal is in the upper byte already, and so is a length.
[[gnu::always_inline]] inline Entry join(Entry first, unsigned index, const CodeTable& literals) {
    const unsigned bits = takenBits(first);
    const Entry second = literals.entries[(index >> bits) & literals.rootMask];
    const Entry joined = ((second & ~firstLiteralMask) | (first & firstLiteralMask)) + oneLiteral +
                         (bits << 8) + bits;
    const bool isPair = (first & literalMask) == oneLiteral && !isException(second) &&
                        bits + codeBits(second) <= pairBits;
    return isPair ? joined : first;
}

[[gnu::always_inline]] inline void fill(CodeTable literals, PairTable& pairs) {
    for (unsigned i = 0; i < pairs.size(); ++i) {
        pairs[i] = join(literals.entries[i & literals.rootMask], i, literals);
    }
}

void fillGeneric(CodeTable literals, PairTable& pairs) {
    fill(literals, pairs);
}
[[gnu::target("avx2")]] inline __m256i all(Entry e) {
    return _mm256_set1_epi32(static_cast<int>(e));
}

// Eight indices at a time: 1.2 clocks for an index, 6 without.
[[gnu::target("avx2")]] __m256i join8(__m256i first, __m256i index, const CodeTable& literals) {
    const __m256i bits = _mm256_and_si256(first, all(takenMask));
    const __m256i behind = _mm256_and_si256(_mm256_srlv_epi32(index, bits), all(literals.rootMask));
    const __m256i second =
        _mm256_i32gather_epi32(reinterpret_cast<const int*>(literals.entries), behind, 4);
    const __m256i values = _mm256_or_si256(_mm256_and_si256(second, all(~firstLiteralMask)),
                                           _mm256_and_si256(first, all(firstLiteralMask)));
    const __m256i joined = _mm256_add_epi32(_mm256_add_epi32(values, all(oneLiteral)),
                                            _mm256_add_epi32(bits, _mm256_slli_epi32(bits, 8)));
    const __m256i isLiteral =
        _mm256_cmpeq_epi32(_mm256_and_si256(first, all(literalMask)), all(oneLiteral));
    const __m256i cannotFollow = _mm256_or_si256(
        _mm256_cmpgt_epi32(_mm256_add_epi32(_mm256_and_si256(first, all(codeBitsMask)),
                                            _mm256_and_si256(second, all(codeBitsMask))),
                           all(pairBits << 8)),
        _mm256_cmpeq_epi32(_mm256_and_si256(second, all(exceptionFlag)), all(exceptionFlag)));
    return _mm256_blendv_epi8(first, joined, _mm256_andnot_si256(cannotFollow, isLiteral));
}

[[gnu::target("avx2")]] void fillAvx2(CodeTable literals, PairTable& pairs) {
    constexpr unsigned step = 8;
    if (literals.rootMask < step - 1) {
        return fillGeneric(literals, pairs);
    }
    __m256i index = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    for (unsigned i = 0; i < pairs.size(); i += step) {
        const __m256i first = _mm256_loadu_si256(
            reinterpret_cast<const __m256i*>(&literals.entries[i & literals.rootMask]));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(&pairs[i]), join8(first, index, literals));
        index = _mm256_add_epi32(index, _mm256_set1_epi32(step));
    }
}

constexpr Candidate<FillPairs> candidates[] = {
    {"avx2", NTK_CPU_AVX2, 0, fillAvx2},
    {"generic", 0, 0, fillGeneric},
};

} // namespace

constinit Choice<FillPairs> fillPairsKernel{candidates};

} // namespace ntk::inflate
