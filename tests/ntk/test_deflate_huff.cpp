// Huffman coding of entries: the bits of every length and distance, pieces, destinations, errors.
#include <gtest/gtest.h>

#include "dc/deflate/huffkernels.h"
#include "deflatecalls.h"
#include "kernels.h"

namespace {

// Data, and entries for it that use every length and distances of every symbol.
std::pair<Bytes, Entries> everySymbol() {
    Bytes data = randomBytes(33000);
    Entries entries{data, std::vector<Ntk16u>(data.size())};
    const auto copy = [&](int length, int distance) {
        entries.lit.push_back(static_cast<Ntk8u>(length - 3));
        entries.dist.push_back(static_cast<Ntk16u>(distance));
        for (; length > 0; --length) {
            data.push_back(data[data.size() - static_cast<std::size_t>(distance)]);
        }
    };
    for (int length = 3; length <= 258; ++length) {
        copy(length, length * 127);
    }
    for (int distance = 1; distance <= 32768; distance += distance / 9 + 1) {
        copy(3, distance);
        copy(4, 32769 - distance);
    }
    return {data, entries};
}

TEST(DeflateHuff, EveryLengthAndDistanceSymbol) {
    const auto [data, entries] = everySymbol();
    EXPECT_EQ(inflatedByZlib(blockOf(entries), data.size()), data);
}

struct Stream {
    explicit Stream(std::size_t size) : dst(size) {}
    const GuardedBlock dst;
    Ntk32u code = 0;
    int codeLen = 0;
    int length = 0;

