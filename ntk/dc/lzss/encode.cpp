// LZSS encoder, streaming.
//
// Format (this library's own; the method is that of J. A. Storer and T. G. Szymanski, 1982, with
// the flags collected in bytes as usual since H. Okumura's program of 1989). A stream is a series
// of groups. A group is a flag byte and up to eight tokens; the flag of the first token is in the
// lowest bit. Flag 0: a literal, one byte. Flag 1: a match, two to four bytes b0 b1 b2 b3:
//
//     b0 + 256 b1 = 8 d + c      c = 0..6: length 3 + c, distance d (up to 8191)
//                                c = 7: b2 follows, b2 = 2 k + h, distance d + 8192 h (to 16383)
//                                   k = 0..126: length 4 + k
//                                   k = 127: b3 follows, length 131 + b3 (up to 386)
//
// A match repeats bytes from a distance back, which is at least 1 and never reaches back beyond the
// start of the data; it may overlap itself. The match 00 00 ends a group before its eighth token:
// the remaining flags are ignored, the next byte is a flag byte. Any other match of distance 0 is
// malformed. Nothing marks the end of the stream, which contains neither its length nor that of its
// data. A decoder needs the last 16383 bytes of data.
//
// Method: hash chains by four bytes, of which the latest 16 candidates are tried, and the latest
// position by three bytes. Lazy: the match that saves most bits is taken unless the one at the next
// position saves more; then a literal comes first.
//
// State: the window (see windowsearch.h) and the current group.
//
// Invariants:
// - Data are encoded only if a match of full length and the one after it can be seen, or in a
//   flush. So the stream depends on the data and the flushes alone, not on how calls split the
//   data.
// - A group is written when it is complete, if necessary in parts by several calls; meanwhile
//   nothing is added to it.
// - Positions are relative to the window's buffer: the data may have any length.

#include "ntkdc.h"

#include "../callerblock.h"
#include "lzssstate.h"

namespace ntk::lzss {

namespace {

constexpr Ntk32u goodMatch = 32; // long enough not to look for a better one

void startGroup(Encoder& e) {
    e.tokens = 0;
    e.groupLen = 1;
    e.groupSent = 0;
    e.group[0] = 0;
}

bool isComplete(const Encoder& e) {
    return e.tokens == tokensPerGroup;
}

// False if some of the complete group is left.
bool send(Encoder& e, Destination& dst) {
    e.groupSent += dst.put(e.group + e.groupSent, e.groupLen - e.groupSent);
    if (e.groupSent < e.groupLen) {
        return false;
    }
    startGroup(e);
    return true;
}

void addLiteral(Encoder& e) {
    e.group[e.groupLen++] = *e.finder.current();
    ++e.tokens;
    e.finder.advance(1);
}

void addMatch(Encoder& e, Match m) {
    e.group[0] = static_cast<Ntk8u>(e.group[0] | 1 << e.tokens);
    e.groupLen += writeToken(m, e.group + e.groupLen);
    ++e.tokens;
    e.finder.advance(m.length);
}

void addToken(Encoder& e) {
    const Match match = e.isNextFound ? e.next : e.finder.find(0);
    e.isNextFound = false;
    if (match.length == 0) {
        addLiteral(e);
        return;
    }
    if (match.length < goodMatch && e.finder.lookahead() > 1) {
        e.next = e.finder.find(1);
        if (savedBits(e.next) > savedBits(match)) {
            e.isNextFound = true;
            addLiteral(e);
            return;
        }
    }
    addMatch(e, match);
}

// Takes the source and writes groups as long as at least `enough` bytes are seen ahead. False if
// the destination is full.
bool encode(Encoder& e, Source& src, Destination& dst, Ntk32u enough) {
    while (true) {
        if (isComplete(e) && !send(e, dst)) {
            return false;
        }
        if (e.finder.lookahead() >= enough) {
            addToken(e);
        } else if (src.left > 0) {
            src.skip(e.finder.fill(src.at, static_cast<Ntk32u>(src.left)));
        } else {
            return true;
        }
    }
}

// Ends the group with the match 00 00.
void closeGroup(Encoder& e) {
    e.group[0] = static_cast<Ntk8u>(e.group[0] | 1 << e.tokens);
    e.group[e.groupLen++] = 0;
    e.group[e.groupLen++] = 0;
    e.tokens = tokensPerGroup;
}

} // namespace

} // namespace ntk::lzss

using namespace ntk;
using namespace ntk::lzss;

NtkStatus ntksLZSSGetSize_8u(int* pSize) {
    return returnSize(std::max(stateBytes<Encoder>(), stateBytes<Decoder>()), pSize);
}

NtkStatus ntksEncodeLZSSInit_8u(Ntk8u* pState) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    auto& e = stateIn<Encoder>(pState);
    e.tag = encoderTag;
    e.isNextFound = false;
    startGroup(e);
    e.finder.reset();
    return ntkStsNoErr;
}

NtkStatus ntksEncodeLZSS_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                            Ntk8u* pState) {
    if (anyNull(ppSrc, pSrcLen, ppDst, pDstLen, pState) || anyNull(*ppSrc, *ppDst)) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    auto& e = stateIn<Encoder>(pState);
    if (e.tag != encoderTag) {
        return ntkStsBadValue;
    }
    Source src{*ppSrc, *pSrcLen};
    Destination dst{*ppDst, *pDstLen};
    const bool isDone = encode(e, src, dst, maxMatch + 1);
    *ppSrc += *pSrcLen - src.left;
    *pSrcLen = src.left;
    *ppDst = dst.at;
    *pDstLen = dst.left;
    return isDone ? ntkStsNoErr : ntkStsDstFull;
}

NtkStatus ntksEncodeLZSSFlush_8u(Ntk8u** ppDst, int* pDstLen, Ntk8u* pState) {
    if (anyNull(ppDst, pDstLen, pState) || *ppDst == nullptr) {
        return ntkStsNullPtr;
    }
    if (*pDstLen < 0) {
        return ntkStsBadSize;
    }
    auto& e = stateIn<Encoder>(pState);
    if (e.tag != encoderTag) {
        return ntkStsBadValue;
    }
    Source none{nullptr, 0};
    Destination dst{*ppDst, *pDstLen};
    bool isDone = encode(e, none, dst, 1);
    if (isDone && e.tokens > 0) {
        closeGroup(e);
        isDone = send(e, dst);
    }
    *ppDst = dst.at;
    *pDstLen = dst.left;
    return isDone ? ntkStsNoErr : ntkStsDstFull;
}
