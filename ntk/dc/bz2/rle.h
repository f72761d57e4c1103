// The state of a run-length coder, and what encoder and decoder share.
#pragma once

#include <emmintrin.h>

#include <cstring>

#include "ntkdefs.h"

namespace ntk::bz2 {

inline constexpr int leastRun = 4; // the shortest run with a count
inline constexpr int longestRun = 255;

// Bytes only, so that the caller's block needs no alignment.
struct RleState {
    Ntk8u pendingByte;   // encoder: the run read last and not yet written;
    Ntk8u pendingLength; //          0 for none
    Ntk8u lastByte;      // decoder: the byte written last;
    Ntk8u equal;         //          how many of it in a row, 0 to 4; after 4 comes the count
    Ntk8u repeats;       //          how many more are still to be written
    Ntk8u inUse[256];
};

inline RleState& rleState(Ntk8u* block) {
    return *reinterpret_cast<RleState*>(block);
}

// Vector steps read 3 bytes beyond the 16 that they process.
inline constexpr std::size_t stepBytes = 16;
inline constexpr std::size_t stepReach = stepBytes + leastRun - 1;

inline __m128i load16(const Ntk8u* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

inline void copy16(const Ntk8u* from, Ntk8u* to) {
    std::memcpy(to, from, stepBytes);
}

// Bit i is set where p[i] to p[i + 3] are equal.
inline unsigned fourEqual(const Ntk8u* p) {
    const __m128i x1 = load16(p + 1);
    const __m128i x2 = load16(p + 2);
    const __m128i equal =
        _mm_and_si128(_mm_and_si128(_mm_cmpeq_epi8(load16(p), x1), _mm_cmpeq_epi8(x1, x2)),
                      _mm_cmpeq_epi8(x2, load16(p + 3)));
    return static_cast<unsigned>(_mm_movemask_epi8(equal));
}

} // namespace ntk::bz2
