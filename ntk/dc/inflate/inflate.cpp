// Inflater.
//
// Format (RFC 1951): blocks of three types, each after a header of 3 bits. Stored blocks hold plain
// bytes. In the others a prefix code encodes literals, the end of the block, and the lengths (3 to
// 258) of matches; after a length, a second code encodes the distance (1 to 32768) back to the
// match. The codes are the fixed ones, or are given in the block's header as a list of lengths.
//
// Method: a symbol is found by looking up the next bits in a table (codetable.h), a long code by a
// second lookup; a further table joins pairs of symbols (pairs.h). Far from the ends
// of source and destination a loop without checks decodes from a 64-bit buffer (fastloop.cpp); near
// them a careful one decodes symbol by symbol (symbols.cpp). The modes are the states of a state
// machine; each step can stop where the source or the destination ends.
//
// State between calls:
// - *pMode: the next step.
// - *pCode: bits taken from the source that are less than a symbol. The longest single symbol is a
//   distance of 28 bits, and a stored length has 32, so the decoder never keeps more than 31: a
//   length is stored apart from its distance, and whole bytes go back to the source whenever the
//   call ends for another reason than an exhausted source.
// - pending: the distance of a match, 0 if it is not yet read, or what is left of a stored block.
// - progress: in bits 0 to 15 the number of bytes of the stream's data directly before the
//   destination, at most 32768; in bits 16 to 24 what is left of a match; in bit 25 whether another
//   block follows. So 0 makes everything else in the state but the work buffer irrelevant.
//   Bits 0 to 15 rest on the caller's promise that the destination has not moved. Nothing else here
//   is trusted where it could lead outside the buffers: a match is checked against the history
//   whenever it is continued.
// - the work buffer: the header of a dynamic block as far as it is read, then the tables.
//
// Limits: the history before a destination must be contiguous.

#include "ntkdcinflate.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "../callerblock.h"
#include "stream.h"

namespace ntk::inflate {

namespace {

constexpr unsigned windowBytes = 32768;
constexpr unsigned lengthShift = 16;
constexpr unsigned lengthMask = 0x1ff;
constexpr Ntk32u moreBlocksFlag = 1U << 25;
constexpr std::uintptr_t workAlignment = 64;

WorkBuffer* workBufferOf(const NtksInflateState& state) {
    std::uintptr_t address;
    static_assert(sizeof address == sizeof state.workBuffer);
    std::memcpy(&address, state.workBuffer, sizeof address);
    return reinterpret_cast<WorkBuffer*>(address);
}

// The arguments of a call.
struct Call {
    const Ntk8u** ppSrc;
    int* pSrcLen;
    Ntk32u* pCode;
    int* pCodeLenBits;
    const Ntk8u* pHistory;
    Ntk8u** ppDst;
    int* pDstLen;
    int historyLen;
    int* pMode;
    NtksInflateState* pState;

