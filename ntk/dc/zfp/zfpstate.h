// The state of a ZFP stream in the caller's block.
#pragma once

// libzfp only creates bit streams on the heap. Its installed sources, included this way, define the
// structure of a bit stream, so that the state can contain one instead; knowsFields() tells whether
// the library found at run time was built from the same sources.
#define inline_ static inline
#define BIT_STREAM_WORD_TYPE uint8
#include <zfp/bitstream.inl>

#include <zfp.h>

#include "../callerblock.h"
#include "ntkdefs.h"

namespace ntk::zfp {

inline constexpr unsigned bitsPerWord = 8;
inline constexpr unsigned dims = 3;
inline constexpr unsigned blockValues = 64;
inline constexpr double highestRate = 32;

// A block has a bit and 8 bits of exponent, then, for each of 32 bit planes, at most one bit per
// value, and in total at most 63 bits that tell where values become significant.
inline constexpr unsigned mostBlockBits = 1 + 8 + 32 * blockValues + (blockValues - 1);
// Room for a block that begins at any bit of the first byte, and for a byte that the reader looks
// ahead.
inline constexpr unsigned scratchBytes = (bitsPerWord - 1 + mostBlockBits) / bitsPerWord + 2;

// What a state is for. Values that memory is unlikely to hold by chance.
enum class Mark : Ntk32u {
    encoder = 0x7a667045,
    ended = 0x7a667046, // an encoder after the flush
    decoder = 0x7a667044
};

struct State {
    Mark mark;
    zfp_stream zfp;  // refers to bits
    bitstream bits;  // over the caller's buffer
    size_t spare[2]; // zeros: a libzfp built with strides has two more fields here
    Ntk8u scratch[scratchBytes];
};

inline bool isMade(const State& state) {
    return state.mark == Mark::encoder || state.mark == Mark::ended || state.mark == Mark::decoder;
}

// The largest number of bits of a block in the current mode.
inline unsigned mostBits(const State& state) {
    return state.zfp.maxbits < mostBlockBits ? state.zfp.maxbits : mostBlockBits;
}

} // namespace ntk::zfp
