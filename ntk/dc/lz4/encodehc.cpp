// LZ4 block encoder with high compression, on liblz4's high-compression encoder.
//
// Format, dictionaries and positions: as in encode.cpp. Method: every position is inserted into a
// hash table and linked to the earlier positions with the same hash; the chain is searched for the
// longest match, the further the higher the level. Levels from 10 on use optimal parsing (dynamic
// programming over 4 KiB at a time).
//
// State: liblz4's stream in the block of the hash table, and in the block of the chain table the
// position up to which the stream has seen the data, in the caller's sequence and as liblz4's
// index.
//
// Invariants, in addition to those of encode.cpp:
// - Pointers and limits in the stream are set from the arguments before a stream is reused: it is
//   then in the state of a stream that has seen exactly the dictionary.
// - All entries of the hash table must be below the end index. The links of the chains only lead to
//   lower indices, by at most 65535, and the lowest index in use is kept at 65536 or more, so that
//   no link leads below 0.
//
// A full destination is handled as in encode.cpp. (liblz4's own way of stopping there does not fill
// the last bytes.)

#include "ntkdc.h"

#include <algorithm>

#include "arguments.h"
#include "filldestination.h"
#include "indexscan.h"
#include "ntks.h"
#include "tables.h"

namespace ntk::lz4 {

namespace {

// liblz4 starts its indices here.
constexpr Ntk32u firstIndex = 65536;

struct HcTables {
    LZ4_streamHC_t& stream;
    HcRecord& record;
};

HcTables tablesIn(Ntk8u** blocks) {
    return {stateIn<HcState>(blocks[0]).stream, stateIn<HcRecord>(blocks[1])};
}

bool continuesAt(const HcTables& t, int srcIdx) {
    return t.record.position == srcIdx && knowsFields() && t.record.endIndex > firstIndex &&
           t.record.endIndex <= INT_MAX &&
           noneAbove.get()(t.stream.internal_donotuse.hashTable, LZ4HC_HASHTABLESIZE,
                           t.record.endIndex - 1);
}

void continueAfter(HcTables& t, const DictArguments& d, int level) {
    LZ4HC_CCtx_internal& stream = t.stream.internal_donotuse;
    const Ntk32u endIndex = t.record.endIndex;
    const auto dictLen = static_cast<Ntk32u>(std::min(d.dictLen, windowBytes));
    const Ntk32u length = std::min(dictLen, endIndex - firstIndex);
    stream.end = d.dict + d.dictLen;
    stream.prefixStart = stream.end - length;
    stream.dictStart = stream.prefixStart;
    stream.dictLimit = endIndex - length;
    stream.lowLimit = stream.dictLimit;
    stream.nextToUpdate = std::clamp(stream.nextToUpdate, stream.dictLimit, endIndex);
    stream.compressionLevel = static_cast<short>(level);
    stream.favorDecSpeed = 0;
    stream.dirty = 0;
    stream.dictCtx = nullptr;
}

void attachDictionary(HcTables& t, const DictArguments& d, int level) {
    if (d.dictLen > 0 && continuesAt(t, d.srcIdx)) {
        continueAfter(t, d, level);
        return;
    }
    LZ4_initStreamHC(&t.stream, sizeof t.stream);
    LZ4_resetStreamHC_fast(&t.stream, level);
    if (d.dictLen > 0) {
        LZ4_loadDictHC(&t.stream, chars(d.dict), d.dictLen);
    }
}

void noteEnd(HcTables& t, Ntk64s position) {
    const LZ4HC_CCtx_internal& stream = t.stream.internal_donotuse;
    t.record.position = position;
    t.record.endIndex =
        knowsFields() ? stream.dictLimit + static_cast<Ntk32u>(stream.end - stream.prefixStart) : 0;
}

// Returns the length of the block, 0 if it does not fit.
int encodeHc(HcTables& t, const DictArguments& d, int level, const Ntk8u* src, int srcLen,
             Ntk8u* dst, int capacity) {
    attachDictionary(t, d, level);
    t.record.position = noPosition;
    const int length =
        LZ4_compress_HC_continue(&t.stream, chars(src), chars(dst), srcLen, capacity);
    if (length <= 0) {
        return 0;
    }
    noteEnd(t, static_cast<Ntk64s>(d.srcIdx) + srcLen);
    return length;
}

} // namespace

} // namespace ntk::lz4

using namespace ntk;
using namespace ntk::lz4;

NtkStatus ntksEncodeLZ4HCHashTableGetSize_8u(int* pHashTableSize, int* pChainTableSize) {
    if (anyNull(pHashTableSize, pChainTableSize)) {
        return ntkStsNullPtr;
    }
    *pHashTableSize = stateBytes<HcState>();
    *pChainTableSize = stateBytes<HcRecord>();
    return ntkStsNoErr;
}

NtkStatus ntksEncodeLZ4HCHashTableInit_8u(Ntk8u** ppHashTables) {
    if (ppHashTables == nullptr || anyNull(ppHashTables[0], ppHashTables[1])) {
        return ntkStsNullPtr;
    }
    ntksZero_8u(ppHashTables[0], stateBytes<HcState>());
    return ntksZero_8u(ppHashTables[1], stateBytes<HcRecord>());
}

NtkStatus ntksEncodeLZ4HC_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                             Ntk8u** ppHashTables, const Ntk8u* pDict, int dictLen, int level) {
    if (anyNull(pSrc, pSrcLen, pDst, pDstLen, ppHashTables) ||
        anyNull(ppHashTables[0], ppHashTables[1]) || (pDict == nullptr && dictLen != 0)) {
        return ntkStsNullPtr;
    }
    const DictArguments d{srcIdx, pDict, dictLen};
    const NtkStatus status = checkDictCall(d, *pSrcLen, *pDstLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    if (level < 0 || level > LZ4HC_CLEVEL_MAX) {
        return ntkStsBadValue;
    }
    if (*pSrcLen == 0) {
        return encodeEmpty(pDst, pDstLen);
    }
    if (*pDstLen == 0) {
        return ntkStsDstTooSmall;
    }
    HcTables tables = tablesIn(ppHashTables);
    const int length = encodeHc(tables, d, level == 0 ? LZ4HC_CLEVEL_DEFAULT : level, pSrc,
                                *pSrcLen, pDst, *pDstLen);
    return finishSafe(length, windowOf(d, pSrc, *pSrcLen), pSrcLen, pDst, pDstLen);
}
