// Runs of zeroes in a block: what encoder and decoder share.
#pragma once

#include <emmintrin.h>

#include "../anyaddress.h"
#include "spans.h"

namespace ntk::bz2 {

using Symbol = AnyAddress<Ntk16u>;

inline constexpr unsigned largestSymbol = 256; // of a byte: 255 + 1

// Both directions work on windows of 64 elements with bit masks, and read and write vectors of 16
// from any position on: up to 15 elements more than they use.
inline constexpr unsigned windowLength = 64;
inline constexpr unsigned vectorLength = 16;
// A window's elements, a run that began before it, and the excess of vector stores.
inline constexpr unsigned windowRoom = 2 * windowLength;

// The lowest n bits, n below 64.
constexpr Ntk64u lowBits(unsigned n) {
    return (1ULL << n) - 1;
}

// Decodes as ntksDecodeZ1Z2_BZ2_16u8u does, with ntkStsBadSrcData for symbols above maxSymbol,
// which is at most largestSymbol. Leaves what is left of source and destination in the spans.
NtkStatus decodeZ1Z2(Span<const Symbol>& src, Span<Ntk8u>& dst, unsigned maxSymbol);

} // namespace ntk::bz2
