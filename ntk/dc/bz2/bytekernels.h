// The primitives among the bzip2 stages that have several kernels.
#pragma once

#include <cstddef>

#include "../dispatch.h"

namespace ntk::bz2 {

// Replaces each of the bytes by what the table has for it.
using MapBytes = void(const Ntk8u table[256], Ntk8u* bytes, std::size_t length);

// Codes `length` bytes with the move-to-front list, or decodes them. The inverse may work in place,
// the forward direction may not. A list that lacks values gives undefined bytes, no more.
using MoveToFront = void(const Ntk8u* from, Ntk8u* to, std::size_t length, Ntk8u list[256]);

extern Choice<MapBytes> mapBytesKernel;
extern Choice<MoveToFront> mtfForwardKernel;
extern Choice<MoveToFront> mtfInverseKernel;

} // namespace ntk::bz2
