#include "windowsearch.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace ntk::lzss {

namespace {

constexpr int maxCandidates = 16;

Ntk32u hashOf(Ntk32u value, int bits) {
    return value * 2654435761U >> (32 - bits);
}

// Number of equal bytes from a and b on, at most limit; reads up to 7 bytes beyond it.
Ntk32u equalBytes(const Ntk8u* a, const Ntk8u* b, Ntk32u limit) {
    for (Ntk32u n = 0; n < limit; n += 8) {
        const Ntk64u difference = load<Ntk64u>(a + n) ^ load<Ntk64u>(b + n);
        if (difference != 0) {
            return std::min(n + static_cast<Ntk32u>(std::countr_zero(difference)) / 8, limit);
        }
    }
    return limit;
}

// Positions that leave the window become 0. All in 16 bits, so that the compiler vectorises it.
void subtractFromAll(Ntk16u* positions, std::size_t count, Ntk16u by) {
    for (std::size_t i = 0; i < count; ++i) {
        const Ntk16u p = positions[i];
        positions[i] = p >= by ? static_cast<Ntk16u>(p - by) : Ntk16u{0};
    }
}

} // namespace

void MatchFinder::reset() {
    m_pos = m_end = m_nextToInsert = 1;
    std::fill(std::begin(m_head4), std::end(m_head4), Ntk16u{0});
    std::fill(std::begin(m_head3), std::end(m_head3), Ntk16u{0});
    std::fill(std::begin(m_chain), std::end(m_chain), Ntk16u{0});
    std::fill(std::begin(m_bytes), std::end(m_bytes), Ntk8u{0});
}

Ntk32u MatchFinder::fill(const Ntk8u* bytes, Ntk32u count) {
    if (m_end == size) {
        slide();
    }
    const Ntk32u taken = std::min(count, size - m_end);
    std::memcpy(m_bytes + m_end, bytes, taken);
    m_end += taken;
    return taken;
}

void MatchFinder::slide() {
    constexpr Ntk32u distance = size - window;
    std::memcpy(m_bytes, m_bytes + distance, window);
    m_pos -= distance;
    m_end -= distance;
    m_nextToInsert -= distance;
    subtractFromAll(m_head4, std::size(m_head4), distance);
    subtractFromAll(m_head3, std::size(m_head3), distance);
    subtractFromAll(m_chain, std::size(m_chain), distance);
}

Ntk16u& MatchFinder::head4(Ntk32u position) {
    return m_head4[hashOf(load<Ntk32u>(m_bytes + position), hashBits4)];
}

Ntk16u& MatchFinder::head3(Ntk32u position) {
    return m_head3[hashOf(load<Ntk32u>(m_bytes + position) << 8, hashBits3)];
}

void MatchFinder::insertUpTo(Ntk32u position) {
    for (; m_nextToInsert < position && m_nextToInsert + 4 <= m_end; ++m_nextToInsert) {
        Ntk16u& head = head4(m_nextToInsert);
        m_chain[m_nextToInsert % window] = head;
        head = static_cast<Ntk16u>(m_nextToInsert);
        head3(m_nextToInsert) = static_cast<Ntk16u>(m_nextToInsert);
    }
}

Match MatchFinder::find(Ntk32u ahead) {
    const Ntk32u position = m_pos + ahead;
    const Ntk8u* const here = m_bytes + position;
    const Ntk32u limit = std::min(m_end - position, maxMatch);
    insertUpTo(position);
    if (limit < 4) {
        return {0, 0};
    }
    const Ntk32u lowest = position > maxDistance ? position - maxDistance : 1;
    Match best{0, 0};
    Ntk32u length = minMatch; // a candidate of the chain must be longer
    Ntk32u candidate = head4(position);
    for (int i = 0; i < maxCandidates && candidate >= lowest; ++i) {
        const Ntk8u* const there = m_bytes + candidate;
        if (load<Ntk32u>(there + length - 3) == load<Ntk32u>(here + length - 3)) {
            const Match match{equalBytes(there, here, limit), position - candidate};
            if (match.length > length && savedBits(match) > savedBits(best)) {
                best = match;
                length = match.length;
                if (length == limit) {
                    return best;
                }
            }
        }
        candidate = m_chain[candidate % window];
    }
    if (best.length == 0) {
        candidate = head3(position);
        if (candidate >= lowest && position - candidate <= maxShortDistance &&
            equalBytes(m_bytes + candidate, here, minMatch) == minMatch) {
            return {minMatch, position - candidate};
        }
    }
    return best;
}

} // namespace ntk::lzss
