// The match search: zlib restores the data from its entries, whatever the tables hold and however
// the data are split.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <numeric>

#include "catalog.h"
#include "deflatecalls.h"

namespace {

MatchSearch searched(const Bytes& data, int level) {
    MatchSearch search;
    search.level = level;
    EXPECT_EQ(search.searchAll(data), ntkStsNoErr);
    return search;
}

Bytes standIn(const corpus::FileKind& kind) {
    const std::string text = kind.make().substr(0, 102400);
    return Bytes(text.begin(), text.end());
}

TEST(DeflateLZ77, StandInsAreAboutAsSmallAsByZlib) {
    std::size_t total[10] = {SIZE_MAX};
    for (const corpus::FileKind& kind : corpus::catalog()) {
        const Bytes data = standIn(kind);
        for (int level = 1; level <= 9; ++level) {
            const Bytes block = blockOf(searched(data, level).entries);
            const std::size_t zlibSize = deflated(data, {level, Z_FIXED}).size();
            ASSERT_EQ(inflatedByZlib(block, data.size()), data) << kind.name << level;
            EXPECT_LE(static_cast<double>(block.size()), 1.03 * static_cast<double>(zlibSize))
                << kind.name << " level " << level;
            total[level] += block.size();
        }
    }
    for (int level = 2; level <= 9; ++level) {
        EXPECT_LT(total[level], total[level - 1]) << "level " << level;
    }
}

// Symbol frequencies, from the smallest length and distance of each symbol (RFC 1951, 3.2.5).
std::pair<std::array<Ntk32u, 286>, std::array<Ntk32u, 30>> recounted(const Entries& entries) {
    constexpr int lengths[] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                               31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
    constexpr int distances[] = {1,    2,    3,    4,    5,    7,    9,    13,    17,    25,
                                 33,   49,   65,   97,   129,  193,  257,  385,   513,   769,
                                 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
    const auto symbolOf = [](const auto& firsts, int value) {
        return static_cast<std::size_t>(
            std::upper_bound(std::begin(firsts), std::end(firsts), value) - firsts - 1);
    };
    std::pair<std::array<Ntk32u, 286>, std::array<Ntk32u, 30>> counts{};
    for (std::size_t i = 0; i < entries.lit.size(); ++i) {
        const int dist = entries.dist[i];
        if (dist == 0) {
            ++counts.first[entries.lit[i]];
        } else {
            ++counts.first[257 + symbolOf(lengths, entries.lit[i] + 3)];
            ++counts.second[symbolOf(distances, dist)];
        }
    }
    return counts;
}

TEST(DeflateLZ77, SamplesAndTheirFrequencies) {
    for (const Sample& sample : samples()) {
        for (const int level : {1, 3, 6, 9}) {
            SCOPED_TRACE(sample.name + " level " + std::to_string(level));
            const MatchSearch search = searched(sample.bytes, level);
            ASSERT_EQ(inflatedByZlib(blockOf(search.entries), sample.bytes.size()), sample.bytes);
            const auto [litFreq, distFreq] = recounted(search.entries);
            EXPECT_TRUE(std::equal(litFreq.begin(), litFreq.end(), search.litFreq));
            EXPECT_TRUE(std::equal(distFreq.begin(), distFreq.end(), search.distFreq));
        }
    }
}

// Matches that are worth their bits with the fixed codes; a far one of 3 bytes, with 25, is not.
TEST(DeflateLZ77, FindsWhatPays) {
    const struct {
        const char* name;
        int copied, distance;
        bool isFound;
        int winSize;
    } cases[] = {
        {"3 near", 3, 600, true, 32768},     {"3 far", 3, 30000, false, 32768},
        {"4 far", 4, 30000, true, 32768},    {"farthest", 9, 32768, true, 32768},
        {"too far", 9, 32769, false, 32768}, {"in a small window", 9, 1024, true, 1024},
        {"beyond it", 9, 1025, false, 1024},
    };
    for (const auto& c : cases) {
        // Four distinct bytes, a run, a copy of the start, four other bytes.
        Bytes data(static_cast<std::size_t>(c.distance));
        std::iota(data.begin(), data.begin() + 4, Ntk8u{200});
        const Bytes copy(data.begin(), data.begin() + c.copied);
        data.insert(data.end(), copy.begin(), copy.end());
        data.insert(data.end(), {210, 211, 212, 213});
        for (const int level : {1, 9}) {
            MatchSearch search;
            search.level = level;
            search.winSize = c.winSize;
            ASSERT_EQ(search.searchAll(data), ntkStsNoErr);
            ASSERT_EQ(inflatedByZlib(blockOf(search.entries), data.size()), data);
            const auto& dist = search.entries.dist;
            const bool isFound = std::find(dist.begin(), dist.end(), c.distance) != dist.end();
            EXPECT_EQ(isFound, c.isFound) << c.name << " level " << level;
        }
    }
}

// The longest match is the oldest one, with shorter ones on the way along the chain.
TEST(DeflateLZ77, TriesEveryCandidate) {
    for (std::size_t candidates = 1; candidates <= 8; ++candidates) {
        Bytes text(4 + 2 * candidates);
        std::iota(text.begin(), text.end(), Ntk8u{'a'});
        Bytes data;
        for (std::size_t i = 0; i < candidates; ++i) {
            data.insert(data.end(), text.begin(), text.end() - static_cast<int>(2 * i));
            data.push_back(static_cast<Ntk8u>(200 + i));
        }
        const auto distance = data.size();
        data.insert(data.end(), text.begin(), text.end());
        for (const int level : {4, 5, 6, 9}) {
            const Entries entries = searched(data, level).entries;
            EXPECT_EQ(entries.lit.back() + 3U, text.size()) << candidates << " level " << level;
            EXPECT_EQ(entries.dist.back(), distance) << candidates << " level " << level;
        }
    }
}

// Source and destination in pieces; before each piece, the window moves to another place.
Entries searchInPieces(const Bytes& data, int level, int piece, int room) {
    MatchSearch search;
    search.level = level;
    const int size = static_cast<int>(data.size());
    for (int fed = 0; fed < size;) {
        fed = std::min(fed + piece, size);
        const int from = std::max(search.srcIdx - search.winSize, 0);
        const GuardedBlock buffer(Bytes(data.begin() + from, data.begin() + fed));
        const Ntk8u* src = buffer.data() + search.srcIdx - from;
        int srcLen = fed - search.srcIdx;
        const int flush = fed < size ? ntkDeflateNoFlush : ntkDeflateFinish;
        while (search.call(&src, &srcLen, buffer.data(), room, flush) == ntkStsDstFull) {
            EXPECT_EQ(src + srcLen, buffer.data() + buffer.size());
        }
        EXPECT_LE(srcLen, fed < size ? 262 : 0);
        EXPECT_EQ(search.srcIdx, fed - srcLen);
    }
    return search.entries;
}

TEST(DeflateLZ77, CallsCutAnywhereMakeTheSameData) {
    const Bytes data = textBytes(150000);
    for (const int level : {1, 6, 9}) {
        const auto whole = blockOf(searched(data, level).entries).size();
        for (const auto& [piece, room] : {std::pair{40000, 100000}, {1000, 7}, {5000, 1}}) {
            const Bytes block = blockOf(searchInPieces(data, level, piece, room));
            ASSERT_EQ(inflatedByZlib(block, data.size()), data) << level << " " << piece;
            EXPECT_LE(block.size(), whole + whole / 100) << level << " " << piece;
        }
    }
}

// A call without a flush waits for the rest of a match. A flush takes all bytes; the matches of the
// next call may begin in the last of them, which could not be inserted before.
TEST(DeflateLZ77, TwoCallsMakeTheEntriesOfOne) {
    const Bytes run(1000, 'r');
    const Bytes text = {'x', 'y', 'z', 'a', 'b', 'c', 'd', 'a', 'b', 'c', 'd', 'a', 'b', 'c', 'd'};
    const struct {
        const Bytes& data;
        int firstLen, flush;
        Entries entries;
    } cases[] = {
        {run, 300, ntkDeflateNoFlush, {{'r', 255, 255, 255, 225 - 3}, {0, 1, 1, 1, 1}}},
        {text,
         5,
         ntkDeflateSyncFlush,
         {{'x', 'y', 'z', 'a', 'b', 'c', 'd', 8 - 3}, {0, 0, 0, 0, 0, 0, 0, 4}}},
    };
    for (const auto& c : cases) {
        MatchSearch search;
        const GuardedBlock block(c.data);
        const Ntk8u* src = block.data();
        int srcLen = c.firstLen;
        EXPECT_EQ(search.call(&src, &srcLen, block.data(), 1000, c.flush), ntkStsNoErr);
        EXPECT_EQ(srcLen == 0, c.flush != ntkDeflateNoFlush);
        srcLen += block.size() - c.firstLen;
        EXPECT_EQ(search.call(&src, &srcLen, block.data(), 1000, ntkDeflateFinish), ntkStsNoErr);
        EXPECT_EQ(search.entries, c.entries);
    }
}

TEST(DeflateLZ77, WhatOldDataLeftInTheChainsChangesNothing) {
    const Bytes data = textBytes(100000, 2);
    MatchSearch search;
    EXPECT_EQ(search.searchAll(textBytes(100000)), ntkStsNoErr);
    search.heads.assign(search.heads.size(), -32768);
    search.entries = {};
    search.srcIdx = 0;
    EXPECT_EQ(search.searchAll(data), ntkStsNoErr);
    EXPECT_EQ(search.entries, searched(data, search.level).entries);
}

TEST(DeflateLZ77, AnyTablesAreSafe) {
    const Bytes data = textBytes(40000);
    const int extremes[] = {INT_MIN, INT_MIN + 1, -32768, -1, 0, 40000, 40001, INT_MAX};
    for (int round = 0; round < 9; ++round) {
        MatchSearch search;
        search.level = round % 9 + 1;
        std::mt19937 generator(static_cast<unsigned>(round));
        for (std::vector<Ntk32s>* table : {&search.heads, &search.previous}) {
            for (Ntk32s& entry : *table) {
                entry = round % 3 == 0   ? extremes[generator() % std::size(extremes)]
                        : round % 3 == 1 ? static_cast<int>(generator() % 40000)
                                         : static_cast<int>(generator());
            }
        }
        search.srcIdx = round % 2 == 0 ? 0 : INT_MAX - 40000;
        ASSERT_EQ(search.searchAll(data), ntkStsNoErr);
        ASSERT_EQ(inflatedByZlib(blockOf(search.entries), data.size()), data) << round;
    }
}

TEST(DeflateLZ77, RejectsBadLevelsFlushesAndWindows) {
    Bytes data(16);
    const struct {
        int level, flush, srcAt;
        NtkStatus status;
    } cases[] = {{1, 0, 8, ntkStsNoErr},     {0, 0, 8, ntkStsBadValue}, {10, 0, 8, ntkStsBadValue},
                 {1, -1, 8, ntkStsBadValue}, {1, 4, 8, ntkStsBadValue}, {1, 0, 0, ntkStsBadValue}};
    for (const auto& c : cases) {
        MatchSearch search;
        search.level = c.level;
        const Ntk8u* src = data.data() + c.srcAt;
        int srcLen = 8;
        EXPECT_EQ(search.call(&src, &srcLen, data.data() + 1, 8, c.flush), c.status)
            << c.level << " " << c.flush << " " << c.srcAt;
    }
}

} // namespace
