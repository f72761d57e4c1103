// Search for earlier occurrences of the data at a position; lz77.cpp describes the method.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "../anyaddress.h"
#include "symbols.h"

namespace ntk::deflate {

// Bits of the codes of a length and a distance, in most cases, with the fixed codes.
inline constexpr int codeBits = 7 + 5;

// Bits saved when literals of 8 bits become a match.
constexpr int gainOf(int length, int distance) {
    const int distanceBits = 30 - __builtin_clz(static_cast<unsigned>(distance - 1) | 2);
    return 8 * length - codeBits - lengthExtraBits[lengthSymbolOf[length - minMatch]] -
           distanceBits;
}

// What a match of 3 bytes saves at most.
inline constexpr int mostGainOf3 = gainOf(minMatch, 1);

// Where the nearest position with the same hash of 3 bytes has other ones, longer matches are rare
// (those that it hides): one in so many of the candidates is tried.
inline constexpr int rareMatchShare = 8;

struct Match {
    int length; // 0: none
    int distance;
    int gain;
};

// When a search ends.
struct SearchLimits {
    int chainLength; // largest number of candidates, 1 or more
    int niceLength;  // a match this long ends the search
};

using Position = AnyAddress<Ntk32s>;

// How far back the next older position of a chain is, so that no contents lead to newer ones; 16
// bits are enough for every window. noLink leads out of it.
using Link = AnyAddress<Ntk16u>;
inline constexpr unsigned noLink = 65535;
static_assert(maxDistance < noLink);

// The data of a call and the caller's tables.
struct SearchSpace {
    const Ntk8u* source;
    int first;        // position of *source
    int end;          // position after the last byte
    int historyBegin; // position of the first byte that may be read
    int windowSize;
    Position* heads; // hashSize positions
    int hashSize;
    Link* links; // windowSize
};

class MatchFinder {
public:
    // Bytes that must follow from a position on for it to be searched or inserted.
    static constexpr int keyBytes = 4;

    explicit MatchFinder(const SearchSpace& space)
        : m_space(space), m_nearHeads(space.heads + space.hashSize / 2),
          m_windowMask(space.windowSize - 1),
          m_hashShift(33 - __builtin_ctz(static_cast<unsigned>(space.hashSize))) {}

    const Ntk8u* at(int position) const {
        return m_space.source + (static_cast<std::ptrdiff_t>(position) - m_space.first);
    }
    bool canSearch(int position) const { return position <= m_space.end - keyBytes; }

    // The match that saves most, if that is more than leastGain bits (0 or more).
    Match findAndInsert(int position, int leastGain, const SearchLimits& limits) {
        const Ntk32u key = load32(at(position));
        Position& nearHead = m_nearHeads[nearHash(key)];
        const int nearest = nearHead.value;
        nearHead.value = position;
        const int newest = insertIntoChain(position, key);
        const int lowest = std::max(m_space.historyBegin, position - m_space.windowSize);
        Match best{0, 0, leastGain};
        int candidates = limits.chainLength;
        if (leastGain <= mostGainOf3) {
            if (isWithin(nearest, lowest, position) && ((load32(at(nearest)) ^ key) << 8) == 0) {
                improve(best, minMatch, position - nearest);
            } else if (nearest < position) { // else a call before this one has been here
                candidates /= rareMatchShare;
            }
        }
        searchChain(best, position, newest, lowest, {candidates, limits.niceLength});
        return best;
    }

    void insert(int position) {
        const Ntk32u key = load32(at(position));
        m_nearHeads[nearHash(key)].value = position;
        insertIntoChain(position, key);
    }

    void insertRange(int from, int to) {
        for (const int last = std::min(to, m_space.end - keyBytes + 1); from < last; ++from) {
            insert(from);
        }
    }

    // Removes the position that was inserted last from its chain, so that it can be searched again.
    void remove(int position) {
        m_space.heads[chainHash(load32(at(position)))].value = position - link(position).value;
    }

    // Inserts the positions that an earlier call could not, for lack of the bytes after them.
    void insertBefore(int position) {
        for (int p = std::max(position - keyBytes + 1, m_space.historyBegin); p < position; ++p) {
            if (canSearch(p) && m_space.heads[chainHash(load32(at(p)))].value < p) {
                insert(p);
            }
        }
    }

private:
    static Ntk32u load32(const Ntk8u* p) {
        Ntk32u value;
        std::memcpy(&value, p, sizeof value);
        return value;
    }
    static Ntk64u load64(const Ntk8u* p) {
        Ntk64u value;
        std::memcpy(&value, p, sizeof value);
        return value;
    }
    static bool isWithin(int position, int lowest, int end) {
        return position >= lowest && position < end;
    }
    static void improve(Match& best, int length, int distance) {
        const int gain = gainOf(length, distance);
        if (gain > best.gain) {
            best = {length, distance, gain};
        }
    }

    // A multiplicative hash by 2^32 divided by the golden ratio.
    Ntk32u chainHash(Ntk32u key) const { return key * 0x9E3779B1U >> m_hashShift; }
    Ntk32u nearHash(Ntk32u key) const { return (key << 8) * 0x9E3779B1U >> m_hashShift; }
    Link& link(int position) { return m_space.links[position & m_windowMask]; }

    // Returns what was the newest position of the chain before.
    int insertIntoChain(int position, Ntk32u key) {
        Position& head = m_space.heads[chainHash(key)];
        const int newest = head.value;
        const auto back = static_cast<unsigned>(position) - static_cast<unsigned>(newest);
        link(position).value = static_cast<Ntk16u>(std::min(back, noLink));
        head.value = position;
        return newest;
    }

    // The first candidate is checked, the others are older, or the same again.
    void searchChain(Match& best, int position, int candidate, int lowest,
                     const SearchLimits& limits) {
        if (limits.chainLength == 0 || !isWithin(candidate, lowest, position)) {
            return;
        }
        const Ntk8u* const here = at(position);
        const Ntk32u key = load32(here);
        const int most = std::min(maxMatch, m_space.end - position);
        const int enough = std::min(limits.niceLength, most);
        // Only a longer match can save enough.
        int length = std::max(minMatch, (best.gain + codeBits) / 8);
        if (length >= enough) {
            return;
        }
        Ntk32u tail = load32(here + length - 3);
        for (int left = limits.chainLength;;) {
            const Ntk8u* const there = at(candidate);
            if (load32(there + length - 3) == tail && load32(there) == key) {
                const int found = commonLength(here, there, most);
                if (found > length) {
                    length = found;
                    improve(best, found, position - candidate);
                    if (length >= enough) {
                        return;
                    }
                    tail = load32(here + length - 3);
                }
            }
            candidate -= link(candidate).value;
            if (--left == 0 || candidate < lowest) {
                return;
            }
        }
    }

    // Number of equal bytes at two places whose first keyBytes are equal, at most `most`.
    int commonLength(const Ntk8u* here, const Ntk8u* there, int most) const {
        const std::ptrdiff_t readable = at(m_space.end) - here;
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

    SearchSpace m_space;
    Position* m_nearHeads;
    int m_windowMask;
    int m_hashShift;
};

} // namespace ntk::deflate
