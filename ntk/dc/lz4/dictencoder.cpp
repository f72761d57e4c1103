#include "dictencoder.h"

#include <algorithm>
#include <cstring>

#include <emmintrin.h>

namespace ntk::lz4 {

namespace {

constexpr int minMatch = 4;
constexpr std::ptrdiff_t maxDistance = 65535;
// Rules of the format for the end of a block: the last 5 bytes are literals, and the last match
// begins at least 12 bytes before the end.
constexpr std::ptrdiff_t lastLiterals = 5;
constexpr std::ptrdiff_t lastMatchToEnd = 12;
constexpr std::ptrdiff_t longRun = 15; // from here on, lengths go on in bytes of their own
// After so many positions without a match, one more is left out between two. (liblz4 does so after
// 66 the first time. The difference shows where the values have 4 bytes: with 64, `geo` takes 0.80
// of liblz4's time and blocks are 0.5% longer; with 66, 1.0 and 0.0%.)
constexpr std::ptrdiff_t searchesPerStep = 64;
constexpr std::size_t dictionaryStep = 3; // positions of a dictionary that are inserted

template <class Word> Word load(const Ntk8u* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

// That of liblz4, which may go on with the table. By 5 bytes; 8 are read.
Ntk64u hashOf(Ntk64u bytes) {
    return (bytes << 24) * 889523592379U >> (64 - positionTableBits);
}
Ntk64u hashAt(const Ntk8u* p) {
    return hashOf(load<Ntk64u>(p));
}

// How many bytes are equal, at most up to the end of the first.
std::ptrdiff_t commonLength(const Ntk8u* a, const Ntk8u* b, const Ntk8u* end) {
    const Ntk8u* const start = a;
    if (end - a >= 8) [[likely]] {
        const Ntk64u difference = load<Ntk64u>(a) ^ load<Ntk64u>(b);
        if (difference != 0) {
            return __builtin_ctzll(difference) / 8;
        }
        a += 8;
        b += 8;
    }
    for (; end - a >= 16; a += 16, b += 16) {
        const __m128i left = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a));
        const __m128i right = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b));
        const auto equal = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(left, right)));
        if (equal != 0xFFFF) {
            return a - start + __builtin_ctz(~equal);
        }
    }
    while (a < end && *a == *b) {
        ++a;
        ++b;
    }
    return a - start;
}

// The rest of a length that began with 15 in the token.
Ntk8u* putLength(Ntk8u* to, std::ptrdiff_t rest) {
    for (; rest >= 255; rest -= 255) {
        *to++ = 255;
    }
    *to++ = static_cast<Ntk8u>(rest);
    return to;
}

std::ptrdiff_t lengthBytes(std::ptrdiff_t length) {
    return (length + 240) / 255; // none below 15
}

// Its end does not depend on its begin: the search goes on from there, and the next sequence can be
// looked up before it is known how far this one extends to the front.
struct Match {
    const Ntk8u* begin;
    const Ntk8u* end;
    Ntk32u distance;
};

// isInPlace: the dictionary lies directly before the source.
template <bool isInPlace> class DictEncoder {
public:
    DictEncoder(PositionTable& table, Ntk32u index, const DictArguments& d, const Ntk8u* src,
                int srcLen, Ntk8u* dst, int capacity)
        : m_table(table), m_src(src), m_end(src + srcLen),
          m_dictEnd(isInPlace ? src : d.dict + d.dictLen),
          m_dictLen(static_cast<Ntk32u>(std::min<std::ptrdiff_t>(d.dictLen, maxDistance))),
          m_bias(index - static_cast<Ntk32u>(reinterpret_cast<std::uintptr_t>(src))), m_dst(dst),
          m_to(dst), m_dstEnd(dst + capacity) {}

    int encode();

private:
    const Ntk8u* find(const Ntk8u* here, Ntk32u& distance);
    Ntk32u exchange(const Ntk8u* here, Ntk64u hash);
    std::ptrdiff_t reachAt(const Ntk8u* here) const;
    bool isWhole(const Ntk8u* here, Ntk32u distance) const;
    bool isMatch(const Ntk8u* here, Ntk32u distance) const;
    const Ntk8u* earlier(const Ntk8u* here, Ntk32u distance) const;
    Match extended(const Ntk8u* here, Ntk32u distance, const Ntk8u* anchor) const;
    std::ptrdiff_t lengthAt(const Ntk8u* here, const Ntk8u* there, bool isInSource) const;
    void putShort(const Ntk8u* anchor, const Match& match);
    bool putLong(const Ntk8u* anchor, const Match& match);
    bool put(const Ntk8u* anchor, const Match& match);
    bool putLast(const Ntk8u* anchor);

    PositionTable& m_table;
    const Ntk8u* m_src;
    const Ntk8u* m_end;
    const Ntk8u* m_dictEnd;
    Ntk32u m_dictLen;
    Ntk32u m_bias; // position less address, modulo 2^32
    Ntk8u* m_dst;
    Ntk8u* m_to;
    Ntk8u* m_dstEnd;
};

