// LZ4 block encoders without and with a dictionary, on liblz4's fast encoder.
//
// Format (lz4_Block_format.md of the LZ4 project, Y. Collet): a block is a row of sequences. Each
// has a token with two lengths of 4 bits, more length bytes where one is 15, literals, and a match:
// a distance back of 1 to 65535 bytes and a length of 4 or more. The last sequence ends after its
// literals. The last 5 bytes of a block are literals and its last match begins at least 12 bytes
// before its end. A block holds neither its length nor that of its data.
//
// Method: greedy. Each position is looked up in a hash table of positions by its next 4 bytes; the
// candidate found is compared, and taken when it matches. Matches may reach back into a dictionary:
// data that the decoder already has.
//
// State: the caller's hash table holds liblz4's stream and our note of the position in the caller's
// sequence up to which it was fed. The stream's own index grows along with it, but starts and
// restarts as liblz4 sees fit.
//
// Invariants:
// - The pointers in the stream are dead after a call. A call that goes on with the table sets every
//   one of them from its own arguments first.
// - An index in the table is used by liblz4 without a check against the end of the data. Hence
//   before a table is used again all 4096 must lie at least 4 bytes (a match) below the stream's
//   index; a table that fails, or ends at another position than the call begins, is made anew from
//   the dictionary. The check costs about as much as clearing the table, which every call without
//   a dictionary does.
// - Wrong indices that pass are harmless: liblz4 compares the bytes they lead to, and what lies
//   before the dictionary is out of reach by its length.
// - A call that fails or stops early has fed the stream more than it encoded: the table is
//   disowned.
//
// Limits: sources of up to 0x7e000000 bytes, positions up to INT_MAX, dictionaries of which the
// last 65536 bytes count.

#include "ntkdc.h"

#include <algorithm>

#include "arguments.h"
#include "filldestination.h"
#include "indexscan.h"
#include "ntks.h"
#include "tables.h"

namespace ntk::lz4 {

namespace {

bool continuesAt(const HashTable& table, int srcIdx) {
    constexpr Ntk32u minMatch = 4;
    const LZ4_stream_t_internal& stream = table.stream.internal_donotuse;
    return table.position == srcIdx && knowsFields() && stream.currentOffset >= minMatch &&
           stream.currentOffset <= INT_MAX &&
           noneAbove.get()(stream.hashTable, LZ4_HASH_SIZE_U32, stream.currentOffset - minMatch);
}

// Makes the table ready for data at srcIdx that follow the dictionary.
void attachDictionary(HashTable& table, const DictArguments& d) {
    if (d.dictLen == 0) {
        LZ4_initStream(&table.stream, sizeof table.stream);
    } else if (!continuesAt(table, d.srcIdx)) {
        LZ4_loadDict(&table.stream, chars(d.dict), d.dictLen);
    } else {
        LZ4_stream_t_internal& stream = table.stream.internal_donotuse;
        const int length = std::min(d.dictLen, windowBytes);
        stream.dictionary = d.dict + (d.dictLen - length);
        stream.dictSize = static_cast<Ntk32u>(length);
        stream.dictCtx = nullptr;
    }
}

// Length of the block, 0 when it does not fit.
int encodeWithDictionary(HashTable& table, const DictArguments& d, const Ntk8u* src, int srcLen,
                         Ntk8u* dst, int capacity) {
    attachDictionary(table, d);
    const int length =
        LZ4_compress_fast_continue(&table.stream, chars(src), chars(dst), srcLen, capacity, 1);
    table.position = length > 0 ? d.srcIdx + srcLen : noPosition;
    return std::max(length, 0);
}

int encodeAlone(HashTable& table, const Ntk8u* src, int srcLen, Ntk8u* dst, int capacity) {
    table.position = noPosition;
    return LZ4_compress_fast_extState(&table.stream, chars(src), chars(dst), srcLen, capacity, 1);
}

// Ends a call that encodes the whole source or fails.
NtkStatus finishWhole(int length, int* pDstLen) {
    if (length == 0) {
        return ntkStsDstTooSmall;
    }
    *pDstLen = length;
    return ntkStsNoErr;
}

NtkStatus makeEmpty(Ntk8u* pHashTable, int srcLen) {
    if (pHashTable == nullptr) {
        return ntkStsNullPtr;
    }
    return srcLen < 0 ? ntkStsBadSize : ntksZero_8u(pHashTable, stateBytes<HashTable>());
}

} // namespace

} // namespace ntk::lz4

