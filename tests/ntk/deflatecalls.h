// The two steps of the deflate encoder, and zlib as the reference.
#pragma once

#include <utility>

#include "fixedcodes.h"
#include "guarded.h"
#include "samples.h"
#include "zlibcalls.h"

struct Entries {
    Bytes lit;
    std::vector<Ntk16u> dist;

    int count() const { return static_cast<int>(lit.size()); }
    bool operator==(const Entries&) const = default;
};

// A sequence of match-search calls and the tables that they share.
struct MatchSearch {
    std::vector<Ntk32s> heads = std::vector<Ntk32s>(32768, -32768);
    std::vector<Ntk32s> previous = std::vector<Ntk32s>(32768, 1);
    int winSize = 32768;
    int level = 6;
    Ntk32u litFreq[286] = {};
    Ntk32u distFreq[30] = {};
    Entries entries = {};
    int srcIdx = 0;

    // One call on the source at *src, with room for `room` entries, which are appended.
    NtkStatus call(const Ntk8u** src, int* srcLen, const Ntk8u* window, int room, int flush) {
        const GuardedBlock lit(static_cast<std::size_t>(room));
        const GuardedBlock dist(2 * static_cast<std::size_t>(room));
        auto* const dists = reinterpret_cast<Ntk16u*>(dist.data());
        int left = room;
        const NtkStatus status =
            ntksDeflateLZ77_8u(src, srcLen, &srcIdx, window, winSize, heads.data(), previous.data(),
                               static_cast<int>(heads.size()), litFreq, distFreq, lit.data(), dists,
                               &left, level, flush);
        entries.lit.insert(entries.lit.end(), lit.data(), lit.data() + room - left);
        entries.dist.insert(entries.dist.end(), dists, dists + room - left);
        return status;
    }
    // All of the data in one call.
    NtkStatus searchAll(const Bytes& data) {
        const GuardedBlock block(data);
        const Ntk8u* src = block.data();
        int srcLen = block.size();
        return call(&src, &srcLen, block.data(), block.size(), ntkDeflateFinish);
    }
};

// A stream of one block with the fixed codes.
inline Bytes blockOf(const Entries& entries) {
    Bytes block(8 + 4 * entries.lit.size());
    Ntk32u code = 3;
    int codeLen = 3;
    int length = 0;
    ntksDeflateHuff_8u(entries.lit.data(), entries.dist.data(), entries.count(), &code, &codeLen,
                       fixedCodes.lit, fixedCodes.dist, block.data(), &length);
    for (codeLen += 7; codeLen > 0; codeLen -= 8, code >>= 8) {
        block[static_cast<std::size_t>(length++)] = static_cast<Ntk8u>(code);
    }
    block.resize(static_cast<std::size_t>(length));
    return block;
}

// The data that zlib decodes from a stream, of the given size; empty if it rejects the stream.
inline Bytes inflatedByZlib(const Bytes& stream, std::size_t size) {
    const Inflated result = zlibInflated(stream, size + 1);
    const bool isWhole = result.verdict == Verdict::valid && result.taken == stream.size();
    return isWhole ? result.data : Bytes{};
}
