// The sorts behind the forward transform.
#pragma once

#include "ntkdefs.h"
#include "workspace.h"

namespace ntk::bwt {

// Each takes a primitive word (no power of a shorter one) of n >= 2 bytes, which the workspace
// holds twice in a row, and writes the last bytes of its sorted rotations.
// Returns the row of the unrotated text, or -1 if the sort gave up; dst is then not written.

// Allocates memory; gives up if there is none.
int suffixSort(const Workspace& work, int n, Ntk8u* dst);

enum class Effort {
    limited,   // gives up when rotations stay equal for long
    moderate,  // gives up when so many stay equal that a suffix sort is likely to be faster
    unlimited, // never gives up
};
int twoStageSort(const Workspace& work, int n, Effort effort, Ntk8u* dst);

} // namespace ntk::bwt