    NtkStatus put(const Entries& e, int from, int count, const NtkHuffCode* lit = fixedCodes.lit,
                  const NtkHuffCode* dist = fixedCodes.dist) {
        return ntksDeflateHuff_8u(e.lit.data() + from, e.dist.data() + from, count, &code, &codeLen,
                                  lit, dist, dst.data(), &length);
    }
    Bytes bytes() const { return Bytes(dst.data(), dst.data() + length); }
};

// The destination just fits the whole bytes; ones above the pending bits are ignored.
TEST(DeflateHuff, PiecesMakeTheSameBytes) {
    const Entries entries = everySymbol().second;
    Stream whole(200000);
    ASSERT_EQ(whole.put(entries, 0, entries.count()), ntkStsNoErr);
    Stream exact(static_cast<std::size_t>(whole.length));
    std::mt19937 generator(1);
    for (int at = 0; at < entries.count();) {
        const int count = std::min(static_cast<int>(generator() % 300), entries.count() - at);
        ASSERT_EQ(exact.put(entries, at, count), ntkStsNoErr);
        ASSERT_LT(exact.codeLen, 8);
        EXPECT_EQ(exact.code >> exact.codeLen, 0U);
        exact.code |= ~0U << exact.codeLen;
        at += count;
    }
    EXPECT_EQ(exact.bytes(), whole.bytes());
    EXPECT_EQ(exact.codeLen, whole.codeLen);
}

// Codes of one bit give the shortest stream, codes of 15 bits after 32 pending bits the longest.
TEST(DeflateHuff, ShortestAndLongestCodes) {
    NtkHuffCode lit[288] = {};
    NtkHuffCode dist[30] = {};
    lit[Ntk8u{'a'}] = {1, 1};
    const Entries ones{Bytes(1000, 'a'), std::vector<Ntk16u>(1000)};
    Stream small(125);
    EXPECT_EQ(small.put(ones, 0, 1000, lit, dist), ntkStsNoErr);
    EXPECT_EQ(small.bytes(), Bytes(125, 0xFF));
    lit[285] = dist[0] = {1, 1}; // length 258 has a symbol of its own
    Stream runs(25);
    EXPECT_EQ(runs.put({Bytes(100, 255), std::vector<Ntk16u>(100, 1)}, 0, 100, lit, dist),
              ntkStsNoErr);
    EXPECT_EQ(runs.bytes(), Bytes(25, 0xFF));
    lit[284] = {0x7FFF, 15};
    dist[29] = {0x7FFF, 15};
    const Entries longest{Bytes(800, 254), std::vector<Ntk16u>(800, 32768)};
    Stream large(4 + 800 * 48 / 8);
    large.code = ~0U;
    large.codeLen = 32;
    EXPECT_EQ(large.put(longest, 0, 800, lit, dist), ntkStsNoErr);
    const Bytes bytes = large.bytes();
    ASSERT_EQ(bytes.size(), 4804U);
    // 15 ones, 254 - 224 as 5 bits, 28 ones
    EXPECT_EQ(Bytes(bytes.end() - 6, bytes.end()), (Bytes{0xFF, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(DeflateHuff, Faults) {
    const Entries good{Bytes(100, 'a'), std::vector<Ntk16u>(100)};
    for (const int at : {0, 99}) { // before and among the last entries
        const struct {
            NtkStatus status;
            int lit, dist, codeLen, length, longCode;
        } cases[] = {
            {ntkStsNoErr, 'a', 32768, 32, 0, 0},     {ntkStsBadSrcData, 'a', 32769, 0, 0, 0},
            {ntkStsBadSrcData, 'a', 65535, 0, 0, 0}, {ntkStsBadValue, 'n', 0, 0, 0, 0},
            {ntkStsBadValue, 'n', 1, 0, 0, 0},       {ntkStsBadValue, 'a', 5, 0, 0, 0},
            {ntkStsBadValue, 'a', 0, 0, 0, 285},     {ntkStsBadSize, 'a', 0, 33, 0, 0},
            {ntkStsBadSize, 'a', 0, -1, 0, 0},       {ntkStsBadSize, 'a', 0, 0, -1, 0},
        };
        for (const auto& c : cases) {
            FixedCodes codes;
            codes.lit[Ntk8u{'n'}].len = codes.lit[257 + 20].len = 0; // lengths 67 to 82
            codes.dist[4].len = 0;
            codes.lit[c.longCode].len = c.longCode ? 16 : 8;
            Entries entries = good;
            entries.lit[static_cast<std::size_t>(at)] =
                static_cast<Ntk8u>(c.lit == 'n' && c.dist ? 70 : c.lit);
            entries.dist[static_cast<std::size_t>(at)] = static_cast<Ntk16u>(c.dist);
            Stream stream(600);
            stream.codeLen = c.codeLen;
            stream.length = c.length;
            EXPECT_EQ(stream.put(entries, 0, 100, codes.lit, codes.dist), c.status)
                << "case " << &c - cases << " at " << at;
            if (c.status != ntkStsNoErr) {
                EXPECT_EQ(stream.length, c.length);
                EXPECT_EQ(stream.codeLen, c.codeLen);
            }
        }
    }
}

// Every kernel writes the same bits and keeps the same pending ones, up to an entry without a code
// or one of the last ones.
TEST(DeflateHuff, KernelsAgree) {
    using namespace ntk;
    const Entries entries = everySymbol().second;
    FixedCodes longest;
    for (NtkHuffCode& code : longest.lit) {
        code.len = 15;
    }
    for (NtkHuffCode& code : longest.dist) {
        code.len = 15;
    }
    FixedCodes withoutOne;
    withoutOne.dist[7].len = 0; // distances 13 to 16
    const int none =
        static_cast<int>(std::find_if(entries.dist.begin(), entries.dist.end(),
                                      [](Ntk16u dist) { return dist >= 13 && dist <= 16; }) -
                         entries.dist.begin());
    const struct {
        const char* name;
        const FixedCodes& codes;
        int from, end; // of the entries with codes
    } cases[] = {
        {"fixed", fixedCodes, 0, entries.count()},
        {"longest", longest, 0, entries.count()},
        {"one without, first of a group", withoutOne, none - 16, none},
        {"one without, last of a group", withoutOne, none - 31, none},
        {"one without, at once", withoutOne, none, none},
    };
    for (const auto& c : cases) {
        const deflate::HuffTables tables(atAnyAddress(c.codes.lit), atAnyAddress(c.codes.dist));
        forEachKernel(deflate::putEntriesKernel, [&](deflate::PutEntries& put) {
            SCOPED_TRACE(c.name);
            const GuardedBlock dst(400000);
            deflate::BitWriter writer(dst.data(), 0, 0);
            const int count =
                put(writer, tables,
                    {entries.lit.data() + c.from, atAnyAddress(entries.dist.data() + c.from),
                     entries.count() - c.from});
            const int last = std::min(c.end, entries.count() - deflate::entriesPerStore);
            EXPECT_LE(count, last - c.from);
            EXPECT_GT(count, last - c.from - 16);
            Stream expected(400000);
            ASSERT_EQ(expected.put(entries, c.from, count, c.codes.lit, c.codes.dist), ntkStsNoErr);
            const Bytes written(static_cast<const Ntk8u*>(dst.data()), writer.end());
            EXPECT_EQ(written, expected.bytes());
            EXPECT_EQ(writer.bits(), expected.code);
            EXPECT_EQ(writer.count(), expected.codeLen);
        });
    }
}

} // namespace
