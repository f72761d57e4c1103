// Makes a block that fills a destination from what an encoder left there when it gave up.
#pragma once

#include <cstddef>

#include "ntkdefs.h"

namespace ntk::lz4 {

// What is encoded, and the bytes that matches may refer to before it.
struct Window {
    const Ntk8u* src;
    std::size_t srcLen;
    const Ntk8u* dictEnd;  // one behind the last byte of the dictionary; null without one
    std::size_t dictLen;
};

struct Filled {
    std::size_t blockBytes;  // length of the block in the destination
    std::size_t srcBytes;    // how much of the source it holds
};

// liblz4's fast encoder cannot stop at a full destination and keep a dictionary; it just gives up.
// Until then it wrote whole sequences, which are kept: each is proved against the source first, so
// the destination may hold anything. The block then ends with as many literals as still fit.
// A capacity of 0 has no room for a block and is not allowed.
Filled fillDestination(const Window& window, Ntk8u* dst, std::size_t capacity);

}  // namespace ntk::lz4