using namespace ntk;
using namespace ntk::lz4;

NtkStatus ntksEncodeLZ4HashTableGetSize_8u(int* pSize) {
    if (pSize == nullptr) {
        return ntkStsNullPtr;
    }
    *pSize = stateBytes<HashTable>();
    return ntkStsNoErr;
}

NtkStatus ntksEncodeLZ4HashTableInit_8u(Ntk8u* pHashTable, int srcLen) {
    return makeEmpty(pHashTable, srcLen);
}

NtkStatus ntksEncodeLZ4DictHashTableInit_8u(Ntk8u* pHashTable, int srcLen) {
    return makeEmpty(pHashTable, srcLen);
}

NtkStatus ntksEncodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen,
                           Ntk8u* pHashTable) {
    if (anyNull(pSrc, pDst, pDstLen, pHashTable)) {
        return ntkStsNullPtr;
    }
    const NtkStatus status = checkLengths(srcLen, *pDstLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    if (srcLen == 0) {
        return encodeEmpty(pDst, pDstLen);
    }
    auto& table = stateIn<HashTable>(pHashTable);
    return finishWhole(encodeAlone(table, pSrc, srcLen, pDst, *pDstLen), pDstLen);
}

NtkStatus ntksEncodeLZ4Safe_8u(const Ntk8u* pSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                               Ntk8u* pHashTable) {
    if (anyNull(pSrc, pSrcLen, pDst, pDstLen, pHashTable)) {
        return ntkStsNullPtr;
    }
    const NtkStatus status = checkLengths(*pSrcLen, *pDstLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    if (*pSrcLen == 0) {
        return encodeEmpty(pDst, pDstLen);
    }
    auto& table = stateIn<HashTable>(pHashTable);
    const int length = encodeAlone(table, pSrc, *pSrcLen, pDst, *pDstLen);
    return finishSafe(length, windowOf({0, nullptr, 0}, pSrc, *pSrcLen), pSrcLen, pDst, pDstLen);
}

NtkStatus ntksEncodeLZ4Dict_8u(const Ntk8u* pSrc, int srcIdx, int srcLen, Ntk8u* pDst, int* pDstLen,
                               Ntk8u* pHashTable, const Ntk8u* pDict, int dictLen) {
    if (anyNull(pSrc, pDst, pDstLen, pHashTable) || (pDict == nullptr && dictLen != 0)) {
        return ntkStsNullPtr;
    }
    const DictArguments d{srcIdx, pDict, dictLen};
    const NtkStatus status = checkDictCall(d, srcLen, *pDstLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    if (srcLen == 0) {
        return encodeEmpty(pDst, pDstLen);
    }
    auto& table = stateIn<HashTable>(pHashTable);
    return finishWhole(encodeWithDictionary(table, d, pSrc, srcLen, pDst, *pDstLen), pDstLen);
}

NtkStatus ntksEncodeLZ4DictSafe_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst,
                                   int* pDstLen, Ntk8u* pHashTable, const Ntk8u* pDict,
                                   int dictLen) {
    if (anyNull(pSrc, pSrcLen, pDst, pDstLen, pHashTable) || (pDict == nullptr && dictLen != 0)) {
        return ntkStsNullPtr;
    }
    const DictArguments d{srcIdx, pDict, dictLen};
    const NtkStatus status = checkDictCall(d, *pSrcLen, *pDstLen);
    if (status != ntkStsNoErr) {
        return status;
    }
    if (*pSrcLen == 0) {
        return encodeEmpty(pDst, pDstLen);
    }
    auto& table = stateIn<HashTable>(pHashTable);
    const int length = encodeWithDictionary(table, d, pSrc, *pSrcLen, pDst, *pDstLen);
    return finishSafe(length, windowOf(d, pSrc, *pSrcLen), pSrcLen, pDst, pDstLen);
}
