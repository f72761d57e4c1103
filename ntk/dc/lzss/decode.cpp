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

// Repeats the last `distance` bytes, fewer than 8, until `end`. A product with the right constant
// puts as many copies of them into a word as fit.
void repeat(Ntk8u* to, Ntk32u distance, const Ntk8u* end) {
    static constexpr Ntk64u copies[8] = {0,
                                         0x0101010101010101,
                                         0x0001000100010001,
                                         0x0001000001000001,
                                         0x0000000100000001,
                                         0x0000010000000001,
                                         0x0001000000000001,
                                         0x0100000000000001};
    // Bytes of the whole periods that fit a word.
    static constexpr Ntk8u wholePeriods[8] = {0, 8, 8, 6, 8, 5, 6, 7};
    const Ntk64u period = load<Ntk64u>(to - distance) & ((Ntk64u{1} << 8 * distance) - 1);
    const Ntk64u word = period * copies[distance];
    do {
        std::memcpy(to, &word, 8);
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

// A token of two or three bytes, read without a branch: which of the two it is, is hard to
// foretell. A token of four bytes is one of three with the longest code.
struct ShortToken {
    Match match;
    Ntk32u bytes;
};
ShortToken readShortToken(const Ntk8u* token) {
    const auto word = load<Ntk32u>(token);
    const bool isLong = (word & 7) == longCode;
    const Ntk32u length = isLong ? minLongMatch + (word >> 17 & 127) : minMatch + (word & 7);
    const Ntk32u high = isLong ? word >> 3 & 1U << 13 : 0;
    return {{length, (word >> 3 & maxShortDistance) | high}, isLong ? 3U : 2U};
}

// Decodes whole groups while the source has groupReadBytes and the buffer room for maxGroupData.
// Returns where the next group begins, null if one is malformed.
//
// A step takes the literals up to the next match and that match. Where a group ends, which is as
// hard to foretell as what is in it, the step reads the flags of the next one in place of a match:
// it copies 16 bytes that do not count. The flags get a 1 above the last one: when only that is
// left of them, the group is complete. Clocks a byte on book1 and geo (LZ4's decoder: 0.8 and 0.6):
// 2.7 and 3.0. What was tried:
// - a loop a group, with a branch at its end and one for the length of a token: 3.2 and 4.0;
// - eight equal steps a group, each a literal or a match, without a branch: 2.4 and 5.2;
// - as here, but with a mask of the group's long tokens, so that no token need be loaded to find
// the
//   next one: 3.0 and 4.3, there is more to do than that saves.
const Ntk8u* decodeGroups(Decoder& d, const Ntk8u* from, const Ntk8u* lastFrom) {
    Ntk8u* to = d.bytes + d.end;
    const Ntk8u* const full = d.bytes + fullAt;
    Ntk32u flags = *from++ | 1U << tokensPerGroup;
    while (true) {
        const auto literals = static_cast<Ntk32u>(std::countr_zero(flags));
        copy8(to, from);
        to += literals;
        from += literals;
        flags >>= literals;
        const bool isComplete = flags == 1;
        if (isComplete & ((from > lastFrom) | (to >= full))) {
            break;
        }
        ShortToken token = readShortToken(from);
        const Ntk32u nextFlags = *from | 1U << tokensPerGroup;
        token.match.distance = isComplete ? 16 : token.match.distance;
        token.match.length = isComplete ? 0 : token.match.length;
        token.bytes = isComplete ? 1 : token.bytes;
        flags = isComplete ? nextFlags : flags >> 1;
        const auto position = static_cast<Ntk32u>(to - d.bytes);
        const Match& match = token.match;
        if ((match.distance >= 16) & (match.distance <= position) & (match.length <= 16)) {
            std::memcpy(to, to - match.distance, 16);
            to += match.length;
            from += token.bytes;
        } else if (isComplete) { // at the start of the data
            ++from;
        } else if (endsGroup(from)) {
            flags = 1;
            from += 2;
        } else {
            const Match whole = readToken(from);
            if (!isValid(whole, d, to)) {
                return nullptr;
            }
            copyMatch(to, whole);
            to += whole.length;
            from += tokenBytes(from, 3);
        }
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
            const Ntk8u* const next = decodeGroups(d, src.at, src.at + src.left - groupReadBytes);
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
