// LZSS against a plain decoder written from the format alone, cut in every way; damaged streams.
#include <gtest/gtest.h>

#include "guarded.h"
#include "ntkdc.h"
#include "samples.h"

namespace {

Ntk8u nothing[1]; // where an empty buffer points

// The stream of a format note: flags in a byte, a literal for 0, a match for 1. The whole stream at
// once, byte by byte; the data so far when the stream breaks off.
Bytes plainlyDecoded(const Bytes& stream) {
    Bytes data;
    std::size_t at = 0;
    while (at < stream.size()) {
        const int flags = stream[at++];
        for (int bit = 0; bit < 8 && at < stream.size(); ++bit) {
            if (!(flags & 1 << bit)) {
                data.push_back(stream[at++]);
                continue;
            }
            const unsigned pair = stream[at] + 256U * stream.at(at + 1);
            at += 2;
            if (pair == 0) {
                break;
            }
            std::size_t distance = pair / 8;
            std::size_t length = pair % 8 + 3;
            if (pair % 8 == 7) {
                const unsigned third = stream.at(at++);
                distance += third % 2 * 8192;
                length = 4 + third / 2;
                if (third / 2 == 127) {
                    length = 131U + stream.at(at++);
                }
            }
            while (length-- > 0) {
                data.push_back(data.at(data.size() - distance));
            }
        }
    }
    return data;
}

// A coder at work: feeds a call with pieces of at most srcCut bytes and room for dstCut, each piece
// in memory of its own that faults outside and is gone after the call.
struct Cuts {
    std::size_t src;
    std::size_t dst;
};

class Coder {
public:
    explicit Coder(NtkStatus (*init)(Ntk8u*)) {
        int size = 0;
        ntksLZSSGetSize_8u(&size);
        m_state.resize(static_cast<std::size_t>(size) + 1, 0xa5);
        init(state());
    }
    Ntk8u* state() { return m_state.data() + 1; }
    Bytes& out() { return m_out; }

    using Call = NtkStatus (*)(Ntk8u**, int*, Ntk8u**, int*, Ntk8u*);
    // The status of the last call; stops at the first error.
    NtkStatus feed(Call call, const Bytes& bytes, Cuts cuts) {
        NtkStatus status = ntkStsNoErr;
        std::size_t at = 0;
        do {
            const std::size_t count = std::min(cuts.src, bytes.size() - at);
            const GuardedBlock src(Bytes(bytes.data() + at, bytes.data() + at + count));
            Ntk8u* pSrc = src.data();
            int srcLen = src.size();
            status = step(cuts.dst, [&](Ntk8u** dst, int* dstLen) {
                return call(&pSrc, &srcLen, dst, dstLen, state());
            });
            EXPECT_EQ(pSrc + srcLen, src.data() + src.size());
            at += count - static_cast<std::size_t>(srcLen);
        } while (status >= 0 && (at < bytes.size() || status == ntkStsDstFull));
        return status;
    }
    void flush(std::size_t dstCut) {
        while (step(dstCut, [&](Ntk8u** dst, int* dstLen) {
                   return ntksEncodeLZSSFlush_8u(dst, dstLen, state());
               }) == ntkStsDstFull) {
        }
    }

private:
    template <class Call> NtkStatus step(std::size_t capacity, Call call) {
        const GuardedBlock dst(capacity);
        Ntk8u* pDst = dst.data();
        int dstLen = dst.size();
        const NtkStatus status = call(&pDst, &dstLen);
        EXPECT_EQ(pDst + dstLen, dst.data() + dst.size());
        EXPECT_TRUE(status != ntkStsDstFull || dstLen == 0);
        m_out.insert(m_out.end(), dst.data(), pDst);
        return status;
    }

