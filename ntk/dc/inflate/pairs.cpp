// Filling the table of pairs: in clocks on codes of book1, generic 13200, by 8 lanes 7200 (AVX2),
// by 16 lanes with masks 2900 (AVX-512).

#include "pairs.h"

#include <immintrin.h>

namespace ntk::inflate {

namespace {

void fillGeneric(CodeTable literals, CodeTable distances, Pairs<pairBits>& pairs) {
    fillPairs(literals, distances, pairBits, pairs.data());
}

#define AVX2 gnu::target("avx2"), gnu::always_inline

[[AVX2]] inline __m256i all(Entry e) {
    return _mm256_set1_epi32(static_cast<int>(e));
}
[[AVX2]] inline __m256i takenBits8(__m256i e) {
    return _mm256_and_si256(e, all(takenMask));
}
[[AVX2]] inline __m256i codeBits8(__m256i e) {
    return _mm256_and_si256(_mm256_srli_epi32(e, 8), all(0xf));
}
[[AVX2]] inline __m256i valueOf8(__m256i e) {
    return _mm256_srli_epi32(e, 16);
}
[[AVX2]] inline __m256i isZero(__m256i x) {
    return _mm256_cmpeq_epi32(x, _mm256_setzero_si256());
}
// b where the lane of `mask` is set.
[[AVX2]] inline __m256i choose(__m256i a, __m256i b, __m256i mask) {
    return _mm256_blendv_epi8(a, b, mask);
}

// The halves of eight pairs.
struct Halves {
    __m256i low;
    __m256i high;
};

// The entries that follow in the table of literals or, where `isLength`, of distances.
[[AVX2]] inline __m256i following(__m256i behind, __m256i isLength, const CodeTable& literals,
                                  const CodeTable& distances) {
    const auto fromLiterals = static_cast<Entry>(distances.entries - literals.entries);
    const __m256i masks = choose(all(literals.rootMask), all(distances.rootMask), isLength);
    const __m256i offset = _mm256_and_si256(all(fromLiterals), isLength);
    return _mm256_i32gather_epi32(reinterpret_cast<const int*>(literals.entries),
                                  _mm256_add_epi32(_mm256_and_si256(behind, masks), offset), 4);
}

[[AVX2]] inline Halves joinLiterals8(__m256i first, __m256i second, __m256i isSingle) {
    const __m256i bits =
        _mm256_add_epi32(takenBits8(first), _mm256_andnot_si256(isSingle, codeBits8(second)));
    const __m256i count = _mm256_sub_epi32(all(2U << 8), _mm256_and_si256(isSingle, all(1U << 8)));
    const __m256i secondValue = _mm256_and_si256(valueOf8(second), all(0xff00));
    return {_mm256_or_si256(count, _mm256_or_si256(_mm256_slli_epi32(bits, 16), bits)),
            _mm256_or_si256(_mm256_and_si256(valueOf8(first), all(0xff)),
                            _mm256_andnot_si256(isSingle, secondValue))};
}

[[AVX2]] inline Halves joinMatch8(__m256i firstBits, __m256i length, __m256i second) {
    const __m256i bits = _mm256_add_epi32(firstBits, codeBits8(second));
    const __m256i taken = _mm256_add_epi32(firstBits, takenBits8(second));
    return {_mm256_or_si256(_mm256_or_si256(_mm256_slli_epi32(length, 8), all(matchFlag)),
                            _mm256_or_si256(_mm256_slli_epi32(bits, 16), taken)),
            _mm256_and_si256(second, all(0xffff0000))};
}

[[AVX2]] inline __m256i lengths8(__m256i first, __m256i index) {
    const __m256i behind = _mm256_sllv_epi32(all(~0U), takenBits8(first));
    const __m256i extra = _mm256_srlv_epi32(_mm256_andnot_si256(behind, index), codeBits8(first));
    return _mm256_add_epi32(_mm256_add_epi32(_mm256_srli_epi32(first, 24), all(shortestMatch)),
                            extra);
}

[[AVX2]] inline Halves join8(__m256i first, __m256i index, const CodeTable& literals,
                             const CodeTable& distances) {
    const __m256i bits = takenBits8(first);
    const __m256i isLength = isZero(_mm256_and_si256(first, all(exceptionBits)));
    const __m256i second = following(_mm256_srlv_epi32(index, bits), isLength, literals, distances);
    // A literal is joined with a literal, a length with a distance: both have the same flags.
    const __m256i sameKind =
        isZero(_mm256_and_si256(_mm256_xor_si256(first, second), all(exceptionBits)));
    const __m256i cannotFollow = _mm256_or_si256(
        _mm256_xor_si256(sameKind, all(~0U)),
        _mm256_cmpgt_epi32(_mm256_add_epi32(bits, codeBits8(second)), all(pairBits)));
    const __m256i length = lengths8(first, index);
    const __m256i isNoMatch = _mm256_or_si256(
        _mm256_or_si256(cannotFollow, _mm256_cmpgt_epi32(length, all(longestPaired))),
        _mm256_cmpgt_epi32(all(nearestPaired), valueOf8(second)));
    const __m256i isOther8 = _mm256_or_si256(
        _mm256_and_si256(isLength, isNoMatch),
        _mm256_cmpeq_epi32(_mm256_and_si256(first, all(exceptionFlag)), all(exceptionFlag)));

    const Halves ofLiterals = joinLiterals8(first, second, cannotFollow);
    const Halves ofMatch = joinMatch8(bits, length, second);
    return {choose(choose(ofLiterals.low, ofMatch.low, isLength),
                   _mm256_or_si256(bits, all(otherFlag)), isOther8),
            choose(choose(ofLiterals.high, ofMatch.high, isLength), first, isOther8)};
}

[[gnu::target("avx2")]] void fillAvx2(CodeTable literals, CodeTable distances,
                                      Pairs<pairBits>& pairs) {
    constexpr unsigned lanes = 8;
    if (literals.rootMask < lanes - 1) {
        return fillGeneric(literals, distances, pairs);
    }
    __m256i index = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    for (unsigned i = 0; i < 1U << pairBits; i += lanes) {
        const __m256i first = _mm256_loadu_si256(
            reinterpret_cast<const __m256i*>(&literals.entries[i & literals.rootMask]));
        const Halves halves = join8(first, index, literals, distances);
        const __m256i pairs0145 = _mm256_unpacklo_epi32(halves.low, halves.high);
        const __m256i pairs2367 = _mm256_unpackhi_epi32(halves.low, halves.high);
        auto* const to = reinterpret_cast<__m256i*>(&pairs[i]);
        _mm256_storeu_si256(to, _mm256_permute2x128_si256(pairs0145, pairs2367, 0x20));
        _mm256_storeu_si256(to + 1, _mm256_permute2x128_si256(pairs0145, pairs2367, 0x31));
        index = _mm256_add_epi32(index, all(lanes));
    }
}

constexpr Candidate<FillPairs> candidates[] = {
    {"avx512", NTK_CPU_AVX512F, 0, fillPairsAvx512},
    {"avx2", NTK_CPU_AVX2, 0, fillAvx2},
    {"generic", 0, 0, fillGeneric},
};

} // namespace

constinit Choice<FillPairs> fillPairsKernel{candidates};

} // namespace ntk::inflate
