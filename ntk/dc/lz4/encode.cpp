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
// Underneath: liblz4 where there can be no dictionary, else dictencoder.h, which need not trust the
// caller's table. Its blocks are as long as liblz4's within 2.5%.
//
// State: the caller's hash table holds liblz4's stream within a call, or, from call to call,
// positions in the caller's sequence and the one up to which the table has seen the data. It holds
// no pointers.
//
// Invariants:
// - A table that does not end at the position where the call begins is rebuilt from the dictionary.
//   One that does may hold anything all the same: dictencoder.h checks every position that it uses.
// - After a call that fails or stops early the table has seen more data than were encoded: it is
//   marked as unusable.
//
// Limits: sources of up to 0x7e000000 bytes, positions up to INT_MAX, dictionaries of which the
// last 65536 bytes count.

#include "ntkdc.h"

#include "arguments.h"
#include "dictencoder.h"
#include "filldestination.h"
#include "ntks.h"
#include "tables.h"

namespace ntk::lz4 {

namespace {

// Whether the table holds positions of the data before the source, and of no other. An empty table
// has a position too: that of the start.
bool continuesAt(const HashTable& table, const DictArguments& d) {
    return table.position == d.srcIdx && (d.srcIdx > 0 || d.dictLen == 0);
}

// Returns the length of the block, 0 if it does not fit.
int encodeWithDictionary(HashTable& table, const DictArguments& d, const Ntk8u* src, int srcLen,
                         Ntk8u* dst, int capacity) {
    if (!continuesAt(table, d)) {
        loadDictionary(table.positions, d);
    }
    const int length = encodeAfterDictionary(table.positions, d, src, srcLen, dst, capacity);
    table.position = length > 0 ? d.srcIdx + srcLen : noPosition;
    return length;
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
