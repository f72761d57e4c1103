// LZSS decoder, streaming. Format: see encode.cpp.
//
// Method: data are decoded into a buffer in the state, four windows long, and delivered from there.
// If the source has a whole group and the buffer has room for its data, the group is decoded at
// once, runs of literals eight bytes at a time; otherwise the source is taken byte by byte.
//
// Invariants:
// - The buffer holds the data without gaps: a distance is valid if it does not reach back beyond
// the
//   start. When the buffer is full and delivered, its last window moves to the start.
// - A copy by words writes up to slackBytes beyond the end of the data, within the buffer.
// - How the source is split affects nothing but which of the two ways is taken.

#include "ntkdc.h"

#include <bit>

#include "../callerblock.h"
#include "lzssstate.h"

namespace ntk::lzss {

namespace {

constexpr Ntk32u windowBytes = maxDistance + 1;
constexpr Ntk32u bufferBytes = sizeof(Decoder::bytes) - slackBytes;
constexpr Ntk32u maxGroupData = tokensPerGroup * maxMatch;
// From here on the buffer counts as full. Below, a group fits, and so does a token.
constexpr Ntk32u fullAt = bufferBytes - maxGroupData;
static_assert(slackBytes >= 16 && fullAt >= windowBytes);
// Literals are read eight bytes at a time, beyond the end of the group.
constexpr int groupReadBytes = static_cast<int>(maxGroupBytes + 8);

// Repeats length bytes from the distance, which is below 8.
void repeat(Ntk8u* to, Ntk32u distance, const Ntk8u* end) {
    // Bytes of the whole periods that fit a word.
    static constexpr Ntk8u wholePeriods[8] = {0, 8, 8, 6, 8, 5, 6, 7};
    Ntk8u word[8];
    for (Ntk32u i = 0; i < 8; ++i) {
        to[i] = *(to + i - distance);
    }
    copy8(word, to);
    do {
        copy8(to, word);
        to += wholePeriods[distance];
    } while (to < end);
}

// Writes up to slackBytes beyond the match.
void copyMatch(Ntk8u* to, Match m) {
    const Ntk8u* from = to - m.distance;
    const Ntk8u* const end = to + m.length;
    if (m.distance >= 16) {
        do {
            std::memcpy(to, from, 16);
            to += 16;
            from += 16;
        } while (to < end);
    } else if (m.distance >= 8) {
        do {
            copy8(to, from);
            to += 8;
            from += 8;
        } while (to < end);
    } else {
        repeat(to, m.distance, end);
    }
}

bool isValid(Match m, const Decoder& d, const Ntk8u* to) {
    return m.distance != 0 && m.distance <= to - d.bytes;
}

// Decodes one group; returns where the next one begins, null if it is malformed. The source has
// groupReadBytes and the buffer has room for maxGroupData. The flags get a 1 above the last one:
// when only that is left of them, the group is complete.
const Ntk8u* decodeGroup(Decoder& d, const Ntk8u* from) {
    Ntk8u* to = d.bytes + d.end;
    Ntk32u flags = *from++ | 1U << tokensPerGroup;
    while (true) {
        const auto literals = static_cast<Ntk32u>(std::countr_zero(flags));
        copy8(to, from);
        to += literals;
        from += literals;
        flags >>= literals;
        if (flags == 1) {
            break;
        }
        if (endsGroup(from)) {
            from += 2;
            break;
        }
        const Match match = readToken(from);
        if (!isValid(match, d, to)) {
            return nullptr;
        }
        copyMatch(to, match);
        to += match.length;
        from += tokenBytes(from, 3);
        flags >>= 1;
    }
    d.end = static_cast<Ntk32u>(to - d.bytes);
    return from;
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

// Decodes until the source is taken or the buffer is full. False if the stream is malformed.
bool fillBuffer(Decoder& d, Source& src) {
    while (src.left > 0 && d.end < fullAt) {
        if (d.tokens == 0 && src.left >= groupReadBytes) {
            const Ntk8u* const next = decodeGroup(d, src.at);
            if (next == nullptr) {
                return false;
            }
            src.skip(static_cast<Ntk32u>(next - src.at));
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
        if (!fillBuffer(d, src)) {
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
        slide(d);
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