    NtkStatus check() const;
    Output output() const;
    Stream begin() const;
    void end(const Stream& s) const;
};

NtkStatus Call::check() const {
    if (anyNull(ppSrc, pSrcLen, pCode, pCodeLenBits, ppDst, pDstLen, pMode, pState) ||
        anyNull(*ppSrc, *ppDst) || (pHistory == nullptr && historyLen != 0)) {
        return ntkStsNullPtr;
    }
    if (*pSrcLen < 0 || *pDstLen < 0 || historyLen < 0) {
        return ntkStsBadSize;
    }
    const bool needsWork = *pMode == ntkInflateDynamic || *pMode >= modeCodeCounts;
    if (*pCodeLenBits < 0 || *pCodeLenBits > 32 || *pMode < 0 || *pMode >= numModes ||
        (needsWork && workBufferOf(*pState) == nullptr)) {
        return ntkStsBadValue;
    }
    if (*pMode == ntkInflateDynamic) {
        const WorkBuffer& w = *workBufferOf(*pState);
        if (w.literalBits == 0 || w.distanceBits == 0) {
            return ntkStsBadValue;
        }
    }
    return ntkStsNoErr;
}

Output Call::output() const {
    Ntk8u* const dst = *ppDst;
    const Ntk32u written = std::min(pState->progress & 0xffff, windowBytes);
    const auto length = static_cast<std::size_t>(historyLen);
    Output out{dst, dst, dst, dst + *pDstLen, dst, 0};
    if (pHistory == nullptr) {
        out.historyBegin = dst - written;
    } else if (pHistory + length == dst) {
        out.historyBegin = pHistory;
    } else {
        out.externalHistoryEnd = pHistory + length;
        out.externalHistoryBytes = length;
    }
    return out;
}

Stream Call::begin() const {
    const auto count = static_cast<unsigned>(*pCodeLenBits);
    const Ntk32u progress = pState->progress;
    Stream s{};
    s.in = {*ppSrc, *ppSrc, *ppSrc + *pSrcLen, *pCode & ~(~Ntk64u{0} << count), count};
    s.out = output();
    s.mode = *pMode;
    s.isLastBlock = (progress & moreBlocksFlag) == 0;
    s.pendingLength = (progress >> lengthShift) & lengthMask;
    s.pendingDistance = s.pendingLength > 0 ? pState->pending : 0;
    s.storedBytes = s.mode == ntkInflateStored ? pState->pending & 0xffff : 0;
    s.work = workBufferOf(*pState);
    return s;
}

void Call::end(const Stream& s) const {
    *ppSrc = s.in.next;
    *pSrcLen = static_cast<int>(s.in.end - s.in.next);
    *pCode = static_cast<Ntk32u>(s.in.bits & ~(~Ntk64u{0} << s.in.count));
    *pCodeLenBits = static_cast<int>(s.in.count);
    *ppDst = s.out.next;
    *pDstLen = static_cast<int>(s.out.room());
    *pMode = s.mode;
    const auto written =
        static_cast<Ntk32u>(std::min<std::size_t>(s.out.contiguousHistoryBytes(), windowBytes));
    pState->pending = s.mode == ntkInflateStored ? s.storedBytes : s.pendingDistance;
    pState->progress =
        written | (s.pendingLength << lengthShift) | (s.isLastBlock ? 0 : moreBlocksFlag);
}

Outcome step(Stream& s) {
    switch (s.mode) {
    case ntkInflateBlockHeader: return readBlockHeader(s);
    case ntkInflateFixed:
        return decodeSymbols(s, {fixedLiteralTable, fixedDistanceTable, fixedPairTable});
    case ntkInflateDynamic: return decodeSymbols(s, s.work->codes());
    case ntkInflateStored: return copyStored(s);
    case modeStoredLength: return readStoredLength(s);
    case modeCodeCounts: return readCodeCounts(s);
    case modeLengthCodeLengths: return readLengthCodeLengths(s);
    default: return readCodeLengths(s);
    }
}

NtkStatus statusOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::destinationFull: return ntkStsDstFull;
    case Outcome::malformed: return ntkStsBadSrcData;
    case Outcome::noWorkBuffer: return ntkStsNullPtr;
    default: return ntkStsNoErr;
    }
}

NtkStatus decode(const Call& call) {
    Stream s = call.begin();
    Outcome outcome = Outcome::goOn;
    while (outcome == Outcome::goOn && s.mode != ntkInflateFinished) {
        outcome = step(s);
    }
    const NtkStatus status = statusOf(outcome);
    if (status >= 0) {
        if (outcome != Outcome::sourceUsedUp) {
            s.in.unreadBytes();
        }
        call.end(s);
    }
    return status;
}

} // namespace

} // namespace ntk::inflate

using namespace ntk;
using namespace ntk::inflate;

NtkStatus ntksInflateGetSize_8u(int* pSize) {
    return returnSize(static_cast<int>(sizeof(WorkBuffer) + workAlignment - 1), pSize);
}

NtkStatus ntksInflateInit_8u(NtksInflateState* pState, Ntk8u* pWorkBuffer) {
    if (anyNull(pState, pWorkBuffer)) {
        return ntkStsNullPtr;
    }
    const auto address = reinterpret_cast<std::uintptr_t>(pWorkBuffer);
    const std::uintptr_t aligned = (address + workAlignment - 1) / workAlignment * workAlignment;
    *pState = {};
    std::memcpy(pState->workBuffer, &aligned, sizeof aligned);
    std::memset(reinterpret_cast<void*>(aligned), 0, sizeof(WorkBuffer));
    return ntkStsNoErr;
}

NtkStatus ntksInflate_8u(const Ntk8u** ppSrc, int* pSrcLen, Ntk32u* pCode, int* pCodeLenBits,
                         const Ntk8u* pHistory, Ntk8u** ppDst, int* pDstLen, int historyLen,
                         int* pMode, NtksInflateState* pState) {
    const Call call{ppSrc, pSrcLen, pCode,      pCodeLenBits, pHistory,
                    ppDst, pDstLen, historyLen, pMode,        pState};
    const NtkStatus status = call.check();
    return status == ntkStsNoErr ? decode(call) : status;
}
