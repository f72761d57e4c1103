// The own encoder of sources that follow a dictionary. Unlike liblz4's it checks each candidate
// from the table when it is used, so that it can take any table. sequence.h says where it is
// chosen.
//
// Method: greedy, with a hash table of positions by the next 5 bytes, after the fast encoder of the
// LZ4 project (Y. Collet) as its documents describe it: where nothing is found for long, more and
// more positions are left out; a match is extended to both sides; of its positions, the one where
// it was found and the last but one are inserted, and behind it is searched before anything else.
// Hash: multiplicative (Knuth, vol. 3, 6.4) with the factor of liblz4, so that both encoders find
// what either has inserted. Equal bytes are counted 16 at a time (SSE2), which a bitmap with its
// long matches gains from.
//
// The search is bound by what follows from one match to where the next search begins. What helped:
// the end of a match does not wait for how far it extends to the front (a tenth on text), the hash
// of the next position is there before this one is decided (a tenth, where branches are guessed
// wrong), blocks of positions with one comparison for window and reach (a twentieth). What did not:
// the bytes before a match 8 at a time (3% slower), one limit for window and reach as a minimum at
// each position (8% slower).
//
// Invariants:
// - No entry of the table is trusted. What counts is its distance from the position at hand: beyond
//   the window, the dictionary or the data it is no candidate, and the bytes of any other are
//   compared. Indices are taken modulo 2^32, as are distances.
// - A sequence is written only when it fits and leaves room for the token and the 5 literals that
//   a block ends with: with the 2 of the distance 8 bytes behind its literals, of which a copy by
//   words of 8 reaches into 7.
#pragma once

#include <array>

#include "arguments.h"

namespace ntk::lz4 {

// By hash: the index of the newest position with it. May hold anything.
inline constexpr int positionTableBits = 12;
using PositionTable = std::array<Ntk32u, std::size_t{1} << positionTableBits>;

// Makes the table that of an encoder which has seen just this dictionary. Returns the index of the
// position behind it.
Ntk32u loadDictionary(PositionTable& table, const DictArguments& d);

// The index is that of the source's first position. Returns the length of the block, 0 if it does
// not fit: then the destination holds whole sequences of it. The source is not empty.
int encodeAfterDictionary(PositionTable& table, Ntk32u index, const DictArguments& d,
                          const Ntk8u* src, int srcLen, Ntk8u* dst, int capacity);

} // namespace ntk::lz4
