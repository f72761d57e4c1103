// Common to the LZ4 calls: the checks of their arguments and the empty source.
#pragma once

#include <climits>

#include <lz4.h>

#include "../callerblock.h"
#include "ntkdefs.h"

namespace ntk::lz4 {

// liblz4 takes pointers to char.
inline const char* chars(const Ntk8u* bytes) {
    return reinterpret_cast<const char*>(bytes);
}
inline char* chars(Ntk8u* bytes) {
    return reinterpret_cast<char*>(bytes);
}

// For calls without a dictionary.
constexpr NtkStatus checkLengths(int srcLen, int capacity) {
    return srcLen < 0 || srcLen > LZ4_MAX_INPUT_SIZE || capacity < 0 ? ntkStsBadSize : ntkStsNoErr;
}

// The position and dictionary arguments of a call. With a length of 0 there is no dictionary,
// whatever the pointer.
struct DictArguments {
    int srcIdx;
    const Ntk8u* dict;
    int dictLen;
};

constexpr NtkStatus checkDictCall(const DictArguments& d, int srcLen, int capacity) {
    const NtkStatus status = checkLengths(srcLen, capacity);
    if (status != ntkStsNoErr) {
        return status;
    }
    return d.srcIdx < 0 || d.dictLen < 0 || d.srcIdx > INT_MAX - srcLen ? ntkStsBadSize
                                                                        : ntkStsNoErr;
}

// The block of an empty source: a token without literals.
inline NtkStatus encodeEmpty(Ntk8u* pDst, int* pDstLen) {
    if (*pDstLen < 1) {
        return ntkStsDstTooSmall;
    }
    *pDst = 0;
    *pDstLen = 1;
    return ntkStsNoErr;
}

// The largest distance of a match, rounded up as liblz4 does.
inline constexpr int windowBytes = 65536;

} // namespace ntk::lz4
