// The end of the calls that stop at a full destination.
#pragma once

#include <cstddef>

#include "arguments.h"

namespace ntk::lz4 {

// What is encoded, and the bytes that matches may refer to before it.
struct Window {
    const Ntk8u* src;
    std::size_t srcLen;
    const Ntk8u* dictEnd; // one behind the last byte of the dictionary; null without one
    std::size_t dictLen;
};

inline Window windowOf(const DictArguments& d, const Ntk8u* src, int srcLen) {
    return {src, static_cast<std::size_t>(srcLen), d.dictLen > 0 ? d.dict + d.dictLen : nullptr,
            static_cast<std::size_t>(d.dictLen)};
}

struct Filled {
    std::size_t blockBytes; // length of the block in the destination
    std::size_t srcBytes;   // how much of the source it holds
};

// Makes a block that fills a destination from what an encoder left there when it gave up. Where a
// block does not fit, liblz4 fails, but until then it wrote whole sequences. Those are kept, each
// proved against the source first, so that the destination may hold anything. The block then ends
// with as many literals as still fit. A capacity of 0 has no room for a block and is not allowed.
Filled fillDestination(const Window& window, Ntk8u* dst, std::size_t capacity);

// Status and lengths of a call for which the encoder made a block of the given length or, with 0,
// failed.
NtkStatus finishSafe(int length, const Window& window, int* pSrcLen, Ntk8u* pDst, int* pDstLen);

} // namespace ntk::lz4
