// Run-length coding, the first stage of the bzip2 format: encoder.
//
// Format: runs of 1 to 3 equal bytes are kept as they are. Of a run of 4 to 255, four bytes are
// kept, followed by a count byte that says how many more there were, 0 to 251. A longer run is
// split into several. The format has no published standard; it is that of the bzip2 program by
// Julian Seward. Its purpose was to keep long repetitions away from the sorting step; this stage
// makes little difference to the size, but is part of every stream.
//
// Method: most data have few such runs, so the encoder looks for places where four equal bytes
// begin, 16 at a time, and copies everything before. A run is counted to its end, or to 255, and
// written as a whole.
//
// State: the run that was read last and is not yet written (the source may continue it), and which
// byte values were written. Invariants:
// - the pending run is the longest run of its byte at the end of what was read, or one split at
// 255:
//   no part of it has been written as a literal. A vector step therefore ends before the last three
//   bytes of the source; only bytes that are known to be followed by another value, or by a run
//   with a count, are copied.
// - a run is written whole or not at all, so a full destination leaves no run half written.
//
// Limits: the in-use table covers what was written, so it is complete only after a flush.

#include "ntkdcbz2.h"

#include <algorithm>

#include "spans.h"
#include "rle.h"

namespace ntk::bz2 {

namespace {

int writtenLength(int runLength) {
    return runLength < leastRun ? runLength : leastRun + 1;
}

bool writePending(RleState& s, Span<Ntk8u>& dst) {
    const int length = s.pendingLength;
    if (length == 0) {
        return true;
    }
    if (dst.left() < static_cast<std::size_t>(writtenLength(length))) {
        return false;
    }
    for (int i = 0; i < std::min(length, leastRun); i++) {
        *dst.p++ = s.pendingByte;
    }
    s.inUse[s.pendingByte] = 1;
    if (length >= leastRun) {
        const auto count = static_cast<Ntk8u>(length - leastRun);
        *dst.p++ = count;
        s.inUse[count] = 1;
    }
    s.pendingLength = 0;
    return true;
}

// The number of bytes from p on that equal `byte`, at most `most`.
std::size_t equalBytes(const Ntk8u* p, std::size_t most, Ntk8u byte) {
    const __m128i wanted = _mm_set1_epi8(static_cast<char>(byte));
    std::size_t n = 0;
    for (; n + stepBytes <= most; n += stepBytes) {
        const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(load16(p + n), wanted));
        if (equal != 0xffff) {
            return n + static_cast<std::size_t>(__builtin_ctz(~static_cast<unsigned>(equal)));
        }
    }
    while (n < most && p[n] == byte) {
        n++;
    }
    return n;
}

// Extends the pending run from the source, up to the longest run.
void continuePending(RleState& s, Span<Ntk8u>& src) {
    const std::size_t room = static_cast<std::size_t>(longestRun) - s.pendingLength;
    const std::size_t more = equalBytes(src.p, std::min(room, src.left()), s.pendingByte);
    s.pendingLength = static_cast<Ntk8u>(s.pendingLength + more);
    src.p += more;
}

void markInUse(RleState& s, const Ntk8u* p, std::size_t length) {
    for (std::size_t i = 0; i < length; i++) {
        s.inUse[p[i]] = 1;
    }
}

// Copies what comes before the next run of four, as far as vector steps may go.
void copyLiterals(RleState& s, Span<Ntk8u>& src, Span<Ntk8u>& dst) {
    while (src.left() >= stepReach && dst.left() >= stepBytes) {
        const unsigned runs = fourEqual(src.p);
        copy16(src.p, dst.p);
        if (runs != 0) {
            const auto before = static_cast<std::size_t>(__builtin_ctz(runs));
            markInUse(s, src.p, before);
            src.p += before;
            dst.p += before;
            return;
        }
        markInUse(s, src.p, stepBytes);
        src.p += stepBytes;
        dst.p += stepBytes;
    }
}

// False if the destination is full.
bool encode(RleState& s, Span<Ntk8u>& src, Span<Ntk8u>& dst) {
    while (!src.empty()) {
        if (s.pendingLength != 0) {
            continuePending(s, src);
            if (src.empty()) {
                break;
            }
            if (!writePending(s, dst)) {
                return false;
            }
        }
        copyLiterals(s, src, dst);
        s.pendingByte = *src.p++; // a literal step leaves at least three bytes
        s.pendingLength = 1;
    }
    return true;
}

} // namespace

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksRLEGetSize_BZ2_8u(int* pSize) {
    return returnSize(sizeof(RleState), pSize);
}

NtkStatus ntksEncodeRLEInit_BZ2_8u(Ntk8u* pState) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    rleState(pState) = RleState{};
    return ntkStsNoErr;
}

NtkStatus ntksEncodeRLE_BZ2_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                               Ntk8u* pState) {
    if (anyNull(ppSrc, pSrcLen, pDst, pDstLen, pState) || *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    Span<Ntk8u> src(*ppSrc, *pSrcLen);
    Span<Ntk8u> dst(pDst, *pDstLen);
    const bool done = encode(rleState(pState), src, dst);
    returnRest(src, ppSrc, pSrcLen);
    *pDstLen = static_cast<int>(dst.p - pDst);
    return done ? ntkStsNoErr : ntkStsDstFull;
}

NtkStatus ntksEncodeRLEFlush_BZ2_8u(Ntk8u* pDst, int* pDstLen, Ntk8u* pState) {
    if (anyNull(pDst, pDstLen, pState)) {
        return ntkStsNullPtr;
    }
    Span<Ntk8u> dst(pDst, leastRun + 1);
    writePending(rleState(pState), dst);
    *pDstLen = static_cast<int>(dst.p - pDst);
    return ntkStsNoErr;
}

NtkStatus ntksRLEGetInUseTable_8u(Ntk8u inUse[256], const Ntk8u* pState) {
    if (anyNull(inUse, pState)) {
        return ntkStsNullPtr;
    }
    std::memcpy(inUse, pState + offsetof(RleState, inUse), sizeof RleState::inUse);
    return ntkStsNoErr;
}
