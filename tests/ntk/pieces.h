// Streaming calls over sources and destinations that are split into pieces.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "guarded.h"
#include "samples.h"

// The lengths in bytes of the pieces, at most.
struct Pieces {
    std::size_t src;
    std::size_t dst;
};

inline constexpr std::size_t whole = 1 << 22;

// Calls call(&src, &srcLen, &dst, &dstLen) until the source is taken, and appends what it writes.
// Each piece of the source is in memory of its own, gone after the call, and bytes outside the
// pieces fault. Returns the status of the last call; stops at the first error.
template <class Call>
NtkStatus runInPieces(const Bytes& source, Pieces pieces, Bytes& out, Call call) {
    const GuardedBlock dst(pieces.dst);
    std::size_t at = 0;
    NtkStatus status = ntkStsNoErr;
    do {
        const std::size_t count = std::min(pieces.src, source.size() - at);
        const GuardedBlock src(Bytes(source.data() + at, source.data() + at + count));
        Ntk8u* pSrc = src.data();
        Ntk8u* pDst = dst.data();
        int srcLen = src.size();
        int dstLen = dst.size();
        status = call(&pSrc, &srcLen, &pDst, &dstLen);
        EXPECT_EQ(pSrc + srcLen, src.data() + src.size());
        EXPECT_EQ(pDst + dstLen, dst.data() + dst.size());
        EXPECT_TRUE(status != ntkStsNoErr || srcLen == 0);
        out.insert(out.end(), dst.data(), pDst);
        at += count - static_cast<std::size_t>(srcLen);
    } while (status >= 0 && (at < source.size() || status == ntkStsDstFull));
    return status;
}
