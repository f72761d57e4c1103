// Move-to-front, decoding. Method: see mtf.cpp.
//
// The positions are known in advance, so a step within the front of the list is a lookup of its
// shuffle and the shuffle itself, with a latency of one clock per step (SSSE3). If 16 positions in
// a row are 0, the front byte is written 16 times.

#include "bytekernels.h"
#include "mtflist.h"

namespace ntk::bz2 {

namespace {

bool allZero(const Ntk8u* p) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())) == 0xffff;
}

void fill16(Ntk8u* p, Ntk8u byte) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_set1_epi8(static_cast<char>(byte)));
}

// Without shuffles: the list stays in memory.
void inverseGeneric(const Ntk8u* from, Ntk8u* to, std::size_t length, Ntk8u listBytes[256]) {
    for (std::size_t i = 0; i < length; i++) {
        const unsigned position = from[i];
        const Ntk8u byte = listBytes[position];
        if (position < laneCount) {
            for (unsigned k = position; k > 0; k--) {
                listBytes[k] = listBytes[k - 1];
            }
        } else {
            std::memmove(listBytes + 1, listBytes, position);
        }
        to[i] = listBytes[0] = byte;
    }
}

struct Rotations {
    alignas(16) Ntk8u shuffle[laneCount][laneCount];
};

// shuffle[n] brings lane n to the front.
constexpr Rotations makeRotations() {
    Rotations r{};
    for (unsigned n = 0; n < laneCount; n++) {
        for (unsigned lane = 0; lane < laneCount; lane++) {
            r.shuffle[n][lane] = static_cast<Ntk8u>(lane == 0 ? n : lane <= n ? lane - 1 : lane);
        }
    }
    return r;
}
constexpr Rotations rotations = makeRotations();

[[gnu::target("ssse3")]] inline __m128i rotated(__m128i front, unsigned position) {
    const auto* const shuffle = reinterpret_cast<const __m128i*>(rotations.shuffle[position]);
    return _mm_shuffle_epi8(front, _mm_load_si128(shuffle));
}

[[gnu::target("ssse3")]] inline void decode(MtfList& list, unsigned position, Ntk8u* to) {
    if (__builtin_expect(position < laneCount, 1)) {
        list.setFront(rotated(list.front(), position));
    } else {
        list.moveFromBehind(list.byteAt(position), position);
    }
    *to = list.frontByte();
}

[[gnu::target("ssse3")]] void inverseSsse3(const Ntk8u* from, Ntk8u* to, std::size_t length,
                                           Ntk8u listBytes[256]) {
    MtfList list(listBytes);
    std::size_t i = 0;
    for (; length - i >= laneCount; i += laneCount) {
        if (allZero(from + i)) {
            fill16(to + i, list.frontByte());
            continue;
        }
        for (unsigned k = 0; k < laneCount; k++) {
            decode(list, from[i + k], to + i + k);
        }
    }
    for (; i < length; i++) {
        decode(list, from[i], to + i);
    }
    list.store(listBytes);
}

constexpr Candidate<MoveToFront> candidates[] = {
    {"ssse3", NTK_CPU_SSSE3, 0, inverseSsse3},
    {"generic", 0, 0, inverseGeneric},
};

} // namespace

constinit Choice<MoveToFront> mtfInverseKernel{candidates};

} // namespace ntk::bz2
