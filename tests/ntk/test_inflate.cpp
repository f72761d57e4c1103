// The inflater on valid streams: all parameters of zlib's encoder, whole and in pieces, and all
// places of the history.
#include <gtest/gtest.h>

#include <bit>
#include <optional>

#include "dc/inflate/alphabets.h"
#include "dc/inflate/pairs.h"
#include "guarded.h"
#include "inflatecalls.h"
#include "kernels.h"

namespace {

using namespace ntk::inflate;

const ZlibOptions allOptions[] = {
    {0, Z_DEFAULT_STRATEGY, 8},
    {1, Z_DEFAULT_STRATEGY, 8},
    {6, Z_DEFAULT_STRATEGY, 8},
    {9, Z_DEFAULT_STRATEGY, 9},
    {6, Z_DEFAULT_STRATEGY, 1},
    {6, Z_FILTERED, 8},
    {6, Z_HUFFMAN_ONLY, 8},
    {6, Z_RLE, 8},
    {9, Z_FIXED, 8},
};

// Matches at every short distance and of every length, separated by arbitrary bytes.
Bytes repetitiveBytes(std::size_t size, unsigned seed) {
    std::mt19937 generator(seed);
    Bytes bytes = randomBytes(64, seed);
    while (bytes.size() < size) {
        const std::size_t distance = 1 + generator() % (generator() % 4 == 0 ? bytes.size() : 40);
        for (unsigned n = 3 + generator() % 256; n > 0; --n) {
            bytes.push_back(bytes[bytes.size() - std::min(distance, bytes.size())]);
        }
        bytes.push_back(static_cast<Ntk8u>(generator()));
    }
    bytes.resize(size);
    return bytes;
}

// Bytes each half as frequent as the one before, which gives codes of 15 bits, and rare far
// matches.
Bytes skewedBytes(std::size_t size) {
    std::mt19937 generator(5);
    Bytes bytes(size);
    for (Ntk8u& b : bytes) {
        b = static_cast<Ntk8u>(std::countl_zero(static_cast<Ntk32u>(generator())) * 7);
    }
    return bytes;
}

Bytes withTrailer(Bytes stream) {
    stream.insert(stream.end(), 40, 0xa5);
    return stream;
}

void expectDecodingOfAllSamples() {
    std::vector<Sample> all = samples();
    all.push_back({"repetitive", repetitiveBytes(200000, 2)});
    all.push_back({"skewed", skewedBytes(200000)});
    for (const Sample& sample : all) {
        for (const ZlibOptions& options : allOptions) {
            const Bytes stream = deflated(sample.bytes, options);
            const GuardedBlock src(stream);
            const GuardedBlock dst(sample.bytes.size());
            Inflater inflater;
            const Ntk8u* next = src.data();
            Ntk8u* out = dst.data();
            ASSERT_EQ(inflater.call(next, stream.size(), out, sample.bytes.size()), ntkStsNoErr)
                << sample.name;
            EXPECT_TRUE(inflater.isFinished());
            EXPECT_EQ(next, src.data() + stream.size());
            EXPECT_LT(inflater.codeLen, 8);
            ASSERT_TRUE(std::equal(sample.bytes.begin(), sample.bytes.end(), dst.data()))
                << sample.name << " at level " << options.level << ", strategy "
                << options.strategy;
            EXPECT_EQ(inflated(withTrailer(stream), sample.bytes.size() + 300).taken,
                      stream.size());
        }
    }
}

TEST(Inflate, DecodesWhatZlibEncodesAndTakesNoMore) {
    for (const Ntk64u features : {Ntk64u{0}, machineFeatures()}) {
        ntkSetCpuFeatures(features);
        expectDecodingOfAllSamples();
    }
}

TEST(Inflate, GoesOnWhereverSourceOrDestinationWereCut) {
    const std::size_t pieces[] = {1, 2, 5, 31, 300, 1000000};
    const Bytes small = repetitiveBytes(1500, 3);
    const Bytes large = textBytes(60000);
    for (const ZlibOptions& options : allOptions) {
        const Bytes stream = withTrailer(deflated(small, options));
        const Inflated expected = {Verdict::valid, stream.size() - 40, small};
        for (const std::size_t srcPiece : pieces) {
            for (const std::size_t dstPiece : pieces) {
                ASSERT_EQ(inflatedInPieces(stream, small.size(), srcPiece, dstPiece), expected)
                    << srcPiece << " to " << dstPiece << " at level " << options.level;
            }
        }
        for (std::size_t cut = 1; cut < expected.taken; ++cut) {
            ASSERT_EQ(inflatedInPieces(stream, small.size(), cut, small.size()), expected) << cut;
        }
        for (std::size_t cut = 1; cut < small.size(); ++cut) {
            ASSERT_EQ(inflatedInPieces(stream, small.size(), stream.size(), cut), expected) << cut;
        }
        const Bytes long_ = deflated(large, options);
        for (const std::size_t piece : {701, 1009, 4099}) {
            ASSERT_EQ(inflatedInPieces(long_, large.size(), piece, piece + 13).data, large);
        }
    }
}

// Each piece is decoded into a block of its own; the data before are passed as the history.
TEST(Inflate, FindsItsHistoryElsewhere) {
    const Bytes dictionary = textBytes(5000, 8);
    const Bytes data = textBytes(90000, 9);
    const Bytes stream = deflated(data, {9}, dictionary);
    for (const std::size_t piece : {1, 300, 5000, 40000}) {
        Inflater inflater;
        Bytes history = dictionary;
        const Ntk8u* src = stream.data();
        while (!inflater.isFinished()) {
            Bytes part(piece);
            Ntk8u* dst = part.data();
            const auto left = static_cast<std::size_t>(stream.data() + stream.size() - src);
            ASSERT_GE(inflater.call(src, left, dst, piece, &history), 0);
            history.insert(history.end(), part.data(), dst);
        }
        history.erase(history.begin(), history.begin() + 5000);
        EXPECT_EQ(history, data) << piece;
    }
}

// A history that ends at the destination, then none: the calls know what they have decoded.
TEST(Inflate, KeepsToTheHistoryItWasGiven) {
    const Bytes dictionary = textBytes(500, 8);
    const Bytes stream = deflated(dictionary, {9}, dictionary);
    Bytes buffer = dictionary;
    buffer.resize(1000);
    Inflater none;
    const Ntk8u* src = stream.data();
    Ntk8u* dst = buffer.data() + 500;
    EXPECT_EQ(none.call(src, stream.size(), dst, 500), ntkStsBadSrcData);
    int size = 1000 - 500;
    int left = static_cast<int>(stream.size());
    int mode = ntkInflateBlockHeader;
    EXPECT_EQ(ntksInflate_8u(&src, &left, &none.code, &none.codeLen, buffer.data(), &dst, &size,
                             500, &mode, &none.state),
              ntkStsNoErr);
    EXPECT_TRUE(std::equal(dictionary.begin(), dictionary.end(), buffer.begin() + 500));
}

// As the benchmark calls it: no header, the state as left by the call before, which stopped within
// a match, and bits of an earlier stream in the code.
TEST(Inflate, StartsWithinAFixedBlockAsOftenAsAsked) {
    const Bytes data = textBytes(3000);
    const Bytes stream = deflated(data, {6, Z_FIXED});
    NtksInflateState state{};
    Ntk32u code = 0xffffffff;
    for (int round = 0; round < 40; ++round) {
        const bool isWhole = round % 2 == 1;
        Bytes out(isWhole ? data.size() : 1000 + static_cast<std::size_t>(round));
        // The 3 bits of the header are skipped; the other 5 bits of its byte are pending.
        code = ((code | 0xdeadbe00U) << 5) | (stream[0] >> 3);
        int codeLen = 5;
        const Ntk8u* src = stream.data() + 1;
        int srcLen = static_cast<int>(stream.size()) - 1;
        Ntk8u* dst = out.data();
        int dstLen = static_cast<int>(out.size());
        int mode = ntkInflateFixed;
        state.progress = 0;
        ASSERT_EQ(ntksInflate_8u(&src, &srcLen, &code, &codeLen, nullptr, &dst, &dstLen, 0, &mode,
                                 &state),
                  isWhole ? ntkStsNoErr : ntkStsDstFull);
        EXPECT_EQ(srcLen == 0, isWhole);
        EXPECT_EQ(dstLen, 0);
        EXPECT_EQ(mode, isWhole ? ntkInflateFinished : ntkInflateFixed);
        EXPECT_EQ(code >> codeLen, 0U);
        ASSERT_TRUE(std::equal(out.begin(), out.end(), data.begin())) << round;
    }
}

// Lengths of codes for literals (from symbol 0), for lengths (from 257) and for distances: all
// short, so that most pairs fit; long, so that few do; so few that the table is smaller than the
// vectors that fill it.
struct CodesForPairs {
    std::vector<Ntk8u> literals;
    std::vector<Ntk8u> lengths;
    std::vector<Ntk8u> distances;
};
const CodesForPairs codesForPairs[] = {
    {{2, 4, 4, 5, 5, 5, 5},
     {3, 5, 5, 5, 0, 5, 5, 5, 5, 0, 0, 0, 6, 0, 0, 0, 6},
     {3, 3, 0, 0, 0, 0, 0, 3, 2, 3, 0, 0, 3, 4, 4}},
    {{1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 15},
     {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13},
     {9, 9, 8, 7, 6, 5, 4, 3, 2, 1}},
    {{1}, {2}, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1}},
};

