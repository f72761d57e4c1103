// The frame around several streams: how a source is split, and the table of the pieces.
#pragma once

#include "ntkdefs.h"
#include "workers.h"

namespace ntk::lzo {

// Fewer bytes are not worth a thread.
inline constexpr Ntk32u minPieceBytes = 32768;
inline constexpr Ntk32u maxPieces = maxWorkers;

// The end marker: a stream of liblzo2 that begins with it ends there.
inline constexpr Ntk8u emptyStream[] = {0x11, 0, 0};

// The largest number of pieces for a source of srcLen bytes, 1 or more.
Ntk32u mostPieces(Ntk32u srcLen);

struct PieceLengths {
    Ntk32u encoded;
    Ntk32u decoded;
};

struct Frame {
    Ntk32u count; // pieces, 2 to maxPieces in a valid frame
    PieceLengths pieces[maxPieces];
};

// Bytes of the frame before the first piece's stream.
constexpr Ntk32u frameBytes(Ntk32u pieces) {
    return static_cast<Ntk32u>(sizeof emptyStream) + 4 + 8 * pieces;
}

void writeFrame(const Frame& frame, Ntk8u* dst);

// Whether the source begins like a frame; otherwise it is a plain stream.
bool isFrame(const Ntk8u* src, Ntk32u srcLen);

// False if the table is truncated, or the lengths in it do not add up to what follows it.
bool readFrame(const Ntk8u* src, Ntk32u srcLen, Frame& frame);

} // namespace ntk::lzo
