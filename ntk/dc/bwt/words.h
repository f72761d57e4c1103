// Words over bytes: powers and least rotations.
#pragma once

#include "ntkdefs.h"

namespace ntk::bwt {

// Length of the shortest word that the text, of n > 0 bytes, is a power of: n itself unless the
// text is one word several times over.
int rootLen(const Ntk8u* text, int n);

// Where the least rotation of a word begins that is no power of another. n is above 0 and the word
// stands twice in a row. (Two candidates walk over the text; each comparison rules out all starts
// under the bytes compared. Linear time.)
int leastRotation(const Ntk8u* doubledText, int n);

} // namespace ntk::bwt
