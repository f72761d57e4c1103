// LZO against liblzo2, which decodes what the library encodes and vice versa; frames; malformed and
// damaged streams.
#include <gtest/gtest.h>

#include <lzo/lzo1x.h>

#include <condition_variable>
#include <mutex>
#include <set>

#include "dc/lzo/workers.h"
#include "guarded.h"
#include "ntkcore.h"
#include "ntkdc.h"
#include "samples.h"

namespace {

using Decode = NtkStatus (*)(const Ntk8u*, Ntk32u, Ntk8u*, Ntk32u*);
const Decode decoders[] = {ntksDecodeLZO_8u, ntksDecodeLZOSafe_8u};
const NtkLZOMethod methods[] = {ntkLZOST, ntkLZOST1X, ntkLZOMT};

class Threads {
public:
    explicit Threads(int count) { ntkSetNumThreads(count); }
    ~Threads() { ntkSetNumThreads(1); }
};

Bytes preparedState(NtkLZOMethod method, std::size_t size) {
    const auto longest = static_cast<Ntk32u>(size);
    Ntk32u stateBytes = 0;
    EXPECT_EQ(ntksEncodeLZOGetSize(method, longest, &stateBytes), ntkStsNoErr);
    Bytes state(stateBytes + 1);
    state.erase(state.begin()); // the result is aligned for bytes only
    EXPECT_EQ(ntksEncodeLZOInit_8u(method, longest, state.data()), ntkStsNoErr);
    return state;
}

// The stream, in a destination of this capacity; empty if it does not fit.
Bytes encoded(NtkLZOMethod method, const Bytes& data, std::size_t capacity) {
    Bytes state = preparedState(method, data.size());
    const GuardedBlock dst(capacity);
    auto length = static_cast<Ntk32u>(capacity);
    const NtkStatus status =
        ntksEncodeLZO_8u(data.data() ? data.data() : dst.data(), static_cast<Ntk32u>(data.size()),
                         dst.data(), &length, state.data());
    if (status != ntkStsNoErr) {
        EXPECT_EQ(status, ntkStsDstTooSmall);
        EXPECT_EQ(length, capacity);
        length = 0;
    }
    return Bytes(dst.data(), dst.data() + length);
}
Bytes encoded(NtkLZOMethod method, const Bytes& data) {
    return encoded(method, data, 2 * data.size() + 6000);
}

// The data that liblzo2 decodes; "rejected" if it reports an error.
Bytes decodedByLiblzo2(const Ntk8u* stream, std::size_t length, std::size_t capacity) {
    Bytes data(capacity + 1);
    lzo_uint dataLen = capacity;
    const int result = lzo1x_decompress_safe(stream, length, data.data(), &dataLen, nullptr);
    data.resize(dataLen);
    return result == LZO_E_OK ? data : Bytes{'r', 'e', 'j', 'e', 'c', 't', 'e', 'd'};
}

NtkStatus decode(Decode decoder, const Bytes& stream, Bytes& data) {
    const GuardedBlock src(stream);
    const GuardedBlock dst(data.size());
    auto length = static_cast<Ntk32u>(data.size());
    const NtkStatus status =
        decoder(src.data(), static_cast<Ntk32u>(stream.size()), dst.data(), &length);
    EXPECT_TRUE(status == ntkStsNoErr || length == data.size());
    data.assign(dst.data(), dst.data() + length);
    return status;
}

void expectDecodes(const Bytes& stream, const Sample& sample) {
    for (const Decode decoder : decoders) {
        Bytes data(sample.bytes.size());
        EXPECT_EQ(decode(decoder, stream, data), ntkStsNoErr) << sample.name;
        EXPECT_TRUE(data == sample.bytes) << sample.name;
        if (!sample.bytes.empty()) {
            data.resize(sample.bytes.size() - 1);
            EXPECT_EQ(decode(decoder, stream, data), ntkStsDstTooSmall) << sample.name;
        }
    }
}

Ntk32u number(const Bytes& bytes, std::size_t at) {
    return bytes.at(at) | bytes.at(at + 1) << 8 | bytes.at(at + 2) << 16 |
           static_cast<Ntk32u>(bytes.at(at + 3)) << 24;
}

TEST(Lzo, Liblzo2DecodesTheStreams) {
    for (const Sample& sample : samples()) {
        for (const NtkLZOMethod method : methods) {
            const Bytes stream = encoded(method, sample.bytes);
            EXPECT_TRUE(decodedByLiblzo2(stream.data(), stream.size(), sample.bytes.size()) ==
                        sample.bytes)
                << sample.name << method;
            expectDecodes(stream, sample);
        }
    }
}

TEST(Lzo, DecodesLiblzo2sStreams) {
    Bytes work(std::max<std::size_t>(LZO1X_999_MEM_COMPRESS, LZO1X_1_15_MEM_COMPRESS));
    for (const Sample& sample : samples()) {
        for (const auto encode : {lzo1x_1_15_compress, lzo1x_999_compress}) {
            Bytes stream(2 * sample.bytes.size() + 100);
            lzo_uint length = 0;
            encode(sample.bytes.data(), sample.bytes.size(), stream.data(), &length, work.data());
            stream.resize(length);
            expectDecodes(stream, sample);
        }
    }
}

TEST(Lzo, MethodsDiffer) {
    const Bytes data = textBytes(150000);
    const Bytes st = encoded(ntkLZOST, data);
    EXPECT_LT(st.size(), encoded(ntkLZOST1X, data).size());
    EXPECT_EQ(encoded(ntkLZOMT, data), st); // on one thread
}

// The test parses the frame, and liblzo2 decodes the pieces.
TEST(Lzo, AFrameHoldsAStreamPerThread) {
    const struct {
        int threads;
        std::size_t size;
        std::size_t pieces;
    } cases[] = {{2, 65535, 1},  {2, 65536, 2},   {3, 150000, 3},
                 {8, 150000, 4}, {64, 200001, 6}, {1024, 65 * 32768, 64}};
    for (const auto& c : cases) {
        const Threads threads(c.threads);
        const Sample sample{std::to_string(c.threads) + " threads", textBytes(c.size)};
        const Bytes stream = encoded(ntkLZOMT, sample.bytes);
        expectDecodes(stream, sample);
        if (c.pieces == 1) {
            EXPECT_EQ(stream, encoded(ntkLZOST, sample.bytes)) << sample.name;
            continue;
        }
        EXPECT_EQ(Bytes(stream.begin(), stream.begin() + 3), (Bytes{0x11, 0, 0}));
        ASSERT_EQ(number(stream, 3), c.pieces) << sample.name;
        std::size_t at = 7 + 8 * c.pieces;
        Bytes all;
        for (std::size_t i = 0; i < c.pieces; ++i) {
            const std::size_t length = number(stream, 7 + 8 * i);
            ASSERT_LE(at + length, stream.size());
            const Bytes piece = decodedByLiblzo2(&stream[at], length, number(stream, 11 + 8 * i));
            EXPECT_GE(piece.size(), 32768U);
            all.insert(all.end(), piece.begin(), piece.end());
            at += length;
        }
        EXPECT_EQ(at, stream.size());
        EXPECT_TRUE(all == sample.bytes) << sample.name;
    }
}

TEST(Lzo, AStreamFitsWhereItJustFits) {
    for (const int count : {1, 4}) {
        const Threads threads(count);
        for (const NtkLZOMethod method : methods) {
            for (const Bytes& data : {textBytes(140000), randomBytes(140000), Bytes()}) {
                const Bytes stream = encoded(method, data);
                EXPECT_TRUE(encoded(method, data, stream.size()) == stream) << method;
                EXPECT_TRUE(encoded(method, data, stream.size() - 1).empty()) << method;
            }
        }
    }
}

TEST(Lzo, JobsAreSharedOutOnlyOverThreadsAllowed) {
    struct Log {
        const unsigned workers;
        std::mutex mutex;
        std::condition_variable joined;
        std::set<pthread_t> threads;
        std::multiset<unsigned> jobs;
    };
    for (const unsigned workers : {1U, 4U}) {
        Log log{workers, {}, {}, {}, {}};
        ntk::lzo::runJobs(
            40, workers,
            [](void* context, unsigned job) {
                Log& l = *static_cast<Log*>(context);
                std::unique_lock lock(l.mutex);
                l.threads.insert(pthread_self());
                l.jobs.insert(job);
                l.joined.notify_all();
                l.joined.wait(lock, [&l] { return l.threads.size() >= l.workers; });
            },
            &log);
        EXPECT_EQ(log.threads.count(pthread_self()), 1U);
        EXPECT_EQ(log.threads.size(), workers);
        EXPECT_EQ(log.jobs.size(), 40U);
        EXPECT_EQ(std::set<unsigned>(log.jobs.begin(), log.jobs.end()).size(), 40U);
    }
}

// A frame of equal pieces, whose lengths in the table may be wrong.
Bytes frame(Ntk32u count, Ntk32u encodedLen, Ntk32u decodedLen, const Bytes& piece, Ntk32u pieces) {
    Bytes bytes = {0x11, 0, 0};
    const auto add = [&](Ntk32u value) {
        for (int i = 0; i < 4; ++i) {
            bytes.push_back(static_cast<Ntk8u>(value >> 8 * i));
        }
    };
    add(count);
    for (Ntk32u i = 0; i < pieces; ++i) {
        add(encodedLen);
        add(decodedLen);
    }
    for (Ntk32u i = 0; i < pieces; ++i) {
        bytes.insert(bytes.end(), piece.begin(), piece.end());
    }
    return bytes;
}

TEST(Lzo, TellsMalformedStreams) {
    const Bytes ab = {0x13, 'a', 'b', 0x11, 0, 0};
    const struct {
        const char* name;
        Bytes stream;
        NtkStatus expected;
    } cases[] = {
        {"nothing", {}, ntkStsBadSrcData},
        {"truncated in the end marker", {0x11, 0}, ntkStsBadSrcData},
        {"empty data", {0x11, 0, 0}, ntkStsNoErr},
        {"two bytes", ab, ntkStsNoErr},
        {"more after the end", {0x13, 'a', 'b', 0x11, 0, 0, 0}, ntkStsBadSrcData},
        {"distance before the start", {0x12, 'a', 0x40, 0x01, 0x11, 0, 0}, ntkStsBadSrcData},
        {"no end marker", {0x13, 'a', 'b'}, ntkStsBadSrcData},
        {"literals truncated", {0x20, 'a', 'b'}, ntkStsBadSrcData},
        {"endless length", Bytes(200, 0), ntkStsBadSrcData},
        {"frame of two pieces", frame(2, 6, 2, ab, 2), ntkStsNoErr},
        {"frame without a table", {0x11, 0, 0, 2, 0, 0, 0}, ntkStsBadSrcData},
        {"frame truncated in the count", {0x11, 0, 0, 2, 0}, ntkStsBadSrcData},
        {"frame of no pieces", frame(0, 6, 2, ab, 0), ntkStsBadSrcData},
        {"frame of one piece", frame(1, 6, 2, ab, 1), ntkStsBadSrcData},
        {"frame of 65 pieces", frame(65, 6, 1, {0x12, 'a', 0x11, 0, 0}, 65), ntkStsBadSrcData},
        {"more pieces in the table than follow", frame(3, 6, 2, ab, 2), ntkStsBadSrcData},
        {"count beyond all memory", frame(0xffffffff, 6, 2, ab, 2), ntkStsBadSrcData},
        {"streams longer than in the table", frame(2, 5, 2, ab, 2), ntkStsBadSrcData},
        {"streams shorter than in the table", frame(2, 7, 2, ab, 2), ntkStsBadSrcData},
        {"lengths that overflow", frame(2, 0x80000006, 2, ab, 2), ntkStsBadSrcData},
        {"shorter data in the table", frame(2, 6, 1, ab, 2), ntkStsBadSrcData},
        {"longer data in the table", frame(2, 6, 3, ab, 2), ntkStsBadSrcData},
        {"more data than room", frame(2, 6, 50, ab, 2), ntkStsDstTooSmall},
        {"data that overflow", frame(2, 6, 0x80000000, ab, 2), ntkStsDstTooSmall},
        {"frame in a frame", frame(2, 35, 4, frame(2, 6, 2, ab, 2), 2), ntkStsBadSrcData},
    };
    for (const auto& c : cases) {
        for (const Decode decoder : decoders) {
            Bytes data(99);
            EXPECT_EQ(decode(decoder, c.stream, data), c.expected) << c.name;
        }
    }
}

// Guards around both buffers; whatever the damage, a stream is decoded or rejected.
TEST(Lzo, StaysWithinItsBuffersOnDamagedStreams) {
    const Bytes text = textBytes(70000);
    const Threads threads(2);
    for (const Bytes& valid : {encoded(ntkLZOST, textBytes(2000)), encoded(ntkLZOMT, text)}) {
        const bool isLong = valid.size() > 5000;
        for (std::size_t cut = 0; cut < valid.size(); cut += isLong && cut > 30 ? 97 : 1) {
            Bytes data(70000);
            const Bytes stream(valid.begin(), valid.begin() + static_cast<std::ptrdiff_t>(cut));
            if (cut != 3 || !isLong) { // where the frame's empty stream ends
                EXPECT_EQ(decode(ntksDecodeLZO_8u, stream, data), ntkStsBadSrcData) << cut;
            }
        }
        std::mt19937 generator(5);
        for (int round = 0; round < (isLong ? 200 : 3000); ++round) {
            Bytes stream = round % 3 == 0 ? randomBytes(300, generator()) : valid;
            for (int damage = 0; damage <= round % 4; ++damage) {
                const std::size_t reach = round % 2 ? stream.size() : 25;
                stream[generator() % reach] = static_cast<Ntk8u>(generator());
            }
            Bytes data(isLong ? 70000 : 2000);
            const NtkStatus status = decode(decoders[round % 2], stream, data);
            ASSERT_TRUE(status == ntkStsNoErr || status == ntkStsBadSrcData ||
                        status == ntkStsDstTooSmall);
        }
    }
}

TEST(Lzo, ChecksMethodAndState) {
    const auto noMethod = static_cast<NtkLZOMethod>(3);
    Ntk32u size = 0;
    EXPECT_EQ(ntksEncodeLZOGetSize(noMethod, 1, &size), ntkStsBadValue);
    EXPECT_EQ(ntksEncodeLZOGetSize(ntkLZOMT, 0x7e000000, &size), ntkStsNoErr);
    EXPECT_GT(size, 0x7e000000U);
    Bytes state = preparedState(ntkLZOST, 4);
    EXPECT_EQ(ntksEncodeLZOInit_8u(noMethod, 4, state.data()), ntkStsBadValue);
    const Ntk8u src[5] = {};
    Ntk8u dst[100];
    Ntk32u length = 100;
    EXPECT_EQ(ntksEncodeLZO_8u(src, 5, dst, &length, state.data()), ntkStsBadSize);
    Bytes unprepared(state.size());
    EXPECT_EQ(ntksEncodeLZO_8u(src, 4, dst, &length, unprepared.data()), ntkStsBadValue);
    EXPECT_EQ(length, 100U);
}

} // namespace
