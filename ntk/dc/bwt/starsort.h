// First stage of the two-stage sort: ordering the stars, those rotations from whose order that of
// all others follows (see twostage.cpp).
//
// Each star has a compared part: it ends two bytes into the first star that begins at least 16
// bytes later (or, if there is none, with the whole rotation). Stars are ordered by whole words of
// eight bytes, as far as needed and at most to the end of the compared part. Stars that are equal
// so far have parts of equal length, because within the parts the bytes alone decide where stars
// begin. So they can be ordered by the order of the stars that follow their parts, then by the
// order of those that follow twice the length, and so on, doubling (Karp, Miller and Rosenberg
// 1972; Manber and Myers 1993; ranks as in Larsson and Sadakane 1999).
//
// A text position lies in at most 16 compared parts, so the first step takes linear time plus that
// of sorting; the second takes log n rounds of sorting at the worst.
#pragma once

#include "ntkdefs.h"
#include "sorts.h"
#include "workspace.h"

namespace ntk::bwt {

class StarSort {
public:
    // The workspace holds the text and the positions of the stars, 1 <= count <= n / 2, ascending.
    StarSort(const Workspace& work, Ntk32u n, Ntk32u count, Effort effort);

    // The stars stand in work.stars by their first two bytes; orders those in the range, which
    // agree in them. Returns whether the effort sufficed.
    bool sortByBytes(Range range);

    // Orders what the calls above left equal.
    void sortTies();

private:
    void findNext();
    Ntk32u partLen(const Star& star) const;
    Ntk32u longestPart(Range range) const;
    bool loadWords(Range range, Ntk32u depth);
    bool sortFrom(Range range, Ntk32u depth);
    Ntk32u splitTie(Range tie, Ntk32u moreCount);
    void assignRanks();
    void doubleNext();
    bool spendWords(Ntk32u count);

    Workspace m_work;
    Ntk32u m_textLen;
    Ntk32u m_count;
    Ntk32u m_tieCount = 0;
    bool m_isLimited;
    Ntk64u m_wordsLeft; // of the limited effort
};

} // namespace ntk::bwt
