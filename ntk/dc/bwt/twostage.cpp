// Two-stage sort of rotations: Itoh and Tanaka (1999, An Efficient Method for in Memory
// Construction of Suffix Arrays), with the kinds of Mori's improvement.
//
// A rotation descends if it is greater than the one that begins a byte later, else it ascends. (For
// that its first two unequal neighbours decide.) A star is an ascending rotation whose successor
// descends. Of the rotations that begin with the same byte, the descending ones come first; of the
// ascending ones that begin with the same two bytes, the stars come first.
//
// First stage: only the stars, at most half of all and in text about a third, are sorted by
// comparing bytes (starsort.h). Second stage: all others follow.
// - From the last place to the first: the rotation one byte before an ascending one, if it ascends
//   too, takes the last free place among those that begin with its two bytes.
// - From the first place to the last: the rotation one byte before any, if it descends, takes the
//   first free place among those that begin with its byte.
//
// State: rows holds the positions at their places; pairs, for two bytes c0 and c1, counts and then
// places: at [c0][c1] with c0 <= c1 ascending rotations that are no stars, at [c1][c0] with c0 < c1
// stars (which begin with unequal bytes), so that both fit one table.
//
// Invariants: a place is read only after it was written, because a rotation's source in the second
// stage is greater (first pass) or less (second pass) than itself. With all rotations different and
// more than one byte value in the text there is a star, and the least rotation ascends.

#include "sorts.h"

#include <algorithm>
#include <array>
#include <utility>

#include "starsort.h"

namespace ntk::bwt {

namespace {

constexpr std::size_t byteCount = 256;

class TwoStageSort {
public:
    TwoStageSort(const Workspace& work, Ntk32u n) : m_work(work), m_text(work.text), m_textLen(n) {}

    bool sortStars(Effort effort);
    void placeAscending();
    int placeDescending(Ntk8u* dst);

private:
    void findStars();
    void findUsedBytes();
    void findPlaces();
    void bucketStars();
    void placeStars();
    bool firstAscends() const;

    Ntk32u& restAt(std::size_t c0, std::size_t c1) { return m_work.pairs[c0 * byteCount + c1]; }
    Ntk32u& starsAt(std::size_t c0, std::size_t c1) { return m_work.pairs[c1 * byteCount + c0]; }
    // End of the places of the byte with this number among the used ones.
    Ntk32u endOf(std::size_t u) const {
        return u + 1 < m_usedCount ? m_first[m_used[u + 1]] : m_textLen;
    }
    Ntk32u before(Ntk32u position) const { return (position == 0 ? m_textLen : position) - 1; }

