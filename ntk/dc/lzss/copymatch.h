// The copy of a match by words. All functions write up to copySlack bytes beyond its end.
#pragma once

#include "../repetition.h"
#include "tokens.h"

namespace ntk::lzss {

inline constexpr Ntk32u copySlack = 64;

struct Bytes16 {
    Ntk64u words[2];
};

inline void store(Ntk8u* to, Bytes16 bytes) {
    std::memcpy(to, &bytes, sizeof bytes);
}

// Both loads come before the stores, so that the second one, which may load too much, does not wait
// for the first store.
inline void copy32(Ntk8u* to, const Ntk8u* from) {
    const auto low = load<Bytes16>(from);
    const auto high = load<Bytes16>(from + 16);
    store(to, low);
    store(to + 16, high);
}

// Repeats the last `distance` bytes, fewer than 8, until `end`.
inline void repeat(Ntk8u* to, Ntk32u distance, const Ntk8u* end) {
    const Ntk64u word = repeatedWord(to, distance);
    const unsigned step = repetitions[distance].step;
    if (step == 8) {
        for (; to < end; to += 64) {
            for (int i = 0; i < 64; i += 16) {
                store(to + i, {word, word});
            }
        }
    } else {
        for (; to < end; to += 2 * step) {
            std::memcpy(to, &word, 8);
            std::memcpy(to + step, &word, 8);
        }
    }
}

// Any match: it may be long, and overlap itself.
inline void copyMatch(Ntk8u* to, Match m) {
    const Ntk8u* from = to - m.distance;
    const Ntk8u* const end = to + m.length;
    if (m.distance >= 16) {
        for (; to < end; to += 64, from += 64) {
            for (int i = 0; i < 64; i += 16) {
                store(to + i, load<Bytes16>(from + i));
            }
        }
    } else if (m.distance >= 8) {
        for (; to < end; to += 16, from += 16) {
            copy8(to, from);
            copy8(to + 8, from + 8);
        }
    } else {
        repeat(to, m.distance, end);
    }
}

} // namespace ntk::lzss
