// The bzip2 Huffman coder by itself. That bzip2 accepts its blocks is tested with the whole chain.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <queue>

#include "bz2huffcalls.h"
#include "dc/bz2huff/codelengths.h"
#include "dc/bz2huff/decodetable.h"
#include "guarded.h"

namespace {

using namespace ntk::bz2huff;

// Symbols below the end of block, each about `spread` times as frequent as the next one.
Symbols madeBlock(int size, int alphabet, double spread, unsigned seed = 1) {
    std::mt19937 generator(seed);
    Symbols block;
    while (static_cast<int>(block.size()) + 1 < size) {
        const double draw = (generator() + 1.0) / 4294967297.0;
        const double symbol = spread > 1 ? -std::log(draw) / std::log(spread) : draw * alphabet;
        block.push_back(static_cast<Ntk16u>(std::min<double>(symbol, alphabet - 2)));
    }
    block.push_back(static_cast<Ntk16u>(alphabet - 1));
    return block;
}

const Symbols ordinary = madeBlock(3333, 200, 1.05);

TEST(Bz2Huff, BlocksComeBackAndHaveTheirNumberOfTables) {
    const struct {
        int size;
        unsigned tables;
    } sizes[] = {{1, 2},    {49, 2},   {51, 2},   {199, 2},  {200, 3},    {599, 3},   {600, 4},
                 {1199, 4}, {1200, 5}, {2399, 5}, {2400, 6}, {100000, 6}, {900000, 6}};
    for (const auto& [size, tables] : sizes) {
        for (const auto& [alphabet, spread] :
             {std::pair{3, 1.0}, {258, 1.0}, {258, 1.1}, {60, 2.0}}) {
            const Symbols block = madeBlock(size, alphabet, spread);
            // As many bits of the caller's own before the block as possible.
            Bytes coded = encodedBlock(block, alphabet, {0xdeadbeef, 32});
            EXPECT_EQ(coded[0], 0xde);
            EXPECT_EQ(coded[3], 0xef);
            EXPECT_EQ(coded[4] >> 5, tables) << size;
            // More source and room than the block needs.
            coded.resize(coded.size() + 200);
            HuffDecoder decoder(alphabet);
            decoder.bits = {static_cast<Ntk32u>(coded[4]) << 24, 8};
            Ntk8u* src = coded.data() + 5;
            int srcLen = static_cast<int>(coded.size()) - 5;
            Symbols decoded;
            ASSERT_EQ(decoder.unpack(src, srcLen), ntkStsNoErr);
            EXPECT_EQ(decoder.decode(src, srcLen, decoded, size + 100), ntkStsNoErr);
            EXPECT_TRUE(decoded == block) << size << " of " << alphabet;
            EXPECT_EQ(srcLen, 200);
            EXPECT_LT(decoder.bits.count, 8);
        }
    }
}

// Twice: after its end the block begins again, without its context.
TEST(Bz2Huff, PiecesOfAnySizeMakeTheSameBlock) {
    const Bytes whole = encodedBlock(ordinary, 200);
    std::mt19937 generator(3);
    for (const int most : {1, 3, 60, 700}) {
        const auto piece = [&](std::ptrdiff_t left) {
            return static_cast<int>(std::min<std::ptrdiff_t>(generator() % (most + 1U), left));
        };
        HuffEncoder encoder(ordinary, 200);
        HuffDecoder decoder(200);
        Bytes context;
        Bytes copy = whole;
        Ntk8u* codes = copy.data();
        auto codesLen = static_cast<int>(whole.size());
        ASSERT_EQ(encoder.pack(context), ntkStsNoErr);
        ASSERT_EQ(decoder.unpack(codes, codesLen), ntkStsNoErr);
        const PendingBits afterPack = encoder.bits;
        const PendingBits afterUnpack = decoder.bits;
        for (int time = 0; time < 2; ++time) {
            Bytes coded = context;
            encoder.bits = afterPack;
            for (auto at = ordinary.begin(); at != ordinary.end();) {
                Symbols some;
                some.reserve(1); // no null
                some.assign(at, at + piece(ordinary.end() - at));
                at += static_cast<std::ptrdiff_t>(some.size());
                ASSERT_GE(encoder.encode(some, coded, piece(most)), ntkStsNoErr);
                at -= static_cast<std::ptrdiff_t>(some.size()); // what was not taken
            }
            flushBits(encoder.bits, coded);
            EXPECT_TRUE(coded == whole) << most;

            Ntk8u* src = codes;
            decoder.bits = afterUnpack;
            Symbols decoded;
            decoded.reserve(1);
            NtkStatus status = ntkStsDstFull;
            while (status > ntkStsNoErr) {
                int some = piece(codes + codesLen - src);
                status = decoder.decode(src, some, decoded, piece(most));
            }
            EXPECT_EQ(status, ntkStsNoErr);
            EXPECT_TRUE(decoded == ordinary) << most;
        }
    }
}

// Against the sum of the inner nodes of a tree built with a heap: the cost of any optimal code.
TEST(Bz2Huff, CodeLengthsAreOptimalUntilTheyAreTooLong) {
    std::mt19937 generator(5);
    for (int alphabet = 1; alphabet <= 258; ++alphabet) {
        int frequencies[258];
        std::priority_queue<long, std::vector<long>, std::greater<>> heap;
        for (int s = 0; s < alphabet; ++s) {
            frequencies[s] = static_cast<int>(generator() % 1000);
            heap.push(std::max(frequencies[s], 1));
        }
        long best = alphabet == 1 ? std::max(frequencies[0], 1) : 0;
        while (heap.size() > 1) {
            long sum = heap.top();
            heap.pop();
            sum += heap.top();
            heap.pop();
            heap.push(sum);
            best += sum;
        }
        Ntk8u lengths[258];
        makeCodeLengths(frequencies, alphabet, lengths);
        long cost = 0;
        for (int s = 0; s < alphabet; ++s) {
            cost += static_cast<long>(std::max(frequencies[s], 1)) * lengths[s];
        }
        EXPECT_EQ(cost, best) << alphabet;
    }
    int fibonacci[27] = {1, 1};
    for (int s = 2; s < 27; ++s) {
        fibonacci[s] = fibonacci[s - 1] + fibonacci[s - 2];
    }
    Ntk8u lengths[27];
    makeCodeLengths(fibonacci, 27, lengths); // 26 bits without a limit
    unsigned patterns = 0;
    for (const Ntk8u length : lengths) {
        ASSERT_TRUE(length >= 1 && length <= 17);
        patterns += 1U << (17 - length);
    }
    EXPECT_EQ(patterns, 1U << 17);
}

class BitText {
public:
    BitText& put(unsigned value, int bits) {
        for (int bit = bits - 1; bit >= 0; --bit) {
            if (m_used++ % 8 == 0) {
                bytes.push_back(0);
            }
            bytes.back() |= static_cast<Ntk8u>((value >> bit & 1) << (7 - (m_used - 1) % 8));
        }
        return *this;
    }
    // Of an alphabet of three: the lengths of two equal tables.
    BitText& twoTables(std::initializer_list<int> lengths) {
        for (int table = 0; table < 2; ++table) {
            int current = *lengths.begin();
            put(static_cast<unsigned>(current), 5);
            for (const int length : lengths) {
                for (; current != length; current += current < length ? 1 : -1) {
                    put(current < length ? 2 : 3, 2);
                }
                put(0, 1);
            }
        }
        return *this;
    }
    Bytes bytes;

private:
    int m_used = 0;
};

// Number of tables, number of selectors, one selector, and more.
BitText context(unsigned tables = 2, unsigned selectors = 1) {
    return BitText().put(tables, 3).put(selectors, 15).put(0, 1);
}

// A context, the symbols that follow it, and the last status.
TEST(Bz2Huff, TellsMalformedBlocks) {
    const auto endless = [] {
        BitText bits = BitText().put(2, 3).put(32767, 15);
        for (int i = 0; i < 32767; ++i) {
            bits.put(0, 1);
        }
        return bits.twoTables({1, 2, 2}).put(3, 2);
    }();
    const NtkStatus bad = ntkStsBadSrcData, good = ntkStsNoErr;
    const struct {
        const char* what;
        BitText bits;
        NtkStatus context = ntkStsBadSrcData;
        NtkStatus status = ntkStsBadSrcData;
        Symbols symbols = {};
    } cases[] = {
        {"no table", context(0)},
        {"one table", context(1).twoTables({1, 2, 2})},
        {"seven tables", context(7)},
        {"no selector", context(2, 0).twoTables({1, 2, 2})},
        {"selector 2 of 2", BitText().put(2, 3).put(1, 15).put(6, 3).twoTables({1, 2, 2})},
        {"endless selector", BitText().put(6, 3).put(1, 15).put(~0U, 32).put(~0U, 32)},
        {"length 0", context().twoTables({0, 2, 2})},
        {"down to 0", context().twoTables({1, 0, 1})},
        {"length 21", context().twoTables({21, 1, 2})},
        {"up to 21", context().twoTables({1, 21, 2})},
        {"over-subscribed", context().twoTables({1, 1, 20})},
        {"end", context().twoTables({1, 2, 2}).put(0b01011, 5), good, good, {0, 1, 2}},
        {"unused", context().twoTables({2, 2, 2}).put(0b000111, 6), good, bad},
        {"long unused", context().twoTables({1, 20, 20}).put(~0U, 24), good, bad},
        {"long code", context().twoTables({1, 20, 20}).put(0x80001, 20), good, good, {2}},
        {"51 codes", context().twoTables({1, 2, 2}).put(0, 30).put(0, 21), good, bad},
        {"selectors beyond the longest block are skipped", endless, good, good, {2}},
    };
    for (const auto& c : cases) {
        Bytes padded = c.bits.bytes;
        padded.resize(padded.size() + (c.context < 0 ? 16 : 0)); // none fails for lack of source
        const GuardedBlock bytes(padded);
        HuffDecoder decoder(3);
        Ntk8u* src = bytes.data();
        int srcLen = bytes.size();
        ASSERT_EQ(decoder.unpack(src, srcLen), c.context) << c.what;
        EXPECT_EQ(src == bytes.data(), c.context < 0) << c.what;
        Symbols out;
        EXPECT_EQ(decoder.decode(src, srcLen, out, 100), c.status) << c.what;
        EXPECT_EQ(out, c.symbols) << c.what;
    }
}

TEST(Bz2Huff, ACutAnywhereEndsTheSourceEarly) {
    const Bytes whole = encodedBlock(ordinary, 200);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        GuardedBlock first(Bytes(whole.begin(), whole.begin() + static_cast<long>(cut)));
        GuardedBlock second(Bytes(whole.begin() + static_cast<long>(cut), whole.end()));
        HuffDecoder decoder(200);
        Ntk8u* src = first.data();
        int srcLen = first.size();
        if (decoder.unpack(src, srcLen) != ntkStsNoErr) {
            ASSERT_LT(cut, 1000U);
            continue;
        }
        Symbols out;
        ASSERT_EQ(decoder.decode(src, srcLen, out, 4000), ntkStsSrcEnd) << cut;
        ASSERT_EQ(srcLen, 0);
        src = second.data();
        srcLen = second.size();
        ASSERT_EQ(decoder.decode(src, srcLen, out, 4000), ntkStsNoErr) << cut;
        ASSERT_TRUE(out == ordinary) << cut;
    }
}

