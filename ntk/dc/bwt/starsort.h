// First stage of the two-stage sort: ordering the stars, those rotations from whose order that of
// all others follows (see twostage.cpp).
//
// Each star has a compared part: it ends two bytes into the first star that begins at least 16
// bytes later (or, if there is none within one turn, into the star itself). Stars are ordered by
// whole words of eight bytes, as far as needed, but not further than to the end of the longest part
// among those still equal. Stars equal that far have parts of one length: a star shows by its byte
// and the run of equal bytes after it, and any run that tells two of them apart ends in the longer
// part. So they can be ordered by the order of the stars that end their parts, then by the order
// of those that end twice as much, and so on, doubling (Karp, Miller and Rosenberg 1972; Manber and
// Myers 1993; ranks as in Larsson and Sadakane 1999).
//
// A text position lies in at most 16 parts, so that all words loaded are fewer than the bytes of
// the text times a constant; the doubling takes at most log n rounds of sorting.
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
    Ntk32u distance(const Star& from, Ntk32u to) const;
    Ntk32u nextOf(const Star& star) const;
    Ntk32u longestPart(Range range) const;
    bool loadWords(Range range, Ntk32u depth);
    bool sortFrom(Range range, Ntk32u depth);
    Ntk32u splitTie(Range tie, Ntk32u moreCount);
    void assignRanks();
    void doubleNext();
    bool addTie(Range range);

    Workspace m_work;
    Ntk32u m_textLen;
    Ntk32u m_count;
    Ntk32u m_tieCount = 0;
    Effort m_effort;
    Ntk64u m_wordsLeft; // of the limited effort
    Ntk64u m_tiedLeft;  // stars, of the moderate effort
};

} // namespace ntk::bwt