struct Tables {
    std::vector<Entry> entries; // of both tables, which the kernels want in one block
    CodeTable literals{};
    CodeTable distances{};

    static constexpr std::size_t literalEntries = entriesNeeded(286, literalRootBits);

    // The end of the block gets the code that is left.
    explicit Tables(const CodesForPairs& codes)
        : entries(literalEntries + entriesNeeded(30, distanceRootBits)) {
        std::vector<Ntk8u> lengths = codes.literals;
        lengths.resize(257);
        lengths.insert(lengths.end(), codes.lengths.begin(), codes.lengths.end());
        unsigned left = 1U << 15;
        for (const Ntk8u length : lengths) {
            left -= length == 0 ? 0 : 1U << (15 - length);
        }
        lengths[256] = static_cast<Ntk8u>(15 - std::countr_zero(left));
        literals = table(lengths, literalSymbols.data(), literalRootBits, entries.data());
        distances = table(codes.distances, distanceSymbols.data(), distanceRootBits,
                          entries.data() + literalEntries);
    }

    static CodeTable table(const std::vector<Ntk8u>& lengths, const Entry* symbols,
                           unsigned rootBits, Entry* entries) {
        const unsigned bits = buildTable(lengths.data(), static_cast<unsigned>(lengths.size()),
                                         Incomplete::mayBeOneBit, symbols, rootBits, entries);
        EXPECT_GT(bits, 0U);
        return {entries, lowMask(bits)};
    }
};