TEST(Bz2Huff, MutationsNeverLeaveTheBuffers) {
    const Bytes whole = encodedBlock(ordinary, 200);
    std::mt19937 generator(11);
    HuffDecoder decoder(200);
    GuardedBlock bytes(whole.size());
    GuardedBlock dst(2 * 3000);
    int decodedBlocks = 0;
    for (int round = 0; round < 4000; ++round) {
        std::copy(whole.begin(), whole.end(), bytes.data());
        const unsigned from = round % 2 == 0 ? 0 : 1; // also with an intact context
        for (unsigned i = 0; i < 1 + generator() % 8; ++i) {
            const auto at = from * 500 + generator() % (bytes.size() - from * 500U);
            bytes.data()[at] = static_cast<Ntk8u>(generator());
        }
        Ntk8u* src = bytes.data();
        int srcLen = bytes.size();
        decoder.bits = {};
        if (decoder.unpack(src, srcLen) == ntkStsNoErr) {
            int length = 3000;
            const NtkStatus status = ntksDecodeHuff_BZ2_8u16u(
                &decoder.bits.code, &decoder.bits.count, &src, &srcLen,
                reinterpret_cast<Ntk16u*>(dst.data()), &length, decoder.state.data());
            ++decodedBlocks;
            ASSERT_TRUE(status >= ntkStsNoErr || status == ntkStsBadSrcData) << status;
            ASSERT_TRUE(srcLen >= 0 && length <= 3000 && decoder.bits.count <= 32);
        }
    }
    EXPECT_GT(decodedBlocks, 1000);
}

