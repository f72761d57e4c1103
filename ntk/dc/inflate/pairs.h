// A second table for the literals and lengths of a dynamic block: an entry stands for as many
// symbols as fit, a literal and what follows it, and so shortens the chain from lookup to lookup.
// Tables for several symbols at once are a well-known technique of decoders of prefix codes.
#pragma once

#include <array>

#include "../dispatch.h"
#include "codetable.h"

namespace ntk::inflate {

inline constexpr unsigned pairBits = 12;

// Entries as in codetable.h, always 2^pairBits. A literal is joined with the literal or the length
// after it if both codes fit into the index; everything else is the entry of the literals' table.
using PairTable = std::array<Entry, 1U << pairBits>;

// literals: a table of at most pairBits root bits.
using FillPairs = void(CodeTable literals, PairTable& pairs);
extern Choice<FillPairs> fillPairsKernel;

} // namespace ntk::inflate
