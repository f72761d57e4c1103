// A second table for the literals, lengths and distances of a block: an entry stands for two
// literals or for a whole match where their codes fit into the index, and so shortens the chain
// from lookup to lookup. Tables for several symbols at once are a well-known technique of decoders
// of prefix codes.
#pragma once

#include <array>

#include "../dispatch.h"
#include "bitreader.h"
#include "codetable.h"

namespace ntk::inflate {

// Entry, 64 bits:
//    0..5   bits that the symbols take, with the extra bits of a distance
//    8..15  the length of the match, or how many literals
//   16..21  bits that the symbols take without the extra bits of a distance
//   22      set in an entry that is neither literals nor a match
//   23      set in a match
//   32..47  the literals
//   48..63  base of the distance; 0 in literals
// and, if bit 22 is set:
//   32..63  the entry of the literals' table (codetable.h)
using Pair = Ntk64u;

inline constexpr Pair otherFlag = 1U << 22;
inline constexpr Pair matchFlag = 1U << 23;

constexpr bool isOther(Pair p) {
    return (p & otherFlag) != 0;
}
constexpr bool isMatch(Pair p) {
    return (p & matchFlag) != 0;
}
constexpr unsigned takenBits(Pair p) {
    return p & 0x3f;
}
// Of a match, or the number of literals.
constexpr unsigned lengthOf(Pair p) {
    return p >> 8 & 0xff;
}
// 0 if the pair is no match. `bits` begins with the pair.
constexpr Ntk64u distanceOf(Pair p, Ntk64u bits) {
    return (p >> 48) + (lowBits(bits, takenBits(p)) >> (p >> 16 & 0x3f));
}
constexpr Entry firstOf(Pair p) {
    return static_cast<Entry>(p >> 32);
}
inline const Ntk8u* literalsOf(const Pair* p) {
    return reinterpret_cast<const Ntk8u*>(p) + 4;
}

// The longest and the nearest match of a pair: one copy of 16 bytes does for it. A distance
// of 16 has the same base as one of 13.
inline constexpr unsigned longestPaired = 16;
inline constexpr unsigned nearestPaired = 17;

// Bits of the index. Fixed codes have no pair of literals below 16 bits and no match below 12.
// Indices of 12 bits for the others, 32 KiB, took 2 (obj1) to 13% more (book1), of 10 bits up to
// 4% more (geo).
inline constexpr unsigned pairBits = 11;
inline constexpr unsigned fixedPairBits = 12;

// With room for copies of 16 bytes from the literals of the last entry.
template <unsigned indexBits> using Pairs = std::array<Pair, (1U << indexBits) + 2>;

// A table as its users see it.
struct PairTable {
    const Pair* pairs;
    unsigned indexBits;
};

// The generic way to fill a table of 2^indexBits pairs. literals: a table of at most as many root
// bits.
constexpr void fillPairs(const CodeTable& literals, const CodeTable& distances, unsigned indexBits,
                         Pair* pairs);

// The entries of both tables are in one block, such as the work buffer: vector kernels find those
// of the second by an index of 32 bits from those of the first.
using FillPairs = void(CodeTable literals, CodeTable distances, Pairs<pairBits>& pairs);
FillPairs fillPairsAvx512; // pairsavx512.cpp
extern Choice<FillPairs> fillPairsKernel;

constexpr Pair otherPair(Entry first) {
    return Pair{first} << 32 | otherFlag | takenBits(first);
}

// The next symbol, to be joined with the one that begins at `index`.
constexpr bool canFollow(Entry next, unsigned bitsBefore, unsigned indexBits) {
    return !isException(next) && bitsBefore + codeBits(next) <= indexBits;
}

constexpr Pair joinLiterals(Entry first, unsigned index, unsigned indexBits,
                            const CodeTable& literals) {
    const unsigned firstBits = takenBits(first);
    const Entry second = literals.at(index >> firstBits);
    const bool isPair = canFollow(second, firstBits, indexBits) && literalsIn(second) != 0;
    const Pair values =
        isPair ? (valueOf(first) & 0xff) | (valueOf(second) & 0xff00) : valueOf(first) & 0xff;
    const unsigned bits = firstBits + (isPair ? codeBits(second) : 0);
    return values << 32 | bits << 16 | (isPair ? 2U : 1U) << 8 | bits;
}

constexpr Pair joinMatch(Entry first, unsigned index, unsigned indexBits,
                         const CodeTable& distances) {
    const unsigned firstBits = takenBits(first);
    const Entry second = distances.at(index >> firstBits);
    const unsigned length = lengthWithExtra(first, index);
    if (!canFollow(second, firstBits, indexBits) || length > longestPaired ||
        valueOf(second) < nearestPaired) {
        return otherPair(first);
    }
    return Pair{valueOf(second)} << 48 | matchFlag | (firstBits + codeBits(second)) << 16 |
           length << 8 | (firstBits + takenBits(second));
}

constexpr void fillPairs(const CodeTable& literals, const CodeTable& distances, unsigned indexBits,
                         Pair* pairs) {
    for (unsigned i = 0; i < 1U << indexBits; ++i) {
        const Entry first = literals.at(i);
        pairs[i] = isException(first)       ? otherPair(first)
                   : literalsIn(first) != 0 ? joinLiterals(first, i, indexBits, literals)
                                            : joinMatch(first, i, indexBits, distances);
    }
}

} // namespace ntk::inflate
