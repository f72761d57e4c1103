// The way along a chain of candidates; lz77.cpp describes the method.
#pragma once

#include <algorithm>
#include <cstddef>

#include "searchspace.h"

namespace ntk::deflate {

// Bytes that must follow from a position on for it to be searched or inserted.
inline constexpr int keyBytes = 4;

// Bits of the codes of a length and a distance, in most cases, with the fixed codes.
inline constexpr int codeBits = 7 + 5;

// Bits saved when literals of 8 bits become a match.
constexpr int gainOf(int length, int distance) {
    const int distanceBits = 30 - __builtin_clz(static_cast<unsigned>(distance - 1) | 2);
    return 8 * length - codeBits - lengthExtraBits[lengthSymbolOf[length - minMatch]] -
           distanceBits;
}

struct Match {
    int length; // 0: none
    int distance;
    int gain;

    void improve(int otherLength, int otherDistance) {
        const int otherGain = gainOf(otherLength, otherDistance);
        if (otherGain > gain) {
            *this = {otherLength, otherDistance, otherGain};
        }
    }
};

// Number of equal bytes at two places whose first keyBytes are equal, at most `most`.
inline int commonLength(const Ntk8u* here, const Ntk8u* there, int most, const Ntk8u* end) {
    const std::ptrdiff_t readable = end - here;
    int length = keyBytes;
    while (length < most && length + 8 <= readable) {
        const Ntk64u difference = load64(here + length) ^ load64(there + length);
        if (difference != 0) {
            return std::min(most, length + __builtin_ctzll(difference) / 8);
        }
        length += 8;
    }
    while (length < most && here[length] == there[length]) {
        ++length;
    }
    return std::min(length, most);
}

// Where a walk begins and when it ends.
struct ChainWalk {
    const Ntk8u* here; // the data at the position
    const Ntk8u* end;
    const Links* links;
    Ntk32u windowMask;
    Ntk32u position;
    Ntk32u distance; // of the first candidate, which is within reach
    Ntk32u reach;    // largest distance
    int longerThan;  // 3 or more; only longer matches are looked for
    int most;        // length that is possible
    int enough;      // a match this long ends the walk; more than longerThan
    int candidates;  // largest number of them, 1 or more
};

// The match that saves most, and more than `best`. Inlined: a call takes more than what many walks
// cost, with one or two candidates.
template <bool hasSecondLinks>
[[gnu::always_inline]] inline Match bestInChain(const ChainWalk& walk, Match best) {
    const Ntk8u* const here = walk.here;
    const Ntk32u key = load32(here);
    int length = walk.longerThan;
    int left = walk.candidates;
    auto tailAt = static_cast<std::size_t>(length - 3);
    Ntk32u tail = load32(here + tailAt);
    const auto isLast = [&](std::size_t distance) __attribute__((always_inline)) {
        const Ntk8u* const there = here - distance;
        if (load32(there + tailAt) == tail && load32(there) == key) {
            const int found = commonLength(here, there, walk.most, walk.end);
            if (found > length) {
                length = found;
                best.improve(found, static_cast<int>(distance));
                if (length >= walk.enough) {
                    return true;
                }
                tailAt = static_cast<std::size_t>(length - 3);
                tail = load32(here + tailAt);
            }
        }
        return --left == 0;
    };
    std::size_t distance = walk.distance;
    for (;;) {
        // Loaded before it is needed: the way from link to link takes the time.
        const auto candidate = walk.position - static_cast<Ntk32u>(distance);
        const Ntk32u links = walk.links[candidate & walk.windowMask].value;
        if (isLast(distance)) {
            return best;
        }
        if constexpr (hasSecondLinks) {
            const std::size_t next = distance + nextOlder(links);
            if (next > walk.reach || isLast(next)) {
                return best;
            }
        }
        distance += hasSecondLinks ? secondOlder(links) : nextOlder(links);
        if (distance > walk.reach) {
            return best;
        }
    }
}

} // namespace ntk::deflate
