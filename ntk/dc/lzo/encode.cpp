// LZO1X encoders, on liblzo2.
//
// Format (published with the LZO library of M. F. X. J. Oberhumer, and as lzo.rst in the
// documentation of the Linux kernel): a stream is a series of instructions, each for a match
// followed by up to three literals, or for a longer run of literals. There are four kinds of
// matches, with distances up to 1, 2, 16 and 48 KiB, of 2 or 3 bytes each, and more for long
// lengths, which grow by 255 per byte. The instruction 11 00 00 ends the stream. A stream contains
// neither its length nor that of its data.
//
// Frame, for a source split among threads (this library's own): an empty stream (11 00 00); the
// number of pieces, 2 to 64; per piece the length of its stream and that of its data; the streams,
// one after another. Numbers have 4 bytes, least significant first. No decoder mistakes a frame for
// a stream: nothing may follow 11 00 00. A frame truncated after these 3 bytes decodes as an empty
// stream, without error. A source in one piece is encoded as a plain stream.
//
// Method: liblzo2's fast encoders, greedy, with a dictionary of the positions of 4-byte strings
// that is reset every 48 KiB. The methods differ in its size: lzo1x_1 (2^14 entries) and lzo1x_1_11
// (2^11, which fits the first-level cache). lzo1x_1_15 is within a few percent of lzo1x_1.
//
// State: a record of what it was initialised for, a work area for liblzo2 per piece, and room for
// the longest stream.
//
// Invariants: liblzo2 does not check the capacity when encoding. It writes to the destination only
// if the worst case fits, otherwise to the room in the state, from where the stream is copied if it
// fits. Areas and room are sized by maxInputLen alone, so the number of threads may change between
// any two calls. A call leaves nothing in the state that a later one reads.

#include "ntkdc.h"

#include <algorithm>
#include <cstring>

#include <lzo/lzo1x.h>

#include "../callerblock.h"
#include "frame.h"

namespace ntk::lzo {

namespace {

constexpr Ntk32u maxLen = 0x7e000000; // the length of any stream then fits an Ntk32u
constexpr Ntk32u stateTag = 0x004f5a4c;
constexpr std::size_t workBytes = LZO1X_1_MEM_COMPRESS;
static_assert(workBytes >= LZO1X_1_11_MEM_COMPRESS);

// Followed by the work areas and the room for a stream.
struct alignas(64) State {
    Ntk32u tag;
    Ntk32u method;
    Ntk32u maxInputLen;

