#include "starsort.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ntk::bwt {

namespace {

constexpr Ntk32u minPartLen = 16;
constexpr Ntk32u bytesOfStar = 2; // that make the end of a part a star
constexpr Ntk32u wordLen = 8;

// Limited effort: words loaded for each star, on average. Found by measuring: enough for texts with
// many repeats, such as terminal sessions, and what needs more is faster in the suffix sort.
constexpr Ntk64u wordsPerStar = 16;

// Moderate effort: one star in so many may be tied. Found by measuring, too.
constexpr Ntk32u tiedShare = 2;

Ntk64u wordAt(const Ntk8u* bytes) {
    Ntk64u word;
    std::memcpy(&word, bytes, sizeof word);
    return __builtin_bswap64(word); // so that numbers compare as bytes do
}

bool hasLessKey(const Star& a, const Star& b) {
    return a.key < b.key;
}

// Returns whether the budget had it.
bool spend(Ntk64u& budget, Ntk32u amount) {
    const bool suffices = amount <= budget;
    budget -= suffices ? amount : 0;
    return suffices;
}

// End of the run of equal keys that starts at `from`.
Ntk32u endOfRun(const Star* stars, Ntk32u from, Ntk32u end) {
    Ntk32u i = from + 1;
    while (i < end && stars[i].key == stars[from].key) {
        ++i;
    }
    return i;
}

} // namespace

StarSort::StarSort(const Workspace& work, Ntk32u n, Ntk32u count, Effort effort)
    : m_work(work), m_textLen(n), m_count(count), m_effort(effort),
      m_wordsLeft(wordsPerStar * count), m_tiedLeft(count / tiedShare) {}

Ntk32u StarSort::distance(const Star& from, Ntk32u to) const {
    const Ntk32u position = m_work.positions[to];
    return position - from.position + (position > from.position ? 0 : m_textLen);
}

// Stars never lie side by side, so the search is short.
Ntk32u StarSort::nextOf(const Star& star) const {
    Ntk32u i = star.index;
    do {
        i = i + 1 < m_count ? i + 1 : 0;
    } while (distance(star, i) < minPartLen && i != star.index);
    return i;
}

Ntk32u StarSort::longestPart(Range range) const {
    Ntk32u longest = 0;
    for (Ntk32u i = range.first; i < range.end; ++i) {
        const Star& star = m_work.stars[i];
        longest = std::max(longest, distance(star, nextOf(star)) + bytesOfStar);
    }
    return longest;
}

// Returns whether the words differ.
bool StarSort::loadWords(Range range, Ntk32u depth) {
    Star* const stars = m_work.stars;
    const Ntk8u* const text = m_work.text + depth;
    Ntk64u differences = 0;
    for (Ntk32u i = range.first; i < range.end; ++i) {
        stars[i].key = wordAt(text + stars[i].position);
        differences |= stars[i].key ^ stars[range.first].key;
    }
    return differences != 0;
}

bool StarSort::sortByBytes(Range range) {
    return sortFrom(range, bytesOfStar);
}

bool StarSort::addTie(Range range) {
    m_work.ties[m_tieCount++] = range;
    for (Ntk32u i = range.first; i < range.end; ++i) {
        const Star& star = m_work.stars[i];
        m_work.next[star.index] = nextOf(star);
    }
    return m_effort == Effort::unlimited || spend(m_tiedLeft, range.size());
}

// Sorts by the words at the given depth, then the runs of equal words by the words after. The
// longest run is left to the loop, so that the recursion is at most log n deep.
bool StarSort::sortFrom(Range range, Ntk32u depth) {
    while (range.size() > 1) {
        if (m_effort == Effort::limited && !spend(m_wordsLeft, range.size())) {
            return false;
        }
        const bool differ = loadWords(range, depth);
        depth += wordLen;
        if (differ) {
            Star* const stars = m_work.stars;
            std::sort(stars + range.first, stars + range.end, hasLessKey);
            Range longest{range.first, range.first};
            for (Ntk32u first = range.first; first < range.end;) {
                Range run{first, endOfRun(stars, first, range.end)};
                first = run.end;
                if (run.size() > longest.size()) {
                    std::swap(run, longest);
                }
                if (run.size() > 1 && !sortFrom(run, depth)) {
                    return false;
                }
            }
            range = longest;
        }
        if (m_effort != Effort::limited && depth >= minPartLen && depth >= longestPart(range)) {
            return range.size() < 2 || addTie(range);
        }
    }
    return true;
}

// A star's rank is the first place of those it ties with.
void StarSort::assignRanks() {
    for (Ntk32u i = 0; i < m_count; ++i) {
        m_work.ranks[m_work.stars[i].index] = i;
    }
    for (Ntk32u t = 0; t < m_tieCount; ++t) {
        const Range tie = m_work.ties[t];
        for (Ntk32u i = tie.first; i < tie.end; ++i) {
            m_work.ranks[m_work.stars[i].index] = tie.first;
        }
    }
}

// Orders one tie by the ranks of what follows; returns the number of ties left over in all.
Ntk32u StarSort::splitTie(Range tie, Ntk32u moreCount) {
    Star* const stars = m_work.stars;
    for (Ntk32u i = tie.first; i < tie.end; ++i) {
        stars[i].key = m_work.ranks[m_work.next[stars[i].index]];
    }
    std::sort(stars + tie.first, stars + tie.end, hasLessKey);
    for (Ntk32u first = tie.first; first < tie.end;) {
        const Range run{first, endOfRun(stars, first, tie.end)};
        first = run.end;
        for (Ntk32u i = run.first; i < run.end; ++i) {
            m_work.ranks[stars[i].index] = run.first;
        }
        if (run.size() > 1) {
            m_work.moreTies[moreCount++] = run;
        }
    }
    return moreCount;
}

// Each round doubles the length compared. Ranks may be newer than the round: they are finer then,
// and still in order. What follows a star is asked for only as long as it is tied, and so is what
// follows that: had it been told apart by then, it would have told the star apart.
void StarSort::sortTies() {
    assignRanks();
    while (m_tieCount > 0) {
        Ntk32u moreCount = 0;
        for (Ntk32u t = 0; t < m_tieCount; ++t) {
            moreCount = splitTie(m_work.ties[t], moreCount);
        }
        std::swap(m_work.ties, m_work.moreTies);
        m_tieCount = moreCount;
        doubleNext();
    }
}

void StarSort::doubleNext() {
    for (Ntk32u t = 0; t < m_tieCount; ++t) {
        const Range tie = m_work.ties[t];
        for (Ntk32u i = tie.first; i < tie.end; ++i) {
            const Ntk32u index = m_work.stars[i].index;
            m_work.nextOfNext[index] = m_work.next[m_work.next[index]];
        }
    }
    std::swap(m_work.next, m_work.nextOfNext);
}

} // namespace ntk::bwt