// Inserts the position; returns the distance of the one that was there.
template <bool isInPlace> Ntk32u DictEncoder<isInPlace>::exchange(const Ntk8u* here, Ntk64u hash) {
    const Ntk32u position = m_bias + static_cast<Ntk32u>(reinterpret_cast<std::uintptr_t>(here));
    const Ntk32u distance = position - m_table[hash];
    m_table[hash] = position;
    return distance;
}

// Where the bytes at a distance that isMatch allows are.
template <bool isInPlace>
const Ntk8u* DictEncoder<isInPlace>::earlier(const Ntk8u* here, Ntk32u distance) const {
    const std::ptrdiff_t beforeSource = static_cast<std::ptrdiff_t>(distance) - (here - m_src);
    return isInPlace || beforeSource <= 0 ? here - distance : m_dictEnd - beforeSource;
}

// How far back bytes are known.
template <bool isInPlace> std::ptrdiff_t DictEncoder<isInPlace>::reachAt(const Ntk8u* here) const {
    return here - m_src + static_cast<std::ptrdiff_t>(m_dictLen);
}

// Whether the 4 bytes at a distance do not begin in the last ones of the dictionary.
template <bool isInPlace>
bool DictEncoder<isInPlace>::isWhole(const Ntk8u* here, Ntk32u distance) const {
    const std::ptrdiff_t beforeSource = static_cast<std::ptrdiff_t>(distance) - (here - m_src);
    return beforeSource <= 0 || beforeSource >= minMatch;
}

template <bool isInPlace>
bool DictEncoder<isInPlace>::isMatch(const Ntk8u* here, Ntk32u distance) const {
    const auto limit = static_cast<Ntk64u>(std::min<std::ptrdiff_t>(reachAt(here), maxDistance));
    return distance - 1 < limit && (isInPlace || isWhole(here, distance)) &&
           load<Ntk32u>(earlier(here, distance)) == load<Ntk32u>(here);
}

// The next match that begins early enough; null if there is none. In blocks of positions within
// which the steps are equal and the reach of matches grows with the position, or not at all. The
// hash of the next position is ready when a wrong guess ends the search of this one.
template <bool isInPlace>
const Ntk8u* DictEncoder<isInPlace>::find(const Ntk8u* here, Ntk32u& distance) {
    const Ntk8u* const last = m_end - lastMatchToEnd;
    Ntk64u hash = hashAt(here);
    for (std::ptrdiff_t step = 1; step <= last - here; ++step) {
        const std::ptrdiff_t reach = reachAt(here);
        const bool isFar = reach >= maxDistance;
        const std::ptrdiff_t growth = isFar ? 0 : step;
        std::ptrdiff_t limit = isFar ? maxDistance : reach;
        std::ptrdiff_t most = std::min(last - here - step, (searchesPerStep - 1) * step);
        most = isFar ? most : std::min(most, maxDistance - reach);
        const Ntk8u* const blockEnd = here + most;
        do {
            const Ntk64u nextHash = hashAt(here + step);
            distance = exchange(here, hash);
            if (distance - 1 < static_cast<Ntk64u>(limit) &&
                (isInPlace || isWhole(here, distance)) &&
                load<Ntk32u>(earlier(here, distance)) == load<Ntk32u>(here)) {
                return here;
            }
            hash = nextHash;
            limit += growth;
            here += step;
        } while (here <= blockEnd);
    }
    return nullptr;
}

// From a place on, of which 4 bytes are equal. A match in the dictionary may go on in the source.
template <bool isInPlace>
std::ptrdiff_t DictEncoder<isInPlace>::lengthAt(const Ntk8u* here, const Ntk8u* there,
                                                bool isInSource) const {
    const Ntk8u* const end = m_end - lastLiterals;
    here += minMatch;
    there += minMatch;
    if (isInPlace || isInSource) {
        return minMatch + commonLength(here, there, end);
    }
    const std::ptrdiff_t inDictionary = std::min(m_dictEnd - there, end - here);
    const std::ptrdiff_t length = commonLength(here, there, here + inDictionary);
    return minMatch + length +
           (length == m_dictEnd - there ? commonLength(here + length, m_src, end) : 0);
}

template <bool isInPlace>
Match DictEncoder<isInPlace>::extended(const Ntk8u* here, Ntk32u distance,
                                       const Ntk8u* anchor) const {
    const Ntk8u* const there = earlier(here, distance);
    const bool isInSource = static_cast<std::ptrdiff_t>(distance) <= here - m_src;
    const Ntk8u* const first = !isInPlace && isInSource ? m_src : m_dictEnd - m_dictLen;
    const Ntk8u* begin = here;
    for (std::ptrdiff_t most = std::min(here - anchor, there - first), i = 1;
         i <= most && here[-i] == there[-i]; ++i) {
        --begin;
    }
    return {begin, here + lengthAt(here, there, isInSource), distance};
}

