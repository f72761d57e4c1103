// Sequences of blocks with one table, which two encoders share.
#include <gtest/gtest.h>

#include <climits>

#include "dc/lz4/tables.h"
#include "guarded.h"
#include "lz4calls.h"

namespace {

// The block of a part of the data after a dictionary that ends there; checks that it decodes.
Bytes blockOf(const GuardedBlock& data, int at, int length, Lz4Tables& tables, int dictLen) {
    const Ntk8u* const src = data.data() + at;
    Bytes block(static_cast<std::size_t>(LZ4_compressBound(length)));
    Lz4Call call{src,           at,     length, block.data(), static_cast<int>(block.size()),
                 src - dictLen, dictLen};
    EXPECT_EQ(lz4Dict.encode(call, tables), ntkStsNoErr);
    block.resize(static_cast<std::size_t>(call.dstLen));
    EXPECT_EQ(decodedByLiblz4(block.data(), call.dstLen, length, src - dictLen, dictLen),
              Bytes(src, src + length))
        << at;
    return block;
}

Bytes blockOfLiblz4(LZ4_stream_t& stream, const Ntk8u* src, int length) {
    Bytes block(static_cast<std::size_t>(LZ4_compressBound(length)));
    block.resize(static_cast<std::size_t>(LZ4_compress_fast_continue(
        &stream, reinterpret_cast<const char*>(src), reinterpret_cast<char*>(block.data()), length,
        static_cast<int>(block.size()), 1)));
    return block;
}

TEST(Lz4Sequence, OfTextHasTheBlocksOfLiblz4) {
    const GuardedBlock data(textBytes(300000));
    for (const int step : {3000, 8192, 32768, 100000}) {
        for (const bool dependent : {true, false}) {
            SCOPED_TRACE(testing::Message() << step << ' ' << dependent);
            Lz4Tables tables;
            LZ4_stream_t stream;
            LZ4_initStream(&stream, sizeof stream);
            for (int at = 0; at + step <= data.size(); at += step) {
                if (!dependent) {
                    LZ4_initStream(&stream, sizeof stream);
                }
                ASSERT_TRUE(blockOf(data, at, step, tables, dependent ? at : 0) ==
                            blockOfLiblz4(stream, data.data() + at, step))
                    << at;
            }
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
    int at = 0;
    for (const Part& part : parts) {
        const Bytes block = blockOf(data, at, part.length, tables, at);
        EXPECT_EQ(static_cast<int>(block.size()) < part.length / 4, part.isSeen)
            << part.name << ": " << block.size();
        at += part.length;
    }
}

// The worst case: a table that fits the call as to its position, but has anything else in it, here
// indices that all lie one distance before the source.
class FittingTable {
public:
    static constexpr int begin = 70000;
    static constexpr int length = 20000;

    // Encodes after a dictionary in place and elsewhere, and decodes. A share of 1 makes the own
    // encoder take the source, most others liblz4.
    void check(Ntk32u index, Ntk32u distance, Ntk32u share, int dictLen) {
        SCOPED_TRACE(testing::Message() << index << ' ' << distance << ' ' << share);
        for (const GuardedBlock* dict : {&m_data, &m_copy}) {
            const Ntk8u* const dictBegin = dict->data() + begin - dictLen;
            Lz4Call call{m_data.data() + begin, begin,     length, m_dst.data(),
                         m_dst.size(),          dictBegin, dictLen};
            m_table.positions.fill(index - distance);
            m_table.position = begin;
            m_table.index = index;
            m_table.share = share;
            ASSERT_EQ(lz4Dict.encode(call, m_tables), ntkStsNoErr);
            ASSERT_EQ(decodedByLiblz4(m_dst.data(), call.dstLen, length, dictBegin, dictLen),
                      m_expected);
        }
    }

private:
    GuardedBlock m_data{textBytes(begin + length)};
    GuardedBlock m_copy{Bytes(m_data.data(), m_data.data() + begin)};
    GuardedBlock m_dst{static_cast<std::size_t>(LZ4_compressBound(length))};
    Bytes m_expected{m_data.data() + begin, m_data.data() + begin + length};
    Lz4Tables m_tables;
    ntk::lz4::HashTable& m_table = ntk::stateIn<ntk::lz4::HashTable>(m_tables.hash());
};

TEST(Lz4Sequence, TrustsNothingInATableWhosePositionFits) {
    constexpr int begin = FittingTable::begin;
    constexpr int length = FittingTable::length;
    constexpr Ntk32u last = INT_MAX - length; // for a source whose end still has an index
    FittingTable table;
    for (const Ntk32u index : {Ntk32u{0}, Ntk32u{3}, Ntk32u{4}, Ntk32u{length}, Ntk32u{begin}, last,
                               last + 1, INT_MAX + 1U, 0U - 10}) {
        for (const Ntk32u distance :
             {Ntk32u{begin} + 1, Ntk32u{begin}, Ntk32u{4}, Ntk32u{3}, Ntk32u{0}, 0U - 1, 0U - 4000,
              0U - begin, 0U - 800000, 0x80000000U, 0x80000032U}) {
            for (const Ntk32u share : {0U, 1U, 100U, ~0U}) {
                for (const int dictLen : {length, begin}) {
                    table.check(index, distance, share, dictLen);
                }
            }
        }
    }
}

// What is there would match now and then.
TEST(Lz4Sequence, LooksForNothingBeforeTheDictionary) {
    FittingTable table;
    for (Ntk32u distance = FittingTable::length + 1; distance < 20100; ++distance) {
        for (const Ntk32u share : {1U, 100U}) {
            table.check(FittingTable::begin, distance, share, FittingTable::length);
        }
    }
}

} // namespace
