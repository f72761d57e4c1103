// LZ4 encoders without a dictionary: round trips, full destinations, arguments.
#include <gtest/gtest.h>

#include <climits>

#include "guarded.h"
#include "lz4calls.h"

namespace {

int intSize(const Bytes& bytes) {
    return static_cast<int>(bytes.size());
}

// Encodes into the whole destination, with empty tables.
NtkStatus encodeInto(const GuardedBlock& dst, const Lz4Encoder& encoder, const GuardedBlock& src,
                     Lz4Call& call) {
    static Lz4Tables tables;
    tables.clear();
    call = {src.data(), 0, src.size(), dst.data(), dst.size()};
    return encoder.encode(call, tables);
}

TEST(Lz4Encode, RoundTripsAndFillsADestinationExactly) {
    for (const Sample& sample : samples()) {
        const GuardedBlock src(sample.bytes);
        for (const Lz4Encoder& encoder : lz4Encoders) {
            SCOPED_TRACE(std::string(encoder.name) + " " + sample.name);
            const GuardedBlock dst(static_cast<std::size_t>(LZ4_compressBound(src.size())));
            Lz4Call call{};
            ASSERT_EQ(encodeInto(dst, encoder, src, call), ntkStsNoErr);
            ASSERT_EQ(call.srcLen, src.size());
            EXPECT_EQ(decodedByLiblz4(dst.data(), call.dstLen, src.size()), sample.bytes);
            const auto blockLen = static_cast<std::size_t>(call.dstLen);

            GuardedBlock decoded(sample.bytes.size());
            int decodedLen = decoded.size();
            ASSERT_EQ(ntksDecodeLZ4_8u(dst.data(), call.dstLen, decoded.data(), &decodedLen),
                      ntkStsNoErr);
            EXPECT_EQ(Bytes(decoded.data(), decoded.data() + decodedLen), sample.bytes);
            if (--decodedLen >= 0) {
                EXPECT_EQ(ntksDecodeLZ4_8u(dst.data(), call.dstLen, decoded.data(), &decodedLen),
                          ntkStsDstTooSmall);
            }

            const GuardedBlock exact(blockLen);
            ASSERT_EQ(encodeInto(exact, encoder, src, call), ntkStsNoErr);
            EXPECT_EQ(decodedByLiblz4(exact.data(), call.dstLen, src.size()), sample.bytes);

            const GuardedBlock tooSmall(blockLen - 1);
            const NtkStatus status = encodeInto(tooSmall, encoder, src, call);
            if (encoder.stopsWhenFull && blockLen > 1) {
                EXPECT_EQ(status, call.srcLen < src.size() ? ntkStsDstFull : ntkStsNoErr);
            } else {
                EXPECT_EQ(status, ntkStsDstTooSmall);
                EXPECT_EQ(call.dstLen, tooSmall.size());
                EXPECT_EQ(call.srcLen, src.size());
            }
        }
    }
}

// Encoded in blocks of every capacity; together, they decode to the source. What comes before a
// block is its dictionary, in place or elsewhere, if the encoder takes one.
TEST(Lz4Encode, StopsAtAFullDestinationOfAnySize) {
    Lz4Tables tables;
    for (const Bytes& bytes : {textBytes(900), randomBytes(700), Bytes(9000, 'r')}) {
        const GuardedBlock src(bytes);
        const GuardedBlock copy(bytes);
        for (const Lz4Encoder& encoder : lz4Encoders) {
            for (int capacity = encoder.stopsWhenFull ? 2 : 1000; capacity < 1000; ++capacity) {
                SCOPED_TRACE(std::string(encoder.name) + " " + std::to_string(capacity));
                const GuardedBlock dst(randomBytes(static_cast<std::size_t>(capacity)));
                for (int done = 0; done < src.size();) {
                    const int dictLen = encoder.takesDictionary ? done : 0;
                    const Ntk8u* const dict = (capacity % 2 == 0 ? src : copy).data();
                    Lz4Call call{src.data() + done, dictLen, src.size() - done, dst.data(),
                                 capacity};
                    call.dict = dict;
                    call.dictLen = dictLen;
                    const NtkStatus status = encoder.encode(call, tables);
                    ASSERT_GT(call.srcLen, 0);
                    ASSERT_LE(call.dstLen, capacity);
                    const Bytes expected(bytes.begin() + done, bytes.begin() + done + call.srcLen);
                    ASSERT_EQ(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen, dict, dictLen),
                              expected);
                    done += call.srcLen;
                    ASSERT_EQ(status, done < src.size() ? ntkStsDstFull : ntkStsNoErr);
                }
            }
        }
    }
}

