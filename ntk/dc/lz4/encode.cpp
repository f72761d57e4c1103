// LZ4 block encoders without and with a dictionary.
//
// Format (lz4_Block_format.md of the LZ4 project, Y. Collet): a block is a series of sequences.
// Each has a token with two lengths of 4 bits, further length bytes if one is 15, literals, and a
// match: a distance of 1 to 65535 bytes and a length of 4 or more. The last sequence ends after its
// literals. The last 5 bytes of a block are literals and its last match begins at least 12 bytes
// before its end. A block contains neither its length nor that of its data.
//
// Method: greedy. Each position is looked up in a hash table of positions by its next 4 or 5 bytes;
// the candidate found is compared, and taken if it matches. Matches may refer to a dictionary: data
// that the decoder already has.
//
// Underneath: liblz4 where there can be no dictionary, else sequence.h. A table that a call without
// a dictionary has used is of no use to one with a dictionary.
//
// Limits: sources of up to 0x7e000000 bytes, positions up to INT_MAX, dictionaries of which the
// last 65536 bytes count.

#include "ntkdc.h"

#include "arguments.h"
#include "filldestination.h"
#include "ntks.h"
#include "sequence.h"
#include "tables.h"

namespace ntk::lz4 {

namespace {

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
    return returnSize(stateBytes<HashTable>(), pSize);
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
    return finishWhole(encodeNext(table, d, pSrc, srcLen, pDst, *pDstLen), pDstLen);
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
    const int length = encodeNext(table, d, pSrc, *pSrcLen, pDst, *pDstLen);
    return finishSafe(length, windowOf(d, pSrc, *pSrcLen), pSrcLen, pDst, pDstLen);
}
