// Completes the calls that stop at a full destination.
#pragma once

#include <cstddef>

#include "arguments.h"

namespace ntk::lz4 {

// The source, and the dictionary that matches may refer to.
struct Window {
    const Ntk8u* src;
    std::size_t srcLen;
    const Ntk8u* dictEnd; // end of the dictionary; null without one
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

// Completes a block that fills the destination from what an encoder left there when it failed: if a
// block does not fit, liblz4 gives up, but has written whole sequences by then. Those are kept,
// each verified against the source first, so that the destination may hold anything. The block then
// ends with as many literals as fit. The capacity must not be 0, which has no room for a block.
Filled fillDestination(const Window& window, Ntk8u* dst, std::size_t capacity);

// Sets status and lengths of a call whose encoder returned a block of this length, or 0 for
// failure.
NtkStatus finishSafe(int length, const Window& window, int* pSrcLen, Ntk8u* pDst, int* pDstLen);

} // namespace ntk::lz4