    Ntk8u* workArea(Ntk32u i) { return reinterpret_cast<Ntk8u*>(this + 1) + i * workBytes; }
};

struct Piece {
    const Ntk8u* src;
    Ntk32u srcLen;
    Ntk8u* dst;
    Ntk32u dstLen; // after encoding
    Ntk8u* work;
};

bool isMethod(NtkLZOMethod method) {
    return method == ntkLZOST || method == ntkLZOMT || method == ntkLZOST1X;
}

// Of GetSize and Init.
NtkStatus checkArguments(const void* pointer, NtkLZOMethod method, Ntk32u maxInputLen) {
    if (pointer == nullptr) {
        return ntkStsNullPtr;
    }
    if (maxInputLen > maxLen) {
        return ntkStsBadSize;
    }
    return isMethod(method) ? ntkStsNoErr : ntkStsBadValue;
}

Ntk32u areaCount(Ntk32u method, Ntk32u maxInputLen) {
    return method == ntkLZOMT ? mostPieces(maxInputLen) : 1;
}

// The longest stream of a piece, as liblzo2 states it.
constexpr Ntk32u worstStream(Ntk32u srcLen) {
    return srcLen + srcLen / 16 + 64 + 3;
}

constexpr Ntk32u worstFrame(Ntk32u srcLen, Ntk32u pieces) {
    return frameBytes(pieces) + worstStream(srcLen) + pieces * worstStream(0);
}

Ntk32u worstLength(Ntk32u srcLen, Ntk32u pieces) {
    return pieces == 1 ? worstStream(srcLen) : worstFrame(srcLen, pieces);
}

// liblzo2's encoders always succeed.
Ntk32u encodeStream(Ntk32u method, const Ntk8u* src, Ntk32u srcLen, Ntk8u* dst, Ntk8u* work) {
    lzo_uint length = 0;
    (method == ntkLZOST1X ? lzo1x_1_11_compress : lzo1x_1_compress)(src, srcLen, dst, &length,
                                                                    work);
    return static_cast<Ntk32u>(length);
}

void encodePiece(void* pieces, unsigned i) {
    Piece& p = static_cast<Piece*>(pieces)[i];
    p.dstLen = encodeStream(ntkLZOMT, p.src, p.srcLen, p.dst, p.work);
}

// Each piece gets room for its worst case, so that all can be written at the same time.
void layOut(Piece* pieces, Ntk32u count, State& state, const Ntk8u* src, Ntk32u srcLen,
            Ntk8u* dst) {
    dst += frameBytes(count);
    for (Ntk32u i = 0; i < count; ++i) {
        const auto from = static_cast<Ntk32u>(static_cast<Ntk64u>(srcLen) * i / count);
        const auto to = static_cast<Ntk32u>(static_cast<Ntk64u>(srcLen) * (i + 1) / count);
        pieces[i] = {src + from, to - from, dst, 0, state.workArea(i)};
        dst += worstStream(to - from);
    }
}

// Moves the streams together after their table. Returns the length of the frame.
Ntk32u closeFrame(const Piece* pieces, Ntk32u count, Ntk8u* dst) {
    Frame frame;
    frame.count = count;
    Ntk8u* end = dst + frameBytes(count);
    for (Ntk32u i = 0; i < count; ++i) {
        frame.pieces[i] = {pieces[i].dstLen, pieces[i].srcLen};
        std::memmove(end, pieces[i].dst, pieces[i].dstLen);
        end += pieces[i].dstLen;
    }
    writeFrame(frame, dst);
    return static_cast<Ntk32u>(end - dst);
}

// dst has room for the worst case. Returns the length of the stream or frame.
Ntk32u encode(State& state, Ntk32u count, const Ntk8u* src, Ntk32u srcLen, Ntk8u* dst) {
    if (count == 1) {
        return encodeStream(state.method, src, srcLen, dst, state.workArea(0));
    }
    Piece pieces[maxPieces];
    layOut(pieces, count, state, src, srcLen, dst);
    runJobs(count, count, encodePiece, pieces);
    return closeFrame(pieces, count, dst);
}

} // namespace

} // namespace ntk::lzo

using namespace ntk;
using namespace ntk::lzo;

NtkStatus ntksEncodeLZOGetSize(NtkLZOMethod method, Ntk32u maxInputLen, Ntk32u* pStateSize) {
    const NtkStatus status = checkArguments(pStateSize, method, maxInputLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    const Ntk32u areas = areaCount(method, maxInputLen);
    const std::size_t areaBytes = areas * workBytes;
    *pStateSize =
        static_cast<Ntk32u>(stateBytes<State>() + areaBytes) + worstLength(maxInputLen, areas);
    return ntkStsNoErr;
}

NtkStatus ntksEncodeLZOInit_8u(NtkLZOMethod method, Ntk32u maxInputLen, Ntk8u* pState) {
    const NtkStatus status = checkArguments(pState, method, maxInputLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    auto& state = stateIn<State>(pState);
    state.tag = stateTag;
    state.method = method;
    state.maxInputLen = maxInputLen;
    return ntkStsNoErr;
}

NtkStatus ntksEncodeLZO_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen,
                           Ntk8u* pState) {
    if (anyNull(pSrc, pDst, pDstLen, pState)) {
        return ntkStsNullPtr;
    }
    if (srcLen > maxLen) {
        return ntkStsBadSize;
    }
    auto& state = stateIn<State>(pState);
    if (state.tag != stateTag) {
        return ntkStsBadValue;
    }
    if (srcLen > state.maxInputLen) {
        return ntkStsBadSize;
    }
    const Ntk32u areas = areaCount(state.method, state.maxInputLen);
    const Ntk32u count = std::min({areas, mostPieces(srcLen), allowedWorkers()});
    if (*pDstLen >= worstLength(srcLen, count)) {
        *pDstLen = encode(state, count, pSrc, srcLen, pDst);
        return ntkStsNoErr;
    }
    Ntk8u* const room = state.workArea(areas);
    const Ntk32u length = encode(state, count, pSrc, srcLen, room);
    if (length > *pDstLen) {
        return ntkStsDstTooSmall;
    }
    std::memcpy(pDst, room, length);
    *pDstLen = length;
    return ntkStsNoErr;
}