    const Workspace& m_work;
    const Ntk8u* m_text;
    Ntk32u m_textLen;
    Ntk32u m_starCount = 0;
    std::array<std::size_t, byteCount> m_used{}; // the byte values in the text, ascending
    std::size_t m_usedCount = 0;
    std::array<Ntk32u, byteCount> m_first{};      // where the rotations of a byte begin
    std::array<Ntk32u, byteCount> m_descending{}; // counts, then first free places
    std::array<Ntk32u, byteCount> m_ascending{};  // where the ascending ones of a byte begin
};

// The first unequal neighbours decide for all before them.
bool TwoStageSort::firstAscends() const {
    Ntk32u i = 0;
    while (m_text[i] == m_text[i + 1]) {
        ++i;
    }
    return m_text[i] < m_text[i + 1];
}

// Counts the kinds and lists the stars, from the last position to the first. The lists and tables
// are written without branches, which would be unpredictable.
void TwoStageSort::findStars() {
    std::fill_n(m_work.pairs, pairCount, 0U);
    const Ntk32u capacity = m_textLen / 2 + 1;
    Ntk32u firstStar = capacity; // the list grows down from the end
    Ntk32u descends = firstAscends() ? 0 : 1;
    Ntk32u c1 = m_text[m_textLen];
    for (Ntk32u i = m_textLen; i-- > 0;) {
        const Ntk32u c0 = m_text[i];
        const Ntk32u nextDescends = descends;
        descends = c0 + descends > c1 ? 1 : 0;
        const Ntk32u isStar = nextDescends & ~descends;
        m_work.positions[firstStar - 1] = i;
        firstStar -= isStar;
        m_descending[c0] += descends;
        const Ntk32u pair = isStar != 0 ? c1 * byteCount + c0 : c0 * byteCount + c1;
        m_work.pairs[pair] += 1 - descends;
        c1 = c0;
    }
    m_starCount = capacity - firstStar;
    std::copy(m_work.positions + firstStar, m_work.positions + capacity, m_work.positions);
}

void TwoStageSort::findUsedBytes() {
    std::array<bool, byteCount> isUsed{};
    for (Ntk32u i = 0; i < m_textLen; ++i) {
        isUsed[m_text[i]] = true;
    }
    for (std::size_t c = 0; c < byteCount; ++c) {
        if (isUsed[c]) {
            m_used[m_usedCount++] = c;
        }
    }
}

// Turns the counts into places: of descending ones the first, of stars the first in the list of
// stars, of the rest the end.
void TwoStageSort::findPlaces() {
    Ntk32u place = 0;
    Ntk32u star = 0;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        const std::size_t c0 = m_used[u];
        m_first[c0] = place;
        place += std::exchange(m_descending[c0], place);
        m_ascending[c0] = place;
        restAt(c0, c0) = place += restAt(c0, c0);
        for (std::size_t v = u + 1; v < m_usedCount; ++v) {
            const Ntk32u stars = std::exchange(starsAt(c0, m_used[v]), star);
            star += stars;
            restAt(c0, m_used[v]) = place += stars + restAt(c0, m_used[v]);
        }
    }
}

// Afterwards starsAt tells where the stars of a pair end.
void TwoStageSort::bucketStars() {
    for (Ntk32u i = 0; i < m_starCount; ++i) {
        const Ntk32u position = m_work.positions[i];
        const Ntk32u place = starsAt(m_text[position], m_text[position + 1])++;
        m_work.stars[place] = {0, position, i};
    }
}

bool TwoStageSort::sortStars(Effort effort) {
    findUsedBytes();
    findStars();
    findPlaces();
    bucketStars();
    StarSort sort(m_work, m_textLen, m_starCount, effort);
    Ntk32u first = 0;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        for (std::size_t v = u + 1; v < m_usedCount; ++v) {
            const Ntk32u end = starsAt(m_used[u], m_used[v]);
            if (!sort.sortByBytes({first, end})) {
                return false;
            }
            first = end;
        }
    }
    sort.sortTies();
    return true;
}

// The stars of a pair go behind the rest of the pair before.
void TwoStageSort::placeStars() {
    const Star* star = m_work.stars;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        for (std::size_t v = u + 1; v < m_usedCount; ++v) {
            Ntk32u* row = m_work.rows + restAt(m_used[u], m_used[v - 1]);
            const Star* const end = m_work.stars + starsAt(m_used[u], m_used[v]);
            for (; star != end; ++star) {
                *row++ = star->position;
            }
        }
    }
}

void TwoStageSort::placeAscending() {
    placeStars();
    for (std::size_t u = m_usedCount; u-- > 0;) {
        const std::size_t c1 = m_used[u];
        for (Ntk32u row = endOf(u); row-- > m_ascending[c1];) {
            const Ntk32u source = before(m_work.rows[row]);
            const std::size_t c0 = m_text[source];
            if (c0 <= c1) {
                m_work.rows[--restAt(c0, c1)] = source;
            }
        }
    }
}

// Writes the transform on the way: it is the byte before each rotation.
int TwoStageSort::placeDescending(Ntk8u* dst) {
    Ntk32u unrotated = 0;
    Ntk32u* const rows = m_work.rows;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        const Ntk32u c1 = static_cast<Ntk32u>(m_used[u]);
        const Ntk32u ascending = m_ascending[c1];
        const Ntk32u end = endOf(u);
        for (Ntk32u row = m_first[c1]; row < end; ++row) {
            const Ntk32u position = rows[row];
            const Ntk32u source = before(position);
            const Ntk32u c0 = m_text[source];
            dst[row] = static_cast<Ntk8u>(c0);
            unrotated = position == 0 ? row : unrotated;
            // Of equal bytes, the rotation is of the kind of the one that it is derived from.
            if (c0 > c1 || (c0 == c1 && row < ascending)) {
                rows[m_descending[c0]++] = source;
            }
        }
    }
    return static_cast<int>(unrotated);
}

} // namespace

int twoStageSort(const Workspace& work, int n, Effort effort, Ntk8u* dst) {
    TwoStageSort sort(work, static_cast<Ntk32u>(n));
    if (!sort.sortStars(effort)) {
        return -1;
    }
    sort.placeAscending();
    return sort.placeDescending(dst);
}

} // namespace ntk::bwt
