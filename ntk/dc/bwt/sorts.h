// The sorts behind the forward transform.
#pragma once

#include "ntkdefs.h"
#include "workspace.h"

namespace ntk::bwt {

// Each takes a primitive word (no power of a shorter one) of n >= 2 bytes that stands twice in a
// row in the workspace, and writes the last bytes of its sorted rotations.
// Returns the row of the unrotated text, or -1 where the sort gave up and dst was not written.

// Gives up when the heap is exhausted.
int suffixSort(const Workspace& work, int n, Ntk8u* dst);

enum class Effort {
    limited,   // gives up when rotations stay equal for long
    moderate,  // gives up when so many stay equal that it would be slower than a suffix sort
    unlimited, // never gives up
};
int twoStageSort(const Workspace& work, int n, Effort effort, Ntk8u* dst);

} // namespace ntk::bwt
