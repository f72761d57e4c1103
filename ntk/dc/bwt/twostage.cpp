// Two-stage sort of rotations: Itoh and Tanaka (1999, An Efficient Method for in Memory
// Construction of Suffix Arrays), with the types of Mori's divsufsort.
//
// A rotation is of type A if it is greater than its successor, the rotation that begins one byte
// later, otherwise of type B. (Its first two unequal neighbouring bytes decide.) A B*-rotation is a
// type B rotation whose successor is of type A. Among the rotations that begin with the same byte,
// those of type A come first; among those of type B that begin with the same two bytes, the
// B*-rotations come first.
//
// First stage: only the B*-rotations, at most half of all and about a third in text, are sorted by
// comparing bytes (bstarsort.h). Second stage: the order of all others is induced.
// - From the last row to the first: the predecessor of a type B rotation, if it is of type B too,
//   takes the last free row of its bucket, the rotations that begin with its first two bytes.
// - From the first row to the last: the predecessor of any rotation, if it is of type A, takes the
//   first free row of its bucket, the rotations that begin with its first byte.
//
// State: `rows` holds the positions in sorted order. `pairs` holds, for two bytes c0 and c1, counts
// and then bucket bounds: at [c0][c1] with c0 <= c1 those of type B without B*, at the same place
// counted from the end of the table, with c0 < c1, those of B* (which begins with unequal bytes):
// so both fit one table, and all pairs of a first byte lie side by side.
//
// Invariants: a row is read only after it was written, because in the second stage a rotation is
// induced from a greater one (first pass) or a smaller one (second pass). If all rotations differ
// and the text has more than one byte value, there is a B*-rotation, and the least rotation is of
// type B.

#include "sorts.h"

#include <algorithm>
#include <array>
#include <utility>

#include "bstarsort.h"

namespace ntk::bwt {

namespace {

constexpr std::size_t byteCount = 256;
constexpr Ntk32u lastPair = pairCount - 1;

class TwoStageSort {
public:
    TwoStageSort(const Workspace& work, Ntk32u n) : m_work(work), m_text(work.text), m_textLen(n) {}

    bool sortBStars(Effort effort);
    void induceTypeB();
    int induceTypeA(Ntk8u* dst);

private:
    void findBStars();
    void findUsedBytes();
    void findBuckets();
    void bucketBStars();
    void placeBStars();
    bool firstIsTypeB() const;

    Ntk32u& typeBAt(std::size_t c0, std::size_t c1) { return m_work.pairs[c0 * byteCount + c1]; }
    Ntk32u& bStarsAt(std::size_t c0, std::size_t c1) {
        return m_work.pairs[lastPair - (c0 * byteCount + c1)];
    }
    // End of the rows of the byte with this number among the used ones.
    Ntk32u endOf(std::size_t u) const {
        return u + 1 < m_usedCount ? m_first[m_used[u + 1]] : m_textLen;
    }
    Ntk32u before(Ntk32u position) const { return (position == 0 ? m_textLen : position) - 1; }

