// Filling the table of pairs with AVX-512: sixteen lanes, and masks in place of blends.

#include "pairs.h"

#ifndef __clang__ // gcc 12 warns of its own header
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>

namespace ntk::inflate {

namespace {

#define AVX512 gnu::target("avx512f"), gnu::always_inline

[[AVX512]] inline __m512i all(Entry e) {
    return _mm512_set1_epi32(static_cast<int>(e));
}
[[AVX512]] inline __m512i takenBits16(__m512i e) {
    return _mm512_and_si512(e, all(takenMask));
}
[[AVX512]] inline __m512i codeBits16(__m512i e) {
    return _mm512_and_si512(_mm512_srli_epi32(e, 8), all(0xf));
}
[[AVX512]] inline __m512i valueOf16(__m512i e) {
    return _mm512_srli_epi32(e, 16);
}
[[AVX512]] inline __m512i either(__m512i a, __m512i b, __m512i c, __m512i d) {
    return _mm512_or_si512(_mm512_or_si512(a, b), _mm512_or_si512(c, d));
}

// The halves of sixteen pairs.
struct Halves {
    __m512i low;
    __m512i high;
};

// The entries that follow in the table of literals or, where `isLength`, of distances.
[[AVX512]] inline __m512i following(__m512i behind, __mmask16 isLength, const CodeTable& literals,
                                    const CodeTable& distances) {
    const auto fromLiterals = static_cast<Entry>(distances.entries - literals.entries);
    const __m512i masks =
        _mm512_mask_mov_epi32(all(literals.rootMask), isLength, all(distances.rootMask));
    const __m512i at = _mm512_and_si512(behind, masks);
    return _mm512_i32gather_epi32(_mm512_mask_add_epi32(at, isLength, at, all(fromLiterals)),
                                  literals.entries, 4);
}

[[AVX512]] inline Halves joinLiterals16(__m512i first, __m512i second, __mmask16 isPair) {
    const __m512i firstBits = takenBits16(first);
    const __m512i bits = _mm512_mask_add_epi32(firstBits, isPair, firstBits, codeBits16(second));
    const __m512i count = _mm512_mask_mov_epi32(all(1U << 8), isPair, all(2U << 8));
    const __m512i value = _mm512_and_si512(valueOf16(first), all(0xff));
    const __m512i secondValue = _mm512_and_si512(valueOf16(second), all(0xff00));
    return {_mm512_or_si512(_mm512_or_si512(_mm512_slli_epi32(bits, 16), bits), count),
            _mm512_mask_or_epi32(value, isPair, value, secondValue)};
}

[[AVX512]] inline Halves joinMatch16(__m512i firstBits, __m512i length, __m512i second) {
    const __m512i bits = _mm512_add_epi32(firstBits, codeBits16(second));
    const __m512i taken = _mm512_add_epi32(firstBits, takenBits16(second));
    return {
        either(_mm512_slli_epi32(length, 8), all(matchFlag), _mm512_slli_epi32(bits, 16), taken),
        _mm512_and_si512(second, all(0xffff0000))};
}

[[AVX512]] inline __m512i lengths16(__m512i first, __m512i index) {
    const __m512i behind = _mm512_sllv_epi32(all(~0U), takenBits16(first));
    const __m512i extra = _mm512_srlv_epi32(_mm512_andnot_si512(behind, index), codeBits16(first));
    return _mm512_add_epi32(_mm512_add_epi32(_mm512_srli_epi32(first, 24), all(shortestMatch)),
                            extra);
}

[[AVX512]] inline Halves join16(__m512i first, __m512i index, const CodeTable& literals,
                                const CodeTable& distances) {
    const __m512i bits = takenBits16(first);
    const __mmask16 isLength = _mm512_testn_epi32_mask(first, all(exceptionBits));
    const __m512i second = following(_mm512_srlv_epi32(index, bits), isLength, literals, distances);
    // A literal is joined with a literal, a length with a distance: both have the same flags.
    const __mmask16 sameKind =
        _mm512_testn_epi32_mask(_mm512_xor_si512(first, second), all(exceptionBits));
    const __mmask16 isPair = _mm512_mask_cmple_epi32_mask(
        sameKind, _mm512_add_epi32(bits, codeBits16(second)), all(pairBits));
    const __m512i length = lengths16(first, index);
    const __mmask16 isMatch16 = _mm512_mask_cmpge_epi32_mask(
        _mm512_mask_cmple_epi32_mask(_kand_mask16(isPair, isLength), length, all(longestPaired)),
        valueOf16(second), all(nearestPaired));
    const __mmask16 isOther16 = _kor_mask16(_kandn_mask16(isMatch16, isLength),
                                            _mm512_test_epi32_mask(first, all(exceptionFlag)));

    const Halves ofLiterals = joinLiterals16(first, second, isPair);
    const Halves ofMatch = joinMatch16(bits, length, second);
    const __m512i low = _mm512_mask_mov_epi32(ofLiterals.low, isMatch16, ofMatch.low);
    const __m512i high = _mm512_mask_mov_epi32(ofLiterals.high, isMatch16, ofMatch.high);
    return {_mm512_mask_or_epi32(low, isOther16, bits, all(otherFlag)),
            _mm512_mask_mov_epi32(high, isOther16, first)};
}

} // namespace

[[gnu::target("avx512f")]] void fillPairsAvx512(CodeTable literals, CodeTable distances,
                                                Pairs<pairBits>& pairs) {
    constexpr unsigned lanes = 16;
    if (literals.rootMask < lanes - 1) {
        return fillPairs(literals, distances, pairBits, pairs.data());
    }
    const __m512i pairs0to7 =
        _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const __m512i pairs8to15 = _mm512_add_epi32(pairs0to7, all(8));
    __m512i index = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    for (unsigned i = 0; i < 1U << pairBits; i += lanes) {
        const __m512i first = _mm512_loadu_si512(&literals.entries[i & literals.rootMask]);
        const Halves h = join16(first, index, literals, distances);
        _mm512_storeu_si512(&pairs[i], _mm512_permutex2var_epi32(h.low, pairs0to7, h.high));
        _mm512_storeu_si512(&pairs[i + 8], _mm512_permutex2var_epi32(h.low, pairs8to15, h.high));
        index = _mm512_add_epi32(index, all(lanes));
    }
}

} // namespace ntk::inflate
