// Sorting rotations by sorting suffixes, with libdivsufsort.
//
// Suffixes are not rotations: a suffix that is a prefix of another one is sorted first, whatever
// follows it cyclically. But in a word that is less than all its other rotations (a Lyndon word)
// both orders are the same: of two suffixes u and uv, u is continued cyclically by the word itself
// and uv has v, a suffix, in that place, and a Lyndon word is less than each of its suffixes.
// So the least rotation of the text is sorted; only the row of the unrotated text must be found.

#include "sorts.h"

#include <divsufsort.h>

#include "words.h"

namespace ntk::bwt {

int suffixSort(const Workspace& work, int n, Ntk8u* dst) {
    const int start = leastRotation(work.text, n);
    const Ntk8u* const word = work.text + start;
    auto* const rows = reinterpret_cast<saidx_t*>(work.rows);
    if (divsufsort(word, rows, n) != 0) {
        return -1;
    }
    const int unrotated = start == 0 ? 0 : n - start;
    int idx = 0;
    for (int row = 0; row < n; ++row) {
        const int position = rows[row];
        idx = position == unrotated ? row : idx;
        dst[row] = word[position == 0 ? n - 1 : position - 1];
    }
    return idx;
}

} // namespace ntk::bwt
