// Search for earlier occurrences of the data at a position; lz77.cpp describes the method.
#pragma once

#include "chainwalk.h"

namespace ntk::deflate {

// What a match of 3 bytes saves at most.
inline constexpr int mostGainOf3 = gainOf(minMatch, 1);

// Where the nearest position with the same hash of 3 bytes has other ones, longer matches are rare
// (those that it hides): one in so many of the candidates is tried.
inline constexpr int rareMatchShare = 8;

// When a search ends.
struct SearchLimits {
    int chainLength; // largest number of candidates, 1 or more
    int niceLength;  // a match this long ends the search
};

// hasSecondLinks: whether links lead to the next two older positions. That takes time when a
// position is inserted and pays with more than a few candidates. Without, they lead to the next
// one, and out of the chain in place of the second.
template <bool hasSecondLinks> class MatchFinder {
public:
    explicit MatchFinder(const SearchSpace& space)
        : m_space(space), m_nearHeads(space.heads + space.hashSize / 2),
          m_windowMask(space.windowSize - 1),
          m_hashShift(33 - __builtin_ctz(static_cast<unsigned>(space.hashSize))) {}

    const Ntk8u* at(int position) const {
        return m_space.source + (static_cast<std::ptrdiff_t>(position) - m_space.first);
    }
    bool canSearch(int position) const { return position <= m_space.end - keyBytes; }

    // The match that saves most, if that is more than leastGain bits (0 or more). Inlined: else the
    // tables' addresses would not stay in the registers of the caller's loop.
    [[gnu::always_inline]] Match findAndInsert(int position, int leastGain,
                                               const SearchLimits& limits) {
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
                best.improve(minMatch, position - nearest);
            } else if (nearest < position) { // else a call before this one has been here
                candidates /= rareMatchShare;
            }
        }
        if (candidates == 0 || !isWithin(newest, lowest, position)) {
            return best;
        }
        const int most = std::min(maxMatch, m_space.end - position);
        const int enough = std::min(limits.niceLength, most);
        // Only a longer match can save enough.
        const int longerThan = std::max(minMatch, (best.gain + codeBits) / 8);
        if (longerThan >= enough) {
            return best;
        }
        return bestInChain<hasSecondLinks>(
            {at(position), at(m_space.end), m_space.links, static_cast<Ntk32u>(m_windowMask),
             static_cast<Ntk32u>(position), static_cast<Ntk32u>(position - newest),
             static_cast<Ntk32u>(position - lowest), longerThan, most, enough, candidates},
            best);
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
        m_space.heads[chainHash(load32(at(position)))].value =
            position - static_cast<int>(nextOlder(links(position).value));
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
    static bool isWithin(int position, int lowest, int end) {
        return position >= lowest && position < end;
    }

    // A multiplicative hash by 2^32 divided by the golden ratio.
    Ntk32u chainHash(Ntk32u key) const { return key * 0x9E3779B1U >> m_hashShift; }
    Ntk32u nearHash(Ntk32u key) const { return (key << 8) * 0x9E3779B1U >> m_hashShift; }
    Links& links(int position) { return m_space.links[position & m_windowMask]; }

    // Returns what was the newest position of the chain before.
    int insertIntoChain(int position, Ntk32u key) {
        Position& head = m_space.heads[chainHash(key)];
        const int newest = head.value;
        const Ntk32u back =
            std::min(static_cast<Ntk32u>(position) - static_cast<Ntk32u>(newest), noLink);
        const Ntk32u second =
            hasSecondLinks ? std::min(back + nextOlder(links(newest).value), noLink) : noLink;
        links(position).value = linksOf(back, second);
        head.value = position;
        return newest;
    }

    SearchSpace m_space;
    Position* m_nearHeads;
    int m_windowMask;
    int m_hashShift;
};

} // namespace ntk::deflate
