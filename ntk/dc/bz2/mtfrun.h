// Runs of the front byte, for the encoders of move-to-front.
#pragma once

#include <immintrin.h>

#include "ntkdefs.h"

namespace ntk::bz2 {

// Writes 16 zeroes; returns how many of the first of 16 bytes equal `byte`.
inline unsigned codeRun(const Ntk8u* from, Ntk8u byte, Ntk8u* to) {
    const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const int equal =
        _mm_movemask_epi8(_mm_cmpeq_epi8(next, _mm_set1_epi8(static_cast<char>(byte))));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_setzero_si128());
    return static_cast<unsigned>(__builtin_ctz(~static_cast<unsigned>(equal)));
}

} // namespace ntk::bz2
