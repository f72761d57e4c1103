// Sorts B*-rotations by their keys.
//
// How two keys compare cannot be predicted, so nothing branches on it. Few elements (most buckets
// are small) are put where the number of lesser keys says: a comparison and an addition for each
// pair. More are partitioned as in quicksort (Hoare 1961; Lomuto's partition, in which every
// element is swapped and only the boundary moves or not), down to few; where pivots are bad for too
// long, std::sort takes over, so that the time stays within n log n. Many are first distributed by
// the 8 highest bits in which they differ (radix sort, Knuth, vol. 3, 5.2.5).
//
// The clocks a byte of text that the B*-rotations take, on the first 100 KiB of geo and book1: 25
// and 27 with std::sort, 23 and 24 with quicksort down to 32, 15 and 23 with the radix sort before
// it, 14 and 20 when quicksort goes down to 16 (8: 15 and 23).
#pragma once

#include "workspace.h"

namespace ntk::bwt {

struct Scratch {
    BStar* elements;
    std::size_t count;
};

// Equal keys come in any order.
void sortByKey(BStar* first, BStar* end, const Scratch& scratch);

} // namespace ntk::bwt
