// Which of several kernels the library takes.
#pragma once

#include "fuzz.h"
#include "ntkcore.h"

namespace fuzz {

// Enables the features up to one that the input names: kernels are chosen by them at every call.
inline void enableFeatures(Input& in) {
    ntkSetCpuFeatures(~Ntk64u{0} >> in.byte() % 64);
}

} // namespace fuzz
