// Checks the indices in a hash table of liblz4 before it is reused.
#pragma once

#include <cstddef>

#include "../dispatch.h"

namespace ntk::lz4 {

// Whether none of `count` words (a multiple of 32) is above the limit, which is below 2^31.
using IndexScanFunction = bool(const Ntk32u* words, std::size_t count, Ntk32u limit);

extern Choice<IndexScanFunction> noneAbove;

} // namespace ntk::lz4
