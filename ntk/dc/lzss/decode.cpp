// LZSS decoder, streaming. Format: see encode.cpp.
//
// Method: data are decoded into a buffer in the state, four windows long, and delivered from there.
// Where a group begins and the source has groupReadBytes, more than any group is long, the group is
// decoded at once (groups.cpp); otherwise the source is taken byte by byte. Either needs the buffer
// to have room for the longest group.
//
// Data are delivered in pieces, while they are in the processor's nearest cache: once for each
// filling of the buffer took 3% longer on text and 6% on pic. Delivery took 0.04 to 0.05 clocks a
// byte then. To decode into the destination would save the rest of it, but not where data arrive in
// pieces below a window.
//
// Invariants:
// - The buffer holds the data without gaps: a distance is valid if it does not reach back beyond
//   the start. When the buffer is full and delivered, its last window moves to the start.
// - A copy by words writes up to copySlack bytes beyond the end of the data, within the buffer.
// - Both ways give the same data and reject the same streams. How source and destination are split
//   affects only how far a call decodes ahead of what it delivers, and so which call is the one
//   that rejects a stream.

#include "ntkdc.h"

#include "../callerblock.h"
#include "copymatch.h"
#include "groups.h"
#include "lzssstate.h"

namespace ntk::lzss {

namespace {

constexpr Ntk32u windowBytes = maxDistance + 1;
constexpr Ntk32u pieceBytes = 8192; // decoded before they are delivered, or somewhat more
constexpr Ntk32u bufferBytes = sizeof(Decoder::bytes) - copySlack;
// From here on the buffer counts as full. Below, a group fits, and so does a token.
constexpr Ntk32u fullAt = bufferBytes - maxGroupData;
static_assert(fullAt >= windowBytes);

bool isValid(Match m, const Decoder& d, const Ntk8u* to) {
    return m.distance != 0 && m.distance <= to - d.bytes;
}

void nextToken(Decoder& d) {
    d.tokenLen = 0;
    d.flags >>= 1;
    --d.tokens;
}

// Executes the match whose token is complete.
bool takeMatch(Decoder& d) {
    if (endsGroup(d.token)) {
        d.tokenLen = 0;
        d.tokens = 0;
        return true;
    }
    const Match match = readToken(d.token);
    Ntk8u* const to = d.bytes + d.end;
    if (!isValid(match, d, to)) {
        return false;
    }
    copyMatch(to, match);
    d.end += match.length;
    nextToken(d);
    return true;
}

// False if the stream is malformed.
bool takeByte(Decoder& d, Ntk8u byte) {
    if (d.tokens == 0) {
        d.flags = byte;
        d.tokens = tokensPerGroup;
        return true;
    }
    if ((d.flags & 1) == 0) {
        d.bytes[d.end++] = byte;
        nextToken(d);
        return true;
    }
    d.token[d.tokenLen++] = byte;
    const bool isWhole = d.tokenLen >= 2 && d.tokenLen == tokenBytes(d.token, d.tokenLen);
    return !isWhole || takeMatch(d);
}

// Decodes groups while the source has groupReadBytes and the data do not reach `full`. False if one
// is malformed.
bool takeGroups(Decoder& d, Source& src, Ntk32u full) {
    Data data{d.bytes, d.bytes + d.end, d.bytes + full};
    const Ntk8u* const last = src.at + src.left - groupReadBytes;
    const Ntk8u* const next = decodeGroupsKernel.get()(data, src.at, last);
    if (next == nullptr) {
        return false;
    }
    src.skip(static_cast<Ntk32u>(next - src.at));
    d.end = static_cast<Ntk32u>(data.end - d.bytes);
    return true;
}

// Decodes until the source is taken or there is a piece to deliver. False if the stream is
// malformed.
bool decodePiece(Decoder& d, Source& src) {
    const Ntk32u full = std::min(fullAt, d.sent + pieceBytes);
    while (src.left > 0 && d.end < full) {
        if (d.tokens == 0 && src.left >= static_cast<int>(groupReadBytes)) {
            if (!takeGroups(d, src, full)) {
                return false;
            }
        } else {
            if (!takeByte(d, *src.at)) {
                return false;
            }
            src.skip(1);
        }
    }
    return true;
}

void slide(Decoder& d) {
    std::memmove(d.bytes, d.bytes + d.end - windowBytes, windowBytes);
    d.end = windowBytes;
    d.sent = windowBytes;
}

NtkStatus decode(Decoder& d, Source& src, Destination& dst) {
    while (true) {
        if (!decodePiece(d, src)) {
            d.tag = brokenDecoderTag;
            return ntkStsBadSrcData;
        }
        d.sent += dst.put(d.bytes + d.sent, d.end - d.sent);
        if (d.sent < d.end) {
            return ntkStsDstFull;
        }
        if (src.left == 0) {
            return ntkStsNoErr;
        }
        if (d.end >= fullAt) {
            slide(d);
        }
    }
}

} // namespace

} // namespace ntk::lzss

using namespace ntk;
using namespace ntk::lzss;

NtkStatus ntksDecodeLZSSInit_8u(Ntk8u* pState) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    auto& d = stateIn<Decoder>(pState);
    d.tag = decoderTag;
    d.tokens = 0;
    d.tokenLen = 0;
    d.sent = 0;
    d.end = 0;
    return ntkStsNoErr;
}

NtkStatus ntksDecodeLZSS_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                            Ntk8u* pState) {
    if (anyNull(ppSrc, pSrcLen, ppDst, pDstLen, pState) || anyNull(*ppSrc, *ppDst)) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    auto& d = stateIn<Decoder>(pState);
    if (d.tag != decoderTag) {
        return d.tag == brokenDecoderTag ? ntkStsBadSrcData : ntkStsBadValue;
    }
    Source src{*ppSrc, *pSrcLen};
    Destination dst{*ppDst, *pDstLen};
    const NtkStatus status = decode(d, src, dst);
    if (status < 0) {
        return status;
    }
    *ppSrc += *pSrcLen - src.left;
    *pSrcLen = src.left;
    *ppDst = dst.at;
    *pDstLen = dst.left;
    return status;
}
