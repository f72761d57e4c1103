// The inflater on valid streams: all parameters of zlib's encoder, whole and in pieces, and all
// places of the history.
#include <gtest/gtest.h>

#include <bit>

#include "dc/inflate/alphabets.h"
#include "dc/inflate/pairs.h"
#include "guarded.h"
#include "inflatecalls.h"
#include "kernels.h"

namespace {

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

using ntk::inflate::Entry;

// Lengths of codes for literals (from symbol 0) and for lengths (from 257): all short, so that most
// pairs fit; long, so that few do; so few that the table is smaller than the vectors that fill it.
const std::pair<std::vector<Ntk8u>, std::vector<Ntk8u>> codesForPairs[] = {
    {{2, 4, 4, 5, 5, 5, 5}, {2, 3, 5, 5, 5}},
    {{1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 15}, {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
    {{1}, {2}},
};

// The lengths given, then a code for the end of the block that makes the code complete.
std::vector<Ntk8u> completed(const std::pair<std::vector<Ntk8u>, std::vector<Ntk8u>>& code) {
    std::vector<Ntk8u> lengths(286);
    std::copy(code.first.begin(), code.first.end(), lengths.begin());
    std::copy(code.second.begin(), code.second.end(), lengths.begin() + 257);
    unsigned left = 1U << 15;
    for (const Ntk8u length : lengths) {
        left -= length == 0 ? 0 : 1U << (15 - length);
    }
    lengths[256] = static_cast<Ntk8u>(15 - std::countr_zero(left));
    return lengths;
}

// What a pair stands for is what its index gives symbol by symbol.
void expectPair(const ntk::inflate::CodeTable& singles, unsigned index, Entry pair) {
    using namespace ntk::inflate;
    const Entry first = singles.at(index);
    const Entry second = singles.at(index >> takenBits(first));
    const bool isPair = literalsIn(first) == 1 && !isException(second) &&
                        takenBits(first) + codeBits(second) <= pairBits;
    if (!isPair) {
        EXPECT_EQ(pair, first) << index;
        return;
    }
    EXPECT_EQ(takenBits(pair), takenBits(first) + takenBits(second)) << index;
    EXPECT_EQ(literalsIn(pair), 1 + literalsIn(second)) << index;
    EXPECT_EQ(valueOf(pair) & 0xff, valueOf(first) & 0xff) << index;
    EXPECT_EQ(valueOf(pair) >> 8, valueOf(second) >> 8) << index;
    if (literalsIn(second) == 0) { // the extra bits are all ones
        EXPECT_EQ(lengthWithExtra(pair, ~Ntk64u{0}), lengthWithExtra(second, ~Ntk64u{0})) << index;
    }
}

TEST(Inflate, PairsStandForTheSymbolsAtTheirIndex) {
    for (const auto& code : codesForPairs) {
        const std::vector<Ntk8u> lengths = completed(code);
        std::vector<Entry> entries(ntk::inflate::entriesNeeded(286, ntk::inflate::literalRootBits));
        const unsigned bits = ntk::inflate::buildTable(
            lengths.data(), 286, ntk::inflate::Incomplete::isRefused,
            ntk::inflate::literalSymbols.data(), ntk::inflate::literalRootBits, entries.data());
        ASSERT_GT(bits, 0U);
        const ntk::inflate::CodeTable singles = {entries.data(), ntk::inflate::lowMask(bits)};
        forEachKernel(ntk::inflate::fillPairsKernel, [&](ntk::inflate::FillPairs& fill) {
            ntk::inflate::PairTable pairs{};
            fill(singles, pairs);
            for (unsigned index = 0; index < pairs.size(); ++index) {
                expectPair(singles, index, pairs[index]);
            }
        });
    }
}

} // namespace
