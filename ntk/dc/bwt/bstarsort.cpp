#include "bstarsort.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "keysort.h"

namespace ntk::bwt {

namespace {

constexpr Ntk32u minSubstringLen = 16;
constexpr Ntk32u prefixLen = 2; // of the B*-rotation in which a substring ends; also the bucket's
constexpr Ntk32u wordLen = 8;

// Limited effort: words loaded per B*-rotation, on average. Measured: enough for texts with many
// repeats, such as terminal sessions; texts that need more are faster in the suffix sort.
constexpr Ntk64u wordsPerBStar = 16;

// Moderate effort: one B*-rotation in this many may be in an equal group. Measured, too.
constexpr Ntk32u groupableShare = 2;

Ntk64u wordAt(const Ntk8u* bytes) {
    Ntk64u word;
    std::memcpy(&word, bytes, sizeof word);
    return __builtin_bswap64(word); // so that numbers compare as bytes do
}

// Takes the amount from the budget; false, with the budget unchanged, if it does not suffice.
bool spend(Ntk64u& budget, Ntk32u amount) {
    const bool suffices = amount <= budget;
    budget -= suffices ? amount : 0;
    return suffices;
}

// End of the run of equal keys that starts at `from`.
Ntk32u endOfRun(const BStar* bStars, Ntk32u from, Ntk32u end) {
    Ntk32u i = from + 1;
    while (i < end && bStars[i].key == bStars[from].key) {
        ++i;
    }
    return i;
}

} // namespace

BStarSort::BStarSort(const Workspace& work, Ntk32u n, Ntk32u count, Effort effort)
    : m_work(work), m_textLen(n), m_count(count),
      m_effort(effort), m_scratch{reinterpret_cast<BStar*>(work.rows),
                                  n * sizeof(Ntk32u) / sizeof(BStar)},
      m_wordsLeft(wordsPerBStar * count), m_groupableLeft(count / groupableShare) {}

Ntk32u BStarSort::distance(const BStar& from, Ntk32u to) const {
    const Ntk32u position = m_work.positions[to];
    return position - from.position + (position > from.position ? 0 : m_textLen);
}

// The B*-rotation in which the substring ends. B*-rotations are never adjacent, so the search is
// short.
Ntk32u BStarSort::nextOf(const BStar& bStar) const {
    Ntk32u i = bStar.index;
    do {
        i = i + 1 < m_count ? i + 1 : 0;
    } while (distance(bStar, i) < minSubstringLen && i != bStar.index);
    return i;
}

Ntk32u BStarSort::longestSubstring(Range range) const {
    Ntk32u longest = 0;
    for (Ntk32u i = range.first; i < range.end; ++i) {
        const BStar& bStar = m_work.bStars[i];
        longest = std::max(longest, distance(bStar, nextOf(bStar)) + prefixLen);
    }
    return longest;
}

// Loads the words at the given depth as keys; returns whether they differ.
bool BStarSort::loadWords(Range range, Ntk32u depth) {
    BStar* const bStars = m_work.bStars;
    const Ntk8u* const text = m_work.text + depth;
    Ntk64u differences = 0;
    for (Ntk32u i = range.first; i < range.end; ++i) {
        bStars[i].key = wordAt(text + bStars[i].position);
        differences |= bStars[i].key ^ bStars[range.first].key;
    }
    return differences != 0;
}

bool BStarSort::sortByBytes(Range range) {
    return sortFrom(range, prefixLen);
}

bool BStarSort::addGroup(Range range) {
    m_work.groups[m_groupCount++] = range;
    for (Ntk32u i = range.first; i < range.end; ++i) {
        const BStar& bStar = m_work.bStars[i];
        m_work.next[bStar.index] = nextOf(bStar);
    }
    return m_effort == Effort::unlimited || spend(m_groupableLeft, range.size());
}

// Sorts by the words at the given depth, then the runs of equal words by the words after. The
// longest run is left to the loop, so that the recursion is at most log n deep.
bool BStarSort::sortFrom(Range range, Ntk32u depth) {
    while (range.size() > 1) {
        if (m_effort == Effort::limited && !spend(m_wordsLeft, range.size())) {
            return false;
        }
        const bool differ = loadWords(range, depth);
        depth += wordLen;
        if (differ) {
            BStar* const bStars = m_work.bStars;
            sortByKey(bStars + range.first, bStars + range.end, m_scratch);
            Range longest{range.first, range.first};
            for (Ntk32u first = range.first; first < range.end;) {
                Range run{first, endOfRun(bStars, first, range.end)};
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
        if (m_effort != Effort::limited && depth >= minSubstringLen &&
            depth >= longestSubstring(range)) {
            return range.size() < 2 || addGroup(range);
        }
    }
    return true;
}

// The rank of a B*-rotation is the first place of its equal group.
void BStarSort::assignRanks() {
    for (Ntk32u i = 0; i < m_count; ++i) {
        m_work.ranks[m_work.bStars[i].index] = i;
    }
    for (Ntk32u t = 0; t < m_groupCount; ++t) {
        const Range group = m_work.groups[t];
        for (Ntk32u i = group.first; i < group.end; ++i) {
            m_work.ranks[m_work.bStars[i].index] = group.first;
        }
    }
}

// Sorts one equal group by the ranks of what follows; appends the groups that are still equal to
// nextGroups and returns their number.
Ntk32u BStarSort::splitGroup(Range group, Ntk32u nextCount) {
    BStar* const bStars = m_work.bStars;
    for (Ntk32u i = group.first; i < group.end; ++i) {
        bStars[i].key = m_work.ranks[m_work.next[bStars[i].index]];
    }
    sortByKey(bStars + group.first, bStars + group.end, m_scratch);
    for (Ntk32u first = group.first; first < group.end;) {
        const Range run{first, endOfRun(bStars, first, group.end)};
        first = run.end;
        for (Ntk32u i = run.first; i < run.end; ++i) {
            m_work.ranks[bStars[i].index] = run.first;
        }
        if (run.size() > 1) {
            m_work.nextGroups[nextCount++] = run;
        }
    }
    return nextCount;
}

// Each round doubles the compared length. A rank may already come from the current round: it is
// then finer, but consistent. `next` is needed only for rotations still in equal groups, and those
// that it leads to are in equal groups too: had they been told apart, they would have told the
// rotations apart that lead to them.
void BStarSort::sortGroups() {
    assignRanks();
    while (m_groupCount > 0) {
        Ntk32u nextCount = 0;
        for (Ntk32u t = 0; t < m_groupCount; ++t) {
            nextCount = splitGroup(m_work.groups[t], nextCount);
        }
        std::swap(m_work.groups, m_work.nextGroups);
        m_groupCount = nextCount;
        doubleNext();
    }
}

void BStarSort::doubleNext() {
    for (Ntk32u t = 0; t < m_groupCount; ++t) {
        const Range group = m_work.groups[t];
        for (Ntk32u i = group.first; i < group.end; ++i) {
            const Ntk32u index = m_work.bStars[i].index;
            m_work.nextOfNext[index] = m_work.next[m_work.next[index]];
        }
    }
    std::swap(m_work.next, m_work.nextOfNext);
}

} // namespace ntk::bwt
