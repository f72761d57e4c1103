// First stage of the two-stage sort: sorting the B*-rotations, from whose order that of all others
// is induced (see twostage.cpp).
//
// The B*-substring of a B*-rotation ends two bytes into the first B*-rotation that begins at least
// 16 bytes later (or, if there is none within one turn, into the rotation itself). Rotations are
// compared by whole words of eight bytes, as far as needed, but not beyond the end of the longest
// substring among those still equal. Rotations equal that far form an equal group, and have
// substrings of the same length: whether a position is of type B* depends only on its byte and the
// run of equal bytes after it, and any run that would tell two of them apart ends within the longer
// substring. So an equal group can be ordered by the ranks of the B*-rotations in which the
// substrings end, then by the ranks of those that follow twice as far on, and so on (prefix
// doubling: Karp, Miller and Rosenberg 1972; Manber and Myers 1993; ranks as in Larsson and
// Sadakane 1999).
//
// A text position lies in at most 16 substrings, so the number of words loaded is linear in the
// length of the text; the doubling takes at most log n rounds of sorting.
#pragma once

#include "keysort.h"
#include "ntkdefs.h"
#include "sorts.h"
#include "workspace.h"

namespace ntk::bwt {

class BStarSort {
public:
    // The workspace holds the text and the ascending positions of the B*-rotations,
    // 1 <= count <= n / 2.
    BStarSort(const Workspace& work, Ntk32u n, Ntk32u count, Effort effort);

    // work.bStars is bucketed by the first two bytes. Sorts one bucket. Returns whether the effort
    // sufficed.
    bool sortByBytes(Range range);

    // Sorts the equal groups that the calls of sortByBytes left.
    void sortGroups();

private:
    Ntk32u distance(const BStar& from, Ntk32u to) const;
    Ntk32u nextOf(const BStar& bStar) const;
    Ntk32u longestSubstring(Range range) const;
    bool loadWords(Range range, Ntk32u depth);
    bool sortFrom(Range range, Ntk32u depth);
    Ntk32u splitGroup(Range group, Ntk32u nextCount);
    void assignRanks();
    void doubleNext();
    bool addGroup(Range range);

    Workspace m_work;
    Ntk32u m_textLen;
    Ntk32u m_count;
    Ntk32u m_groupCount = 0;
    Effort m_effort;
    Scratch m_scratch;      // the rows, which are not needed yet
    Ntk64u m_wordsLeft;     // limited effort: words that may still be loaded
    Ntk64u m_groupableLeft; // moderate effort: B*-rotations that may still end up in equal groups
};

} // namespace ntk::bwt