    Bytes m_state;
    Bytes m_out;
};

constexpr std::size_t whole = 1 << 22;

Bytes encoded(const Bytes& data, Cuts cuts = {whole, whole}) {
    Coder encoder(ntksEncodeLZSSInit_8u);
    EXPECT_EQ(encoder.feed(ntksEncodeLZSS_8u, data, cuts), ntkStsNoErr);
    encoder.flush(cuts.dst);
    return encoder.out();
}

Bytes decoded(const Bytes& stream, Cuts cuts = {whole, whole}) {
    Coder decoder(ntksDecodeLZSSInit_8u);
    EXPECT_EQ(decoder.feed(ntksDecodeLZSS_8u, stream, cuts), ntkStsNoErr);
    return decoder.out();
}

// Text, runs, noise and repeats across the window, several buffers long.
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
        EXPECT_TRUE(plainlyDecoded(stream) == sample.bytes) << sample.name;
        EXPECT_TRUE(decoded(stream) == sample.bytes) << sample.name;
        EXPECT_LE(stream.size(), sample.bytes.size() * 9 / 8 + 4) << sample.name;
    }
}

TEST(Lzss, CutsChangeNothing) {
    const Bytes mixed = mixedBytes();
    const Bytes small = textBytes(3000);
    const struct {
        const Bytes& data;
        Cuts cuts;
    } cases[] = {{small, {1, 1}},       {small, {1, whole}},    {small, {whole, 1}},
                 {mixed, {4096, 1000}}, {mixed, {777, 100000}}, {mixed, {100000, 4096}}};
    for (const auto& c : cases) {
        const Bytes stream = encoded(c.data);
        EXPECT_TRUE(encoded(c.data, c.cuts) == stream) << c.cuts.src << " " << c.cuts.dst;
        EXPECT_TRUE(decoded(stream, c.cuts) == c.data) << c.cuts.src << " " << c.cuts.dst;
    }
}

// 16383 bytes back are in reach, 16384 are not: from 16384 bytes on, data passed again do not meet
// themselves.
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
    for (const std::size_t dstCut : {std::size_t{1}, whole}) {
        Coder encoder(ntksEncodeLZSSInit_8u);
        Bytes data;
        for (int i = 0; i < 200; ++i) {
            const Bytes part(text.begin(), text.begin() + i);
            encoder.feed(ntksEncodeLZSS_8u, part, {7, dstCut});
            data.insert(data.end(), part.begin(), part.end());
            encoder.flush(dstCut);
            const std::size_t length = encoder.out().size();
            encoder.flush(dstCut);
            EXPECT_EQ(encoder.out().size(), length);
            if (i % 20 == 0) {
                EXPECT_TRUE(plainlyDecoded(encoder.out()) == data) << i;
            }
        }
        EXPECT_TRUE(decoded(encoder.out()) == data);
    }
}

// The state as a benchmark uses it: the same data again and again, no flush, gigabytes in the end.
// Positions that ran over would break the stream long before.
TEST(Lzss, AnEncoderThatIsNeverResetGoesOn) {
    const Bytes text = textBytes(100000);
    Coder encoder(ntksEncodeLZSSInit_8u);
    Bytes data;
    for (int i = 0; i < 40; ++i) {
        encoder.feed(ntksEncodeLZSS_8u, text, {whole, whole});
        data.insert(data.end(), text.begin(), text.end());
    }
    encoder.flush(whole);
    EXPECT_TRUE(plainlyDecoded(encoder.out()) == data);
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
    {"match cut off", {2, 'a', 1 << 3 | 7, 0}, ntkStsNoErr, "a"},
    {"distance of nothing", {2, 'a', 1, 0}, ntkStsBadSrcData, ""},
    {"long distance of nothing", {2, 'a', 7, 0, 8}, ntkStsBadSrcData, ""},
    {"before the start", {2, 'a', 2 << 3, 0}, ntkStsBadSrcData, ""},
    {"match first", {1, 1 << 3, 0}, ntkStsBadSrcData, ""},
    {"far before the start", {2, 'a', 1 << 3 | 7, 0, 1}, ntkStsBadSrcData, ""},
};