    const Workspace& m_work;
    const Ntk8u* m_text;
    Ntk32u m_textLen;
    Ntk32u m_bStarCount = 0;
    std::array<std::size_t, byteCount> m_used{}; // the byte values in the text, ascending
    std::size_t m_usedCount = 0;
    std::array<Ntk32u, byteCount> m_first{}; // first row of a byte
    std::array<Ntk32u, byteCount> m_typeA{}; // counts of type A, then first free rows
    std::array<Ntk32u, byteCount> m_typeB{}; // first row of a byte's type B rotations
};

// The first two unequal neighbours decide for all positions before them.
bool TwoStageSort::firstIsTypeB() const {
    Ntk32u i = 0;
    while (m_text[i] == m_text[i + 1]) {
        ++i;
    }
    return m_text[i] < m_text[i + 1];
}

// Counts the types and lists the B*-rotations, from the last position to the first. List and tables
// are written without branches, which would be unpredictable.
void TwoStageSort::findBStars() {
    Ntk32u* const pairs = m_work.pairs;
    std::fill_n(pairs, pairCount, 0U);
    const Ntk8u* const text = m_text;
    const Ntk32u capacity = m_textLen / 2 + 1;
    Ntk32u* const listEnd = m_work.positions + capacity;
    Ntk32u* firstBStar = listEnd; // the list grows down from the end
    Ntk32u isTypeA = firstIsTypeB() ? 0 : 1;
    Ntk32u c1 = text[m_textLen];
    for (Ntk32u i = m_textLen; i-- > 0;) {
        const Ntk32u c0 = text[i];
        const Ntk32u nextIsTypeA = isTypeA;
        isTypeA = c0 + isTypeA > c1 ? 1 : 0;
        const Ntk32u isBStar = nextIsTypeA & ~isTypeA;
        firstBStar[-1] = i;
        firstBStar -= isBStar;
        m_typeA[c0] += isTypeA;
        const Ntk32u pair = c0 * byteCount + c1;
        pairs[pair ^ (lastPair & (0 - isBStar))] += 1 - isTypeA; // lastPair - pair, or pair
        c1 = c0;
    }
    m_bStarCount = static_cast<Ntk32u>(listEnd - firstBStar);
    std::copy(firstBStar, listEnd, m_work.positions);
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

// Turns the counts into bucket bounds: the first row for type A, the end for type B without B*, and
// the first index in bStars for B*.
void TwoStageSort::findBuckets() {
    Ntk32u row = 0;
    Ntk32u bStar = 0;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        const std::size_t c0 = m_used[u];
        m_first[c0] = row;
        row += std::exchange(m_typeA[c0], row);
        m_typeB[c0] = row;
        typeBAt(c0, c0) = row += typeBAt(c0, c0);
        for (std::size_t v = u + 1; v < m_usedCount; ++v) {
            const Ntk32u bStars = std::exchange(bStarsAt(c0, m_used[v]), bStar);
            bStar += bStars;
            typeBAt(c0, m_used[v]) = row += bStars + typeBAt(c0, m_used[v]);
        }
    }
}

// Afterwards bStarsAt is the end of a pair's B*-rotations in bStars.
void TwoStageSort::bucketBStars() {
    for (Ntk32u i = 0; i < m_bStarCount; ++i) {
        const Ntk32u position = m_work.positions[i];
        const Ntk32u index = bStarsAt(m_text[position], m_text[position + 1])++;
        m_work.bStars[index] = {0, position, i};
    }
}

bool TwoStageSort::sortBStars(Effort effort) {
    findUsedBytes();
    findBStars();
    findBuckets();
    bucketBStars();
    BStarSort sort(m_work, m_textLen, m_bStarCount, effort);
    Ntk32u first = 0;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        for (std::size_t v = u + 1; v < m_usedCount; ++v) {
            const Ntk32u end = bStarsAt(m_used[u], m_used[v]);
            if (!sort.sortByBytes({first, end})) {
                return false;
            }
            first = end;
        }
    }
    sort.sortGroups();
    return true;
}

// The B*-rotations of a pair come after the other type B rotations of the pair before.
void TwoStageSort::placeBStars() {
    const BStar* bStar = m_work.bStars;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        for (std::size_t v = u + 1; v < m_usedCount; ++v) {
            Ntk32u* row = m_work.rows + typeBAt(m_used[u], m_used[v - 1]);
            const BStar* const end = m_work.bStars + bStarsAt(m_used[u], m_used[v]);
            for (; bStar != end; ++bStar) {
                *row++ = bStar->position;
            }
        }
    }
}

void TwoStageSort::induceTypeB() {
    placeBStars();
    for (std::size_t u = m_usedCount; u-- > 0;) {
        const std::size_t c1 = m_used[u];
        for (Ntk32u row = endOf(u); row-- > m_typeB[c1];) {
            const Ntk32u source = before(m_work.rows[row]);
            const std::size_t c0 = m_text[source];
            if (c0 <= c1) {
                m_work.rows[--typeBAt(c0, c1)] = source;
            }
        }
    }
}

// Writes the transform along the way: the byte before each rotation.
int TwoStageSort::induceTypeA(Ntk8u* dst) {
    Ntk32u unrotated = 0;
    Ntk32u* const rows = m_work.rows;
    for (std::size_t u = 0; u < m_usedCount; ++u) {
        const Ntk32u c1 = static_cast<Ntk32u>(m_used[u]);
        const Ntk32u firstTypeB = m_typeB[c1];
        const Ntk32u end = endOf(u);
        for (Ntk32u row = m_first[c1]; row < end; ++row) {
            const Ntk32u position = rows[row];
            const Ntk32u source = before(position);
            const Ntk32u c0 = m_text[source];
            dst[row] = static_cast<Ntk8u>(c0);
            unrotated = position == 0 ? row : unrotated;
            // If the two bytes are equal, the predecessor has the type of its successor.
            if (c0 > c1 || (c0 == c1 && row < firstTypeB)) {
                rows[m_typeA[c0]++] = source;
            }
        }
    }
    return static_cast<int>(unrotated);
}

} // namespace

int twoStageSort(const Workspace& work, int n, Effort effort, Ntk8u* dst) {
    TwoStageSort sort(work, static_cast<Ntk32u>(n));
    if (!sort.sortBStars(effort)) {
        return -1;
    }
    sort.induceTypeB();
    return sort.induceTypeA(dst);
}

} // namespace ntk::bwt