// A sequence whose lengths fit the token, with room for copies of 16 bytes.
template <bool isInPlace>
void DictEncoder<isInPlace>::putShort(const Ntk8u* anchor, const Match& match) {
    const std::ptrdiff_t literals = match.begin - anchor;
    const auto distance = static_cast<Ntk16u>(match.distance);
    *m_to = static_cast<Ntk8u>(literals << 4 | (match.end - match.begin - minMatch));
    std::memcpy(m_to + 1, anchor, 16);
    std::memcpy(m_to + 1 + literals, &distance, sizeof distance);
    m_to += 1 + literals + 2;
}

// Any sequence; false if it does not fit.
template <bool isInPlace>
bool DictEncoder<isInPlace>::putLong(const Ntk8u* anchor, const Match& match) {
    const std::ptrdiff_t literals = match.begin - anchor;
    const std::ptrdiff_t matchCode = match.end - match.begin - minMatch;
    const std::ptrdiff_t needed =
        1 + lengthBytes(literals) + literals + 2 + lengthBytes(matchCode) + 1 + lastLiterals;
    if (needed > m_dstEnd - m_to) {
        return false;
    }
    Ntk8u* const token = m_to++;
    *token = static_cast<Ntk8u>(std::min(literals, longRun) << 4 | std::min(matchCode, longRun));
    if (literals >= longRun) {
        m_to = putLength(m_to, literals - longRun);
    }
    for (std::ptrdiff_t i = 0; i < literals; i += 8) {
        std::memcpy(m_to + i, anchor + i, 8);
    }
    m_to += literals;
    const auto distance = static_cast<Ntk16u>(match.distance);
    std::memcpy(m_to, &distance, sizeof distance);
    m_to += sizeof distance;
    if (matchCode >= longRun) {
        m_to = putLength(m_to, matchCode - longRun);
    }
    return true;
}

template <bool isInPlace>
bool DictEncoder<isInPlace>::put(const Ntk8u* anchor, const Match& match) {
    const bool isShort =
        match.begin - anchor < longRun && match.end - match.begin < minMatch + longRun;
    if (isShort && m_end - anchor >= 16 && m_dstEnd - m_to >= 32) [[likely]] {
        putShort(anchor, match);
        return true;
    }
    return putLong(anchor, match);
}

template <bool isInPlace> bool DictEncoder<isInPlace>::putLast(const Ntk8u* anchor) {
    const std::ptrdiff_t literals = m_end - anchor;
    if (1 + lengthBytes(literals) + literals > m_dstEnd - m_to) {
        return false;
    }
    *m_to++ = static_cast<Ntk8u>(std::min(literals, longRun) << 4);
    if (literals >= longRun) {
        m_to = putLength(m_to, literals - longRun);
    }
    std::memcpy(m_to, anchor, static_cast<std::size_t>(literals));
    m_to += literals;
    return true;
}

template <bool isInPlace> int DictEncoder<isInPlace>::encode() {
    const Ntk8u* anchor = m_src;
    const Ntk8u* from = m_src;
    while (m_end - from > lastMatchToEnd) {
        Ntk32u distance = 0;
        const Ntk8u* here = find(from, distance);
        if (here == nullptr) {
            break;
        }
        for (bool isFound = true; isFound; here = anchor) {
            const Match match = extended(here, distance, anchor);
            if (!put(anchor, match)) {
                return 0;
            }
            anchor = match.end;
            if (m_end - anchor < lastMatchToEnd) {
                break;
            }
            exchange(anchor - 2, hashAt(anchor - 2));
            distance = exchange(anchor, hashAt(anchor));
            isFound = isMatch(anchor, distance);
        }
        from = anchor + 1;
    }
    return putLast(anchor) ? static_cast<int>(m_to - m_dst) : 0;
}

} // namespace

Ntk32u loadDictionary(PositionTable& table, const DictArguments& d) {
    constexpr std::size_t hashed = sizeof(Ntk64u);
    const auto length = static_cast<std::size_t>(std::min(d.dictLen, windowBytes));
    const Ntk8u* const end = d.dict + d.dictLen;
    table.fill(0);
    for (std::size_t left = length; left >= hashed; left -= std::min(left, dictionaryStep)) {
        table[hashAt(end - left)] = static_cast<Ntk32u>(length - left);
    }
    return static_cast<Ntk32u>(length);
}

int encodeAfterDictionary(PositionTable& table, Ntk32u index, const DictArguments& d,
                          const Ntk8u* src, int srcLen, Ntk8u* dst, int capacity) {
    return d.dict + d.dictLen == src || d.dictLen == 0
               ? DictEncoder<true>(table, index, d, src, srcLen, dst, capacity).encode()
               : DictEncoder<false>(table, index, d, src, srcLen, dst, capacity).encode();
}

} // namespace ntk::lz4
