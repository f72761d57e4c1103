// Blocks of ZFP streams, on libzfp.
//
// The format in short (P. Lindstrom, "Fixed-Rate Compressed Floating-Point Arrays", IEEE
// Transactions on Visualization and Computer Graphics 20(12), 2014; codec 5 of libzfp): a block of
// 4 x 4 x 4 values is a single bit 0 if all are zero; otherwise a bit 1, the exponent of the
// largest magnitude (8 bits) and the values as integers of 32 bits relative to it, decorrelated
// along each dimension, ordered by frequency, in negabinary. Their bit planes follow, most
// significant one first. Each plane has the bits of the values that are already significant, then
// the others in runs: a bit tells whether another value becomes significant, bits 0 lead to it. The
// mode determines where the planes end: after a number of bits (fixed rate; shorter blocks are
// padded) or at the plane below the tolerance. Bits fill bytes from the least significant one up;
// blocks follow each other without a gap.
//
// libzfp does all that. Added here are the checks at the end of the buffer, which libzfp lacks:
// - State: libzfp's own stream records over the caller's buffer, see zfpstate.h. Invariant between
//   calls: the bits written so far, rounded up to bytes, are within the buffer, though the last
//   byte may still be in the record; a reader is at or before the end.
// - No block takes more than mostBits() (2120 by the format, fewer at a fixed rate). As long as
//   that many bits are left, libzfp works in the caller's buffer.
// - Nearer to the end it works in the state's scratch buffer, which has room for the largest block.
// A
//   written block is copied out if it fits, a decoded one is delivered if it ended within the
//   buffer; otherwise the record is restored.
// - libzfp reads and writes single bytes here (words of 8 bits), so no word crosses the end; Init
//   rejects a libzfp with other words.
//
// Limits: single precision, three dimensions, whole blocks. Infinities and NaN cannot be coded.

#include <cstring>

#include "ntkdczfp.h"

#include "zfpstate.h"

namespace ntk::zfp {

namespace {

using Block = Ntk32f[blockValues];
constexpr std::size_t rowBytes = 4 * sizeof(Ntk32f);

// Calls take(row in the block, row of the caller's values, as bytes of any alignment).
template <class Byte>
void forEachRow(Byte* values, int stepY, int stepZ, Ntk32f* block, auto take) {
    constexpr std::ptrdiff_t valueBytes = sizeof(Ntk32f);
    for (std::ptrdiff_t z = 0; z < 4; z++) {
        for (std::ptrdiff_t y = 0; y < 4; y++) {
            take(block + 16 * z + 4 * y, values + valueBytes * (y * stepY + z * stepZ));
        }
    }
}

bool isNearEnd(std::uint64_t position, const State& state) {
    return stream_capacity(&state.bits) * bitsPerWord - position < mostBits(state);
}

NtkStatus encodeNearEnd(State& state, const Block& block) {
    const bitstream before = state.bits;
    state.bits.begin = state.scratch;
    state.bits.ptr = state.scratch;
    zfp_encode_block_float_3(&state.zfp, block);
    const auto bytes = static_cast<std::size_t>(state.bits.ptr - state.scratch);
    const auto room = static_cast<std::size_t>(before.end - before.ptr);
    if (stream_wtell(&state.bits) > room * bitsPerWord) {
        state.bits = before;
        return ntkStsDstTooSmall;
    }
    std::memcpy(before.ptr, state.scratch, bytes);
    state.bits.ptr = before.ptr + bytes;
    state.bits.begin = before.begin;
    return ntkStsNoErr;
}

NtkStatus decodeNearEnd(State& state, Block& block) {
    const bitstream before = state.bits;
    Ntk8u* const from = before.ptr - (before.bits > 0); // libzfp may go back to the byte it is in
    const auto bytes = static_cast<std::size_t>(before.end - from);
    std::memcpy(state.scratch, from, bytes);
    state.bits.begin = state.scratch;
    state.bits.ptr = state.scratch + (before.ptr - from);
    zfp_decode_block_float_3(&state.zfp, block);
    if (stream_rtell(&state.bits) > bytes * bitsPerWord) {
        state.bits = before;
        return ntkStsBadSrcData;
    }
    state.bits.ptr = from + (state.bits.ptr - state.scratch);
    state.bits.begin = before.begin;
    return ntkStsNoErr;
}

NtkStatus checkCall(const void* values, const Ntk8u* pState, Mark mark) {
    if (anyNull(values, pState)) {
        return ntkStsNullPtr;
    }
    return stateIn<State>(pState).mark == mark ? ntkStsNoErr : ntkStsBadValue;
}

} // namespace

} // namespace ntk::zfp

using namespace ntk;
using namespace ntk::zfp;

NtkStatus ntksEncodeZfp444_32f(const Ntk32f* pSrc, int stepY, int stepZ, Ntk8u* pState) {
    const NtkStatus status = checkCall(pSrc, pState, Mark::encoder);
    if (status != ntkStsNoErr) {
        return status;
    }
    Block block;
    forEachRow(reinterpret_cast<const Ntk8u*>(pSrc), stepY, stepZ, block,
               [](Ntk32f* row, const Ntk8u* values) { std::memcpy(row, values, rowBytes); });
    State& state = stateIn<State>(pState);
    if (isNearEnd(stream_wtell(&state.bits), state)) {
        return encodeNearEnd(state, block);
    }
    zfp_encode_block_float_3(&state.zfp, block);
    return ntkStsNoErr;
}

NtkStatus ntksDecodeZfp444_32f(Ntk32f* pDst, int stepY, int stepZ, Ntk8u* pState) {
    NtkStatus status = checkCall(pDst, pState, Mark::decoder);
    if (status != ntkStsNoErr) {
        return status;
    }
    Block block;
    State& state = stateIn<State>(pState);
    if (isNearEnd(stream_rtell(&state.bits), state)) {
        status = decodeNearEnd(state, block);
    } else {
        zfp_decode_block_float_3(&state.zfp, block);
    }
    if (status == ntkStsNoErr) {
        forEachRow(reinterpret_cast<Ntk8u*>(pDst), stepY, stepZ, block,
                   [](const Ntk32f* row, Ntk8u* values) { std::memcpy(values, row, rowBytes); });
    }
    return status;
}
