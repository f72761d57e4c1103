// Copies of matches far from the end of the destination: all write beyond the end of the match.
#pragma once

#include <cstddef>
#include <cstring>

#include "../repetition.h"
#include "bitreader.h"

namespace ntk::inflate {

// How far copies write beyond the end of a match, at most.
inline constexpr unsigned writtenBeyond = 31;

inline void store64(Ntk8u* bytes, Ntk64u word) {
    std::memcpy(bytes, &word, sizeof word);
}

inline void copy16(Ntk8u* to, const Ntk8u* from) {
    std::memcpy(to, from, 16);
}

// For distances of 1 to 15. Writes up to 31 bytes beyond the end.
inline void repeat(Ntk8u* to, unsigned length, unsigned distance) {
    const Ntk8u* from = to - distance;
    Ntk8u* const end = to + length;
    if (distance >= 8) {
        do {
            store64(to, load64(from));
            store64(to + 8, load64(from + 8));
            to += 16;
            from += 16;
        } while (to < end);
    } else {
        const Ntk64u word = repeatedWord(to, distance);
        const unsigned step = repetitions[distance].step;
        do {
            store64(to, word);
            store64(to + step, word);
            store64(to + 2 * step, word);
            store64(to + 3 * step, word);
            to += 4 * step;
        } while (to < end);
    }
}

// For distances of `step` or more. Writes up to step - 1 bytes beyond the end.
template <unsigned step> void copyInSteps(Ntk8u* to, unsigned length, unsigned distance) {
    const Ntk8u* const from = to - distance;
    for (unsigned done = 0; done < length; done += step) {
        std::memcpy(to + done, from + done, step);
    }
}

inline void copyLong(Ntk8u* to, unsigned length, unsigned distance) {
    if (distance < 16) {
        repeat(to, length, distance);
    } else if (distance >= 32) {
        copyInSteps<32>(to, length, distance);
    } else {
        copyInSteps<16>(to, length, distance);
    }
}

// The length is asked for first: with the distance first, pic took 10% more.
inline void copyMatch(Ntk8u* to, unsigned length, unsigned distance) {
    if (length > 32) {
        copyLong(to, length, distance);
    } else if (distance < 16) {
        repeat(to, length, distance);
    } else {
        copy16(to, to - distance);
        copy16(to + 16, to - distance + 16);
    }
}

} // namespace ntk::inflate
