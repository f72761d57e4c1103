// Run-length coding, the first stage of the bzip2 format: decoder. Format: see rleencode.cpp.
//
// Method: as in the encoder, 16 bytes are copied at a time as long as no run of four begins among
// them. Everything else goes byte by byte through the state, which can stop anywhere: within a run,
// before its count, or with some of the counted bytes still to be written.

#include "ntkdcbz2.h"

#include <algorithm>

#include "spans.h"
#include "rle.h"

namespace ntk::bz2 {

namespace {

// False if the destination is full before all repeats are written.
bool writeRepeats(RleState& s, Span<Ntk8u>& dst) {
    const std::size_t length = std::min<std::size_t>(s.repeats, dst.left());
    std::memset(dst.p, s.lastByte, length);
    dst.p += length;
    s.repeats = static_cast<Ntk8u>(s.repeats - length);
    return s.repeats == 0;
}

void copyByte(RleState& s, Span<Ntk8u>& src, Span<Ntk8u>& dst) {
    const Ntk8u byte = *src.p++;
    const bool continues = s.equal != 0 && byte == s.lastByte;
    s.equal = static_cast<Ntk8u>(continues ? s.equal + 1 : 1);
    s.lastByte = byte;
    *dst.p++ = byte;
}

// Copies what comes before the next run of four. Only at the start of a run: otherwise bytes of
// earlier calls, which only the state knows, might belong to the run.
void copyLiterals(RleState& s, Span<Ntk8u>& src, Span<Ntk8u>& dst) {
    while (src.left() >= stepReach && dst.left() >= stepBytes &&
           (s.equal == 0 || *src.p != s.lastByte)) {
        const unsigned runs = fourEqual(src.p);
        const std::size_t length =
            runs != 0 ? static_cast<std::size_t>(__builtin_ctz(runs)) : stepBytes;
        copy16(src.p, dst.p);
        src.p += length;
        dst.p += length;
        if (runs != 0) {
            s.equal = 0;
            return;
        }
        s.lastByte = src.p[-1];
        s.equal = static_cast<Ntk8u>(src.p[-2] != s.lastByte ? 1 : src.p[-3] != s.lastByte ? 2 : 3);
    }
}

// False if the destination is full.
bool decode(RleState& s, Span<Ntk8u>& src, Span<Ntk8u>& dst) {
    while (writeRepeats(s, dst)) {
        if (src.empty()) {
            return true;
        }
        if (s.equal >= leastRun) {
            s.repeats = *src.p++;
            s.equal = 0;
            continue;
        }
        copyLiterals(s, src, dst);
        if (dst.empty()) {
            return false;
        }
        copyByte(s, src, dst); // a literal step leaves at least three bytes
    }
    return false;
}

} // namespace

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksDecodeRLEInit_BZ2_8u(Ntk8u* pState) {
    return ntksEncodeRLEInit_BZ2_8u(pState);
}

NtkStatus ntksDecodeRLEState_BZ2_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                                    Ntk8u* pState) {
    if (anyNull(ppSrc, pSrcLen, ppDst, pDstLen, pState) || anyNull(*ppSrc, *ppDst)) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    Span<Ntk8u> src(*ppSrc, *pSrcLen);
    Span<Ntk8u> dst(*ppDst, *pDstLen);
    const bool done = decode(rleState(pState), src, dst);
    returnRest(src, ppSrc, pSrcLen);
    returnRest(dst, ppDst, pDstLen);
    return done ? ntkStsNoErr : ntkStsDstFull;
}
