// Kernels of the bzip2 stages that have several of them.
#pragma once

#include <cstddef>

#include "../dispatch.h"

namespace ntk::bz2 {

// Replaces each byte by its entry in the table.
using MapBytes = void(const Ntk8u table[256], Ntk8u* bytes, std::size_t length);

// Encodes `length` bytes with the move-to-front list, or decodes them. The inverse may work in
// place, the forward direction may not. If the list is no permutation, the output is undefined, but
// nothing else is read or written.
using MoveToFront = void(const Ntk8u* from, Ntk8u* to, std::size_t length, Ntk8u list[256]);

// Kernels in files of their own.
MoveToFront mtfForwardVbmi;

extern Choice<MapBytes> mapBytesKernel;
extern Choice<MoveToFront> mtfForwardKernel;
extern Choice<MoveToFront> mtfInverseKernel;

} // namespace ntk::bz2