// What a pair stands for is what `bits` give symbol by symbol.
void expectPair(const Tables& tables, Ntk64u bits, Pair pair) {
    const Entry first = tables.literals.at(bits);
    if (isOther(pair)) {
        EXPECT_EQ(firstOf(pair), first);
        EXPECT_EQ(takenBits(pair), takenBits(first));
        return;
    }
    const Ntk64u rest = bits >> takenBits(first);
    Entry second = isMatch(pair) ? tables.distances.at(rest) : tables.literals.at(rest);
    EXPECT_FALSE(isException(first) || (lengthOf(pair) > 1 && isException(second)));
    if (isMatch(pair)) {
        EXPECT_EQ(lengthOf(pair), lengthWithExtra(first, bits));
        EXPECT_LE(lengthOf(pair), longestPaired);
        EXPECT_EQ(distanceOf(pair, bits), valueWithExtra(second, rest));
        EXPECT_GE(distanceOf(pair, bits), longestPaired);
    } else {
        EXPECT_EQ(literalsIn(first), 1U);
        EXPECT_EQ(literalsOf(&pair)[0], valueOf(first) & 0xff);
        EXPECT_EQ(distanceOf(pair, bits), 0U);
        EXPECT_EQ(lengthOf(pair), lengthOf(pair) == 2 ? 2U : 1U);
        second = lengthOf(pair) == 2 ? second : 0;
        EXPECT_EQ(lengthOf(pair), 1 + literalsIn(second));
        EXPECT_EQ(literalsOf(&pair)[1], valueOf(second) & 0xff);
    }
    EXPECT_EQ(takenBits(pair), takenBits(first) + takenBits(second));
}

// How many pairs are of a kind.
struct Kinds {
    unsigned literals = 0; // two of them
    unsigned matches = 0;
    unsigned others = 0;

    void add(Pair pair) {
        literals += !isOther(pair) && !isMatch(pair) && lengthOf(pair) == 2 ? 1 : 0;
        matches += isMatch(pair) ? 1 : 0;
        others += isOther(pair) ? 1 : 0;
    }
};

TEST(Inflate, PairsStandForTheSymbolsAtTheirIndex) {
    std::mt19937_64 generator(1);
    for (const CodesForPairs& codes : codesForPairs) {
        const Tables tables(codes);
        std::optional<Pairs<pairBits>> expected;
        forEachKernel(fillPairsKernel, [&](FillPairs& fill) {
            Pairs<pairBits> pairs{};
            fill(tables.literals, tables.distances, pairs);
            EXPECT_EQ(pairs, expected.value_or(pairs));
            expected = pairs;
            Kinds kinds;
            for (unsigned index = 0; index <= lowMask(pairBits); ++index) {
                SCOPED_TRACE(index);
                expectPair(tables, index | generator() << pairBits, pairs[index]);
                kinds.add(pairs[index]);
            }
            EXPECT_GT(kinds.literals, 400U);
            EXPECT_GT(kinds.matches, 60U);
            EXPECT_GT(kinds.others, 100U);
        });
    }
}

} // namespace