TEST(Bz2Huff, SymbolsAndArgumentsOutOfRange) {
    Symbols odd = {0, 1, 7, 65535, 2};
    HuffEncoder encoder(odd, 3);
    EXPECT_EQ(encoder.initStatus, ntkStsNoErr); // symbols outside the alphabet are ignored
    Bytes out;
    EXPECT_EQ(encoder.pack(out), ntkStsNoErr);
    for (const Ntk16u symbol : {3, 65535}) {
        Symbols some = {0, symbol};
        EXPECT_EQ(encoder.encode(some, out, 100), ntkStsBadSrcData) << symbol;
        EXPECT_EQ(some.size(), 2U);
    }
    Symbols longer(51, 0);
    EXPECT_EQ(encoder.encode(longer, out, 100), ntkStsBadSrcData);

    for (const int alphabet : {0, 259}) {
        EXPECT_EQ(HuffEncoder({1}, alphabet).initStatus, ntkStsBadValue);
        EXPECT_EQ(ntksDecodeHuffInit_BZ2_8u16u(alphabet, encoder.state.data()), ntkStsBadValue);
    }
    GuardedBlock none(0);
    for (const int count : {-1, 33}) {
        Ntk32u code = 0;
        int bits = count;
        int length = 0;
        Ntk8u* src = none.data();
        EXPECT_EQ(
            ntksPackHuffContext_BZ2_16u8u(&code, &bits, none.data(), &length, encoder.state.data()),
            ntkStsBadValue);
        EXPECT_EQ(ntksUnpackHuffContext_BZ2_8u16u(&code, &bits, &src, &length,
                                                  HuffDecoder(3).state.data()),
                  ntkStsBadValue);
    }
    // A context fits exactly or not at all, whatever the bits of its last byte.
    for (int alphabet = 200; alphabet < 230; ++alphabet) {
        HuffEncoder fresh(ordinary, alphabet);
        Bytes context;
        fresh.pack(context);
        for (const int missing : {1, 0}) {
            GuardedBlock dst(context.size() - static_cast<std::size_t>(missing));
            PendingBits bits;
            int length = dst.size();
            EXPECT_EQ(ntksPackHuffContext_BZ2_16u8u(&bits.code, &bits.count, dst.data(), &length,
                                                    fresh.state.data()),
                      missing ? ntkStsDstTooSmall : ntkStsNoErr);
        }
    }
}

} // namespace
