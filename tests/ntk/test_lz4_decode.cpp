// The LZ4 decoder on valid, malformed and damaged blocks, and on destinations that are too small.
#include <gtest/gtest.h>

#include <random>

#include "guarded.h"
#include "lz4calls.h"

namespace {

struct Case {
    const char* name;
    Bytes block;
    int capacity;
    NtkStatus expected;
    std::string decoded;
};

const Case cases[] = {
    {"no block", {}, 100, ntkStsBadSrcData, ""},
    {"empty data", {0x00}, 0, ntkStsNoErr, ""},
    {"literals only", {0x30, 'a', 'b', 'c'}, 3, ntkStsNoErr, "abc"},
    {"literals, no room for the last", {0x30, 'a', 'b', 'c'}, 2, ntkStsDstTooSmall, ""},
    {"match and literals",
     {0x11, 'a', 1, 0, 0x70, 't', 'u', 'v', 'w', 'x', 'y', 'z'},
     13,
     ntkStsNoErr,
     "aaaaaatuvwxyz"},
    {"the same, one byte short",
     {0x11, 'a', 1, 0, 0x70, 't', 'u', 'v', 'w', 'x', 'y', 'z'},
     12,
     ntkStsDstTooSmall,
     ""},
    {"long match",
     {0x1f, 'a', 1, 0, 255, 1, 0x50, 'v', 'w', 'x', 'y', 'z'},
     281,
     ntkStsNoErr,
     std::string(276, 'a') + "vwxyz"},
    {"literals truncated", {0x50, 'a', 'b'}, 100, ntkStsBadSrcData, ""},
    {"length truncated", {0xf0, 255, 255}, 1000, ntkStsBadSrcData, ""},
    {"distance truncated", {0x10, 'a', 1}, 100, ntkStsBadSrcData, ""},
    {"distance before the data", {0x10, 'a', 2, 0, 0x50, 1, 2, 3, 4, 5}, 8, ntkStsBadSrcData, ""},
    {"distance of 0", {0x10, 'a', 0, 0, 0x50, 1, 2, 3, 4, 5}, 8, ntkStsBadSrcData, ""},
    {"match length truncated", {0x1f, 'a', 1, 0, 255}, 1000, ntkStsBadSrcData, ""},
    {"no literals at the end", {0x11, 'a', 1, 0}, 100, ntkStsBadSrcData, ""},
};

TEST(Lz4Decode, TellsValidShortAndMalformedBlocksApart) {
    for (const Case& c : cases) {
        const GuardedBlock block(c.block);
        const GuardedBlock dst(static_cast<std::size_t>(c.capacity));
        int length = c.capacity;
        EXPECT_EQ(ntksDecodeLZ4_8u(block.data(), block.size(), dst.data(), &length), c.expected)
            << c.name;
        if (c.expected == ntkStsNoErr) {
            EXPECT_EQ(std::string(dst.data(), dst.data() + length), c.decoded) << c.name;
        } else {
            EXPECT_EQ(length, c.capacity) << c.name;
        }
    }
}

// Guards around both buffers; whatever the damage, a block is decoded or rejected.
TEST(Lz4Decode, StaysWithinItsBuffersOnDamagedBlocks) {
    Lz4Tables tables;
    const Bytes bytes = textBytes(2000);
    Bytes block(3000);
    Lz4Call call{bytes.data(), 0, 2000, block.data(), 3000};
    ASSERT_EQ(lz4Encoders[0].encode(call, tables), ntkStsNoErr);
    block.resize(static_cast<std::size_t>(call.dstLen));

    const GuardedBlock src(block.size());
    const GuardedBlock dst(std::size_t{2000});
    std::mt19937 generator(3);
    int rejected = 0;
    for (int round = 0; round < 3000; ++round) {
        std::copy(block.begin(), block.end(), src.data());
        for (int damage = 0; damage <= round % 4; ++damage) {
            src.data()[generator() % block.size()] = static_cast<Ntk8u>(generator());
        }
        const int cut = round % 3 == 0 ? static_cast<int>(generator() % block.size()) : 0;
        int length = dst.size();
        const NtkStatus status =
            ntksDecodeLZ4_8u(src.data() + cut, src.size() - cut, dst.data(), &length);
        ASSERT_TRUE(status == ntkStsNoErr || status == ntkStsBadSrcData ||
                    status == ntkStsDstTooSmall);
        rejected += status == ntkStsNoErr ? 0 : 1;
    }
    EXPECT_GT(rejected, 1000);
}

} // namespace
