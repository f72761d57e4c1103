// LZSS against a reference decoder, split in every way; malformed and damaged streams.
#include <gtest/gtest.h>

#include "callerblocks.h"
#include "guarded.h"
#include "ntkdc.h"
#include "oracles/lzss.h"
#include "pieces.h"
#include "samples.h"

namespace {

Ntk8u nothing[1]; // address of an empty buffer

class Coder {
public:
    explicit Coder(NtkStatus (*init)(Ntk8u*)) : m_state(blockFor(ntksLZSSGetSize_8u)) {
        m_state.push_back(0);
        init(state());
    }
    Ntk8u* state() { return m_state.data() + 1; } // of no alignment
    Bytes& out() { return m_out; }

    using Call = NtkStatus (*)(Ntk8u**, int*, Ntk8u**, int*, Ntk8u*);
    // The status of the last call; stops at the first error.
    NtkStatus feed(Call call, const Bytes& bytes, Pieces pieces) {
        return runInPieces(bytes, pieces, m_out,
                           [&](Ntk8u** src, int* srcLen, Ntk8u** dst, int* dstLen) {
                               const NtkStatus status = call(src, srcLen, dst, dstLen, state());
                               EXPECT_TRUE(status != ntkStsDstFull || *dstLen == 0);
                               return status;
                           });
    }
    void flush(std::size_t dstPiece) {
        const auto call = [](Ntk8u**, int*, Ntk8u** dst, int* dstLen, Ntk8u* state) {
            return ntksEncodeLZSSFlush_8u(dst, dstLen, state);
        };
        EXPECT_EQ(feed(call, {}, {1, dstPiece}), ntkStsNoErr);
    }

private:
    Bytes m_state;
    Bytes m_out;
};

Bytes encoded(const Bytes& data, Pieces pieces = {whole, whole}) {
    Coder encoder(ntksEncodeLZSSInit_8u);
    EXPECT_EQ(encoder.feed(ntksEncodeLZSS_8u, data, pieces), ntkStsNoErr);
    encoder.flush(pieces.dst);
    return encoder.out();
}

Bytes decoded(const Bytes& stream, Pieces pieces = {whole, whole}) {
    Coder decoder(ntksDecodeLZSSInit_8u);
    EXPECT_EQ(decoder.feed(ntksDecodeLZSS_8u, stream, pieces), ntkStsNoErr);
    return decoder.out();
}

// Text, runs, random bytes and repeats across the window, several buffers long.
Bytes mixedBytes() {
    Bytes all;
    for (unsigned i = 0; i < 12; ++i) {
        for (const Bytes& part : {textBytes(20000 + 999 * i, i), Bytes(3000 * i, 'r'),
                                  randomBytes(5000 + i, i % 3), Bytes(100, 'x')}) {
            all.insert(all.end(), part.begin(), part.end());
        }
    }
    return all;
}

TEST(Lzss, AnotherDecoderRestoresTheStreams) {
    std::vector<Sample> all = samples();
    all.push_back({"mixed", mixedBytes()});
    for (const Sample& sample : all) {
        const Bytes stream = encoded(sample.bytes);
        EXPECT_TRUE(oracle::lzssDecoded(stream) == sample.bytes) << sample.name;
        EXPECT_TRUE(decoded(stream) == sample.bytes) << sample.name;
        EXPECT_LE(stream.size(), sample.bytes.size() * 9 / 8 + 4) << sample.name;
    }
}

TEST(Lzss, CutsChangeNothing) {
    const Bytes mixed = mixedBytes();
    const Bytes small = textBytes(3000);
    const struct {
        const Bytes& data;
        Pieces pieces;
    } cases[] = {{small, {1, 1}},        {small, {1, whole}},   {small, {whole, 1}},
                 {small, {whole, 3000}}, {mixed, {4096, 1000}}, {mixed, {777, 100000}},
                 {mixed, {100000, 4096}}};
    for (const auto& c : cases) {
        const Bytes stream = encoded(c.data);
        EXPECT_TRUE(encoded(c.data, c.pieces) == stream) << c.pieces.src << " " << c.pieces.dst;
        EXPECT_TRUE(decoded(stream, c.pieces) == c.data) << c.pieces.src << " " << c.pieces.dst;
    }
}

// 16383 bytes back are in reach, 16384 are not.
TEST(Lzss, FindsMatchesAcrossTheWindow) {
    for (const auto& [distance, isFound] : {std::pair{8191, true}, {16383, true}, {16384, false}}) {
        Bytes data = randomBytes(static_cast<std::size_t>(distance));
        const Bytes first = data;
        data.insert(data.end(), first.begin(), first.end());
        const std::size_t literals = first.size() * 9 / 8;
        EXPECT_EQ(encoded(data).size() < literals + 500, isFound) << distance;
    }
    EXPECT_LT(encoded(textBytes(150000)).size(), 150000U / 4);
    EXPECT_LT(encoded(Bytes(150000, 'r')).size(), 150000U / 85);
}

TEST(Lzss, GoesOnAfterAFlush) {
    const Bytes text = textBytes(1000);
    for (const std::size_t dstPiece : {std::size_t{1}, whole}) {
        Coder encoder(ntksEncodeLZSSInit_8u);
        Bytes data;
        for (int i = 0; i < 200; ++i) {
            const Bytes part(text.begin(), text.begin() + i);
            encoder.feed(ntksEncodeLZSS_8u, part, {7, dstPiece});
            data.insert(data.end(), part.begin(), part.end());
            encoder.flush(dstPiece);
            const std::size_t length = encoder.out().size();
            encoder.flush(dstPiece);
            EXPECT_EQ(encoder.out().size(), length);
            if (i % 20 == 0) {
                EXPECT_TRUE(oracle::lzssDecoded(encoder.out()) == data) << i;
            }
        }
        EXPECT_TRUE(decoded(encoder.out()) == data);
    }
}

struct Case {
    const char* name;
    Bytes stream;
    NtkStatus expected;
    std::string data;
};
const Case cases[] = {
    {"nothing", {}, ntkStsNoErr, ""},
    {"flags alone", {0xff}, ntkStsNoErr, ""},
    {"literals", {0, 'a', 'b', 'c'}, ntkStsNoErr, "abc"},
    {"two groups", {0, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 0, 'i'}, ntkStsNoErr, "abcdefghi"},
    {"shortest match", {2, 'a', 1 << 3, 0, 'b'}, ntkStsNoErr, "aaaab"},
    {"longest of two bytes", {4, 'a', 'b', 2 << 3 | 6, 0}, ntkStsNoErr, "abababababa"},
    {"shortest of three bytes", {2, 'a', 1 << 3 | 7, 0, 0}, ntkStsNoErr, "aaaaa"},
    {"longest of three bytes",
     {2, 'a', 1 << 3 | 7, 0, 126 << 1},
     ntkStsNoErr,
     std::string(131, 'a')},
    {"longest of all", {2, 'a', 1 << 3 | 7, 0, 254, 255}, ntkStsNoErr, std::string(387, 'a')},
    {"end of a group", {2, 'a', 0, 0, 0, 'b'}, ntkStsNoErr, "ab"},
    {"ends of groups alone", {1, 0, 0, 255, 0, 0}, ntkStsNoErr, ""},
    {"match truncated", {2, 'a', 1 << 3 | 7, 0}, ntkStsNoErr, "a"},
    {"distance of 0", {2, 'a', 1, 0}, ntkStsBadSrcData, ""},
    {"long distance of 0", {2, 'a', 7, 0, 8}, ntkStsBadSrcData, ""},
    {"before the start", {2, 'a', 2 << 3, 0}, ntkStsBadSrcData, ""},
    {"match first", {1, 1 << 3, 0}, ntkStsBadSrcData, ""},
    {"far before the start", {2, 'a', 1 << 3 | 7, 0, 1}, ntkStsBadSrcData, ""},
};

// Each with and without groups after it; with them, the decoder takes whole groups.
TEST(Lzss, TellsMalformedStreams) {
    for (const Case& c : cases) {
        for (const std::size_t cut : {std::size_t{1}, whole}) {
            Coder decoder(ntksDecodeLZSSInit_8u);
            EXPECT_EQ(decoder.feed(ntksDecodeLZSS_8u, c.stream, {cut, whole}), c.expected)
                << c.name;
            if (c.expected == ntkStsNoErr) {
                EXPECT_EQ(std::string(decoder.out().begin(), decoder.out().end()), c.data);
            } else {
                EXPECT_EQ(decoder.feed(ntksDecodeLZSS_8u, {0, 'a'}, {1, 1}), ntkStsBadSrcData);
            }
        }
        Bytes longer = c.stream;
        longer.resize(longer.size() + 90); // literals of 0, or the rest of a token
        Coder decoder(ntksDecodeLZSSInit_8u);
        EXPECT_EQ(decoder.feed(ntksDecodeLZSS_8u, longer, {whole, whole}), c.expected) << c.name;
        if (c.expected == ntkStsNoErr) {
            EXPECT_TRUE(decoder.out() == oracle::lzssDecoded(longer)) << c.name;
        }
    }
}

// Guards around both buffers and the state; a damaged stream is decoded, rejected, or truncated.
TEST(Lzss, StaysWithinItsBuffersOnDamagedStreams) {
    const Bytes valid = encoded(mixedBytes());
    const GuardedBlock state(blockFor(ntksLZSSGetSize_8u));
    const GuardedBlock dst(std::size_t{1500000});
    std::mt19937 generator(9);
    int rejected = 0;
    for (int round = 0; round < 300; ++round) {
        Bytes stream = round % 4 == 0 ? randomBytes(5000, generator()) : valid;
        for (int damage = 0; damage <= round % 20; ++damage) {
            stream[generator() % stream.size()] = static_cast<Ntk8u>(generator());
        }
        const GuardedBlock src(stream);
        ntksDecodeLZSSInit_8u(state.data());
        Ntk8u* pSrc = src.data();
        Ntk8u* pDst = dst.data();
        int srcLen = src.size();
        int dstLen = static_cast<int>(generator() % 1500000);
        const NtkStatus status = ntksDecodeLZSS_8u(&pSrc, &srcLen, &pDst, &dstLen, state.data());
        ASSERT_TRUE(status == ntkStsNoErr || status == ntkStsBadSrcData || status == ntkStsDstFull);
        rejected += status == ntkStsBadSrcData;
    }
    EXPECT_GT(rejected, 50);
}

TEST(Lzss, EncoderAndDecoderHaveTheirOwnStates) {
    Coder encoder(ntksEncodeLZSSInit_8u);
    Coder decoder(ntksDecodeLZSSInit_8u);
    Ntk8u* p = nothing;
    int none = 0;
    EXPECT_EQ(ntksEncodeLZSS_8u(&p, &none, &p, &none, encoder.state()), ntkStsNoErr);
    EXPECT_EQ(ntksEncodeLZSS_8u(&p, &none, &p, &none, decoder.state()), ntkStsBadValue);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, &none, decoder.state()), ntkStsBadValue);
    EXPECT_EQ(ntksDecodeLZSS_8u(&p, &none, &p, &none, decoder.state()), ntkStsNoErr);
    EXPECT_EQ(ntksDecodeLZSS_8u(&p, &none, &p, &none, encoder.state()), ntkStsBadValue);
}

} // namespace
