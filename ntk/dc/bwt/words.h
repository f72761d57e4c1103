// Words over bytes: powers and least rotations.
#pragma once

#include "ntkdefs.h"

namespace ntk::bwt {

// Length of the primitive root of the text, which has n > 0 bytes: the shortest word that the text
// is a power of. It is n unless the text is one word repeated.
int primitiveRootLen(const Ntk8u* text, int n);

// Where the least rotation of a primitive word of n > 0 bytes begins; the word is given twice in a
// row. (Two candidates are compared; a mismatch rules out all starts among the bytes compared.
// Linear time.)
int leastRotation(const Ntk8u* doubledText, int n);

} // namespace ntk::bwt