// Each with and without groups after it, which let the decoder take it at one go.
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
        longer.resize(longer.size() + 90); // literals 0, or what completes a token
        Coder decoder(ntksDecodeLZSSInit_8u);
        EXPECT_EQ(decoder.feed(ntksDecodeLZSS_8u, longer, {whole, whole}), c.expected) << c.name;
        if (c.expected == ntkStsNoErr) {
            EXPECT_TRUE(decoder.out() == plainlyDecoded(longer)) << c.name;
        }
    }
}

TEST(Lzss, AStreamCutOffGivesTheDataBefore) {
    const Bytes data = textBytes(2000);
    const Bytes stream = encoded(data);
    for (std::size_t cut = 0; cut < stream.size(); ++cut) {
        const Bytes got =
            decoded(Bytes(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(cut)));
        ASSERT_LE(got.size(), data.size());
        ASSERT_TRUE(std::equal(got.begin(), got.end(), data.begin())) << cut;
    }
    EXPECT_TRUE(decoded(stream, {whole, data.size()}) == data); // room for the data and no more
}

// Guards around both buffers and the state's end; damage is decoded, refused, or told by the
// length alone.
TEST(Lzss, StaysWithinItsBuffersOnDamagedStreams) {
    const Bytes sound = encoded(mixedBytes());
    int size = 0;
    ntksLZSSGetSize_8u(&size);
    const GuardedBlock state(static_cast<std::size_t>(size));
    const GuardedBlock dst(std::size_t{1500000});
    std::mt19937 generator(9);
    int refused = 0;
    for (int round = 0; round < 300; ++round) {
        Bytes stream = round % 4 == 0 ? randomBytes(5000, generator()) : sound;
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
        refused += status == ntkStsBadSrcData;
    }
    EXPECT_GT(refused, 50);
}

TEST(Lzss, RefusesBadArguments) {
    EXPECT_EQ(ntksLZSSGetSize_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSInit_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZSSInit_8u(nullptr), ntkStsNullPtr);
    Coder encoder(ntksEncodeLZSSInit_8u);
    Coder decoder(ntksDecodeLZSSInit_8u);
    Ntk8u* p = nothing;
    Ntk8u* null = nullptr;
    int none = 0;
    int less = -1;
    for (const auto& [call, state, wrong] :
         {std::tuple{&ntksEncodeLZSS_8u, encoder.state(), decoder.state()},
          {&ntksDecodeLZSS_8u, decoder.state(), encoder.state()}}) {
        EXPECT_EQ(call(nullptr, &none, &p, &none, state), ntkStsNullPtr);
        EXPECT_EQ(call(&p, nullptr, &p, &none, state), ntkStsNullPtr);
        EXPECT_EQ(call(&p, &none, nullptr, &none, state), ntkStsNullPtr);
        EXPECT_EQ(call(&p, &none, &p, nullptr, state), ntkStsNullPtr);
        EXPECT_EQ(call(&p, &none, &p, &none, nullptr), ntkStsNullPtr);
        EXPECT_EQ(call(&null, &none, &p, &none, state), ntkStsNullPtr);
        EXPECT_EQ(call(&p, &none, &null, &none, state), ntkStsNullPtr);
        EXPECT_EQ(call(&p, &less, &p, &none, state), ntkStsBadSize);
        EXPECT_EQ(call(&p, &none, &p, &less, state), ntkStsBadSize);
        EXPECT_EQ(call(&p, &none, &p, &none, wrong), ntkStsBadValue);
        EXPECT_EQ(call(&p, &none, &p, &none, state), ntkStsNoErr);
    }
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(nullptr, &none, encoder.state()), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&null, &none, encoder.state()), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, nullptr, encoder.state()), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, &none, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, &less, encoder.state()), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, &none, decoder.state()), ntkStsBadValue);
}

} // namespace
