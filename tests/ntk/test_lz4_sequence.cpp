// Sequences of blocks with one table, which two encoders share.
#include <gtest/gtest.h>

#include <climits>

#include "dc/lz4/tables.h"
#include "guarded.h"
#include "lz4calls.h"

namespace {

// The length of the block of a part of the data, with what is before it as dictionary; checks that
// it decodes.
int blockLength(const GuardedBlock& data, int at, int length, Lz4Tables& tables, Bytes& block) {
    const Ntk8u* const src = data.data() + at;
    block.resize(static_cast<std::size_t>(LZ4_compressBound(length)));
    Lz4Call call{src, at, length, block.data(), static_cast<int>(block.size()), data.data(), at};
    EXPECT_EQ(lz4Dict.encode(call, tables), ntkStsNoErr);
    block.resize(static_cast<std::size_t>(call.dstLen));
    EXPECT_EQ(decodedByLiblz4(block.data(), call.dstLen, length, data.data(), at),
              Bytes(src, src + length))
        << at;
    return call.dstLen;
}

TEST(Lz4Sequence, OfTextHasTheBlocksOfLiblz4) {
    const GuardedBlock data(textBytes(300000));
    for (const int step : {3000, 8192, 32768, 100000}) {
        SCOPED_TRACE(step);
        Lz4Tables tables;
        LZ4_stream_t stream;
        LZ4_initStream(&stream, sizeof stream);
        for (int at = 0; at + step <= data.size(); at += step) {
            Bytes block;
            Bytes expected(static_cast<std::size_t>(LZ4_compressBound(step)));
            expected.resize(static_cast<std::size_t>(
                LZ4_compress_fast_continue(&stream, reinterpret_cast<const char*>(data.data() + at),
                                           reinterpret_cast<char*>(expected.data()), step,
                                           static_cast<int>(expected.size()), 1)));
            blockLength(data, at, step, tables, block);
            ASSERT_TRUE(block == expected) << at;
        }
    }
}

// How short a block becomes decides which encoder takes the next one.
TEST(Lz4Sequence, EitherEncoderFindsWhatTheOtherHasSeen) {
    struct Part {
        const char* name;
        unsigned seed; // two parts with one seed are equal as far as both go
        int length;
        bool isSeen;
    };
    const Part parts[] = {
        {"liblz4, as nothing is known", 1, 20000, false},
        {"own, after noise", 1, 20000, true},
        {"own, after a short block", 2, 20000, false},
        {"liblz4, as it is not long", 2, 9000, true},
        {"own, as it is very short", 3, 500, false},
        {"own again", 3, 400, true},
    };
    Bytes all;
    for (const Part& part : parts) {
        const Bytes bytes = randomBytes(static_cast<std::size_t>(part.length), part.seed);
        all.insert(all.end(), bytes.begin(), bytes.end());
    }
    const GuardedBlock data(all);
    Lz4Tables tables;
    Bytes block;
    int at = 0;
    for (const Part& part : parts) {
        const int length = blockLength(data, at, part.length, tables, block);
        EXPECT_EQ(length < part.length / 4, part.isSeen) << part.name << ": " << length;
        at += part.length;
    }
}

// The worst case: a table that fits the call as to its position, but has anything else in it. Both
// encoders are asked for: a share of 1 makes the own one take the source, most others liblz4.
TEST(Lz4Sequence, TrustsNothingInATableWhosePositionFits) {
    using namespace ntk;
    using namespace ntk::lz4;
    constexpr int half = 20000;
    const GuardedBlock data(textBytes(2 * half));
    const GuardedBlock copy(Bytes(data.data(), data.data() + half));
    const GuardedBlock dst(static_cast<std::size_t>(LZ4_compressBound(half)));
    const Bytes expected(data.data() + half, data.data() + 2 * half);
    Lz4Tables tables;
    auto& table = stateIn<HashTable>(tables.hash());
    for (const Ntk32u index : {0U, 3U, 4U, Ntk32u{half}, 70000U, INT_MAX - Ntk32u{half},
                               INT_MAX - Ntk32u{half} + 1, INT_MAX + 1U, ~0U}) {
        for (const Ntk32u distance : {Ntk32u{half} + 1, Ntk32u{half}, 4U, 3U, 0U, -1U, -4000U,
                                      0U - half, 0U - 3 * half, 0x80000000U}) {
            for (const Ntk32u share : {0U, 1U, 100U, 256U, ~0U}) {
                for (const GuardedBlock& dict : {std::cref(data), std::cref(copy)}) {
                    table.positions.fill(index - distance);
                    table.position = half;
                    table.index = index;
                    table.share = share;
                    Lz4Call call{data.data() + half, half,        half, dst.data(),
                                 dst.size(),         dict.data(), half};
                    ASSERT_EQ(lz4Dict.encode(call, tables), ntkStsNoErr);
                    ASSERT_TRUE(decodedByLiblz4(dst.data(), call.dstLen, half, copy.data(), half) ==
                                expected)
                        << index << ' ' << distance << ' ' << share;
                }
            }
        }
    }
}

} // namespace