// What is kept of an abandoned block must be nearly all that fits, not just literals.
TEST(Lz4Encode, AFullDestinationHoldsAboutAsMuchAsItCould) {
    const Bytes bytes = textBytes(60000);
    const GuardedBlock whole(std::size_t{70000});
    for (const Lz4Encoder& encoder : lz4Encoders) {
        if (encoder.stopsWhenFull) {
            Lz4Call call{};
            ASSERT_EQ(encodeInto(whole, encoder, GuardedBlock(bytes), call), ntkStsNoErr);
            const GuardedBlock half(static_cast<std::size_t>(call.dstLen / 2));
            ASSERT_EQ(encodeInto(half, encoder, GuardedBlock(bytes), call), ntkStsDstFull);
            const Bytes aLittleMore(bytes.begin(), bytes.begin() + call.srcLen + 40);
            ASSERT_EQ(encodeInto(whole, encoder, GuardedBlock(aLittleMore), call), ntkStsNoErr);
            EXPECT_GT(call.dstLen, half.size()) << encoder.name;
        }
    }
}

TEST(Lz4Encode, TakesEveryLevelOfTheThoroughSearch) {
    Lz4Tables tables;
    const Bytes bytes = textBytes(3000);
    Bytes dst(4000);
    for (int level = -1; level <= 13; ++level) {
        int srcLen = intSize(bytes);
        int dstLen = intSize(dst);
        const bool isLevel = level >= 0 && level <= 12;
        ASSERT_EQ(ntksEncodeLZ4HC_8u(bytes.data(), 0, &srcLen, dst.data(), &dstLen,
                                     tables.hc().data(), nullptr, 0, level),
                  isLevel ? ntkStsNoErr : ntkStsBadValue)
            << level;
        EXPECT_EQ(dstLen == intSize(dst), !isLevel) << level;
        EXPECT_EQ(isLevel, decodedByLiblz4(dst.data(), dstLen, srcLen) == bytes) << level;
    }
}

TEST(Lz4Encode, RejectsBadArgumentsAndTouchesNothing) {
    Lz4Tables tables;
    const Bytes src = textBytes(100);
    Bytes dst(200, 0x55);
    const Ntk8u* const s = src.data();
    Ntk8u* const d = dst.data();
    struct Case {
        const char* name;
        Lz4Call call;
        NtkStatus expected;
        bool needsDictionary;
    };
    const Case cases[] = {
        {"source", {nullptr, 0, 100, d, 200}, ntkStsNullPtr, false},
        {"destination", {s, 0, 100, nullptr, 200}, ntkStsNullPtr, false},
        {"negative source", {s, 0, -1, d, 200}, ntkStsBadSize, false},
        {"huge source", {s, 0, 0x7e000001, d, 200}, ntkStsBadSize, false},
        {"negative capacity", {s, 0, 100, d, -1}, ntkStsBadSize, false},
        {"no capacity", {s, 0, 100, d, 0}, ntkStsDstTooSmall, false},
        {"no capacity for nothing", {s, 0, 0, d, 0}, ntkStsDstTooSmall, false},
        {"negative position", {s, -1, 100, d, 200}, ntkStsBadSize, true},
        {"position past the last", {s, INT_MAX - 99, 100, d, 200}, ntkStsBadSize, true},
        {"missing dictionary", {s, 0, 100, d, 200, nullptr, 1}, ntkStsNullPtr, true},
        {"negative dictionary", {s, 0, 100, d, 200, s, -1}, ntkStsBadSize, true},
    };
    for (const Case& c : cases) {
        for (const Lz4Encoder& encoder : lz4Encoders) {
            if (!c.needsDictionary || encoder.takesDictionary) {
                SCOPED_TRACE(std::string(encoder.name) + " " + c.name);
                Lz4Call call = c.call;
                EXPECT_EQ(encoder.encode(call, tables), c.expected);
                EXPECT_EQ(call.srcLen, c.call.srcLen);
                EXPECT_EQ(call.dstLen, c.call.dstLen);
            }
        }
    }
    EXPECT_EQ(dst, Bytes(200, 0x55));
}

} // namespace
