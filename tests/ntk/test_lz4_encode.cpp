// LZ4 encoders without a dictionary: round trips, full destinations, arguments.
#include "ntkdc.h"

#include <gtest/gtest.h>

#include <climits>

#include "guarded.h"
#include "lz4calls.h"

namespace {

int intSize(const Bytes& bytes) {
    return static_cast<int>(bytes.size());
}

TEST(Lz4Encode, RoundTripsAndFillsADestinationExactly) {
    Lz4Tables tables;
    for (const Sample& sample : samples()) {
        const int size = intSize(sample.bytes);
        const GuardedBlock src(sample.bytes);
        for (const Lz4Encoder& encoder : lz4Encoders) {
            SCOPED_TRACE(std::string(encoder.name) + " " + sample.name);
            const GuardedBlock dst(static_cast<std::size_t>(LZ4_compressBound(size)));
            tables.clear();
            Lz4Call call{src.data(), 0, size, dst.data(), dst.size()};
            ASSERT_EQ(encoder.encode(call, tables), ntkStsNoErr);
            ASSERT_EQ(call.srcLen, size);
            EXPECT_EQ(decodedByLiblz4(dst.data(), call.dstLen, size), sample.bytes);

            Bytes decoded(sample.bytes.size() + 1);
            int decodedLen = size;
            ASSERT_EQ(ntksDecodeLZ4_8u(dst.data(), call.dstLen, decoded.data(), &decodedLen),
                      ntkStsNoErr);
            decoded.pop_back();
            EXPECT_EQ(decodedLen, size);
            EXPECT_EQ(decoded, sample.bytes);

            const GuardedBlock exact(static_cast<std::size_t>(call.dstLen));
            Lz4Call again{src.data(), 0, size, exact.data(), exact.size()};
            tables.clear();
            ASSERT_EQ(encoder.encode(again, tables), ntkStsNoErr);
            EXPECT_EQ(decodedByLiblz4(exact.data(), again.dstLen, size), sample.bytes);

            const GuardedBlock tooSmall(static_cast<std::size_t>(call.dstLen - 1));
            Lz4Call failing{src.data(), 0, size, tooSmall.data(), tooSmall.size()};
            tables.clear();
            const NtkStatus status = encoder.encode(failing, tables);
            if (!encoder.stopsWhenFull || call.dstLen == 1) {
                EXPECT_EQ(status, ntkStsDstTooSmall);
                EXPECT_EQ(failing.dstLen, tooSmall.size());
                EXPECT_EQ(failing.srcLen, size);
            } else {
                EXPECT_GE(status, ntkStsNoErr);
                EXPECT_EQ(status == ntkStsDstFull, failing.srcLen < size);
            }
        }
    }
}

// Cut into blocks of every capacity, the pieces together are the source again.
TEST(Lz4Encode, StopsAtAFullDestinationOfAnySize) {
    Lz4Tables tables;
    for (const Bytes& bytes : {textBytes(900), randomBytes(700), Bytes(9000, 'r')}) {
        const GuardedBlock src(bytes);
        for (const Lz4Encoder& encoder : lz4Encoders) {
            for (int capacity = encoder.stopsWhenFull ? 2 : 1000; capacity < 1000; ++capacity) {
                SCOPED_TRACE(std::string(encoder.name) + " " + std::to_string(capacity));
                const GuardedBlock dst(randomBytes(static_cast<std::size_t>(capacity)));
                int done = 0;
                while (done < src.size()) {
                    // Each block begins a sequence of its own: no dictionary.
                    Lz4Call call{src.data() + done, 0, src.size() - done, dst.data(), capacity};
                    const NtkStatus status = encoder.encode(call, tables);
                    const bool isLast = done + call.srcLen == src.size();
                    ASSERT_EQ(status, isLast ? ntkStsNoErr : ntkStsDstFull);
                    ASSERT_GT(call.srcLen, 0);
                    ASSERT_LE(call.dstLen, capacity);
                    const Bytes expected(bytes.begin() + done, bytes.begin() + done + call.srcLen);
                    ASSERT_EQ(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen), expected);
                    done += call.srcLen;
                }
            }
        }
    }
}

// What is kept of a given-up block must be nearly all that fits, not just literals.
TEST(Lz4Encode, AFullDestinationHoldsAboutAsMuchAsItCould) {
    Lz4Tables tables;
    const Bytes bytes = textBytes(60000);
    for (const Lz4Encoder& encoder : lz4Encoders) {
        if (encoder.stopsWhenFull) {
            Bytes whole(70000);
            Lz4Call call{bytes.data(), 0, intSize(bytes), whole.data(), intSize(whole)};
            ASSERT_EQ(encoder.encode(call, tables), ntkStsNoErr);
            Bytes half(static_cast<std::size_t>(call.dstLen / 2));
            Lz4Call halfCall{bytes.data(), 0, intSize(bytes), half.data(), intSize(half)};
            ASSERT_EQ(encoder.encode(halfCall, tables), ntkStsDstFull);

            const int more = halfCall.srcLen + 40;
            Lz4Call aLittleMore{bytes.data(), 0, more, whole.data(), intSize(whole)};
            ASSERT_EQ(encoder.encode(aLittleMore, tables), ntkStsNoErr);
            EXPECT_GT(aLittleMore.dstLen, intSize(half)) << encoder.name;
        }
    }
}

TEST(Lz4Encode, TakesEveryLevelOfTheThoroughSearch) {
    Lz4Tables tables;
    const Bytes bytes = textBytes(3000);
    for (int level = -1; level <= 13; ++level) {
        Bytes dst(4000);
        int srcLen = intSize(bytes);
        int dstLen = intSize(dst);
        const NtkStatus status =
            ntksEncodeLZ4HC_8u(bytes.data(), 0, &srcLen, dst.data(), &dstLen, tables.hc().data(),
                               nullptr, 0, level);
        if (level < 0 || level > 12) {
            EXPECT_EQ(status, ntkStsBadValue) << level;
            EXPECT_EQ(dstLen, intSize(dst)) << level;
        } else {
            ASSERT_EQ(status, ntkStsNoErr) << level;
            EXPECT_EQ(decodedByLiblz4(dst.data(), dstLen, srcLen), bytes) << level;
        }
    }
}

TEST(Lz4Encode, RefusesBadArgumentsAndTouchesNothing) {
    Lz4Tables tables;
    const Bytes src = textBytes(100);
    Bytes dst(200, 0x55);
    const Ntk8u* const s = src.data();
    struct Case {
        const char* name;
        Lz4Call call;
        NtkStatus expected;
        bool needsDictionary;
    };
    const Case cases[] = {
        {"source", {nullptr, 0, 100, dst.data(), 200}, ntkStsNullPtr, false},
        {"destination", {s, 0, 100, nullptr, 200}, ntkStsNullPtr, false},
        {"negative source", {s, 0, -1, dst.data(), 200}, ntkStsBadSize, false},
        {"huge source", {s, 0, 0x7e000001, dst.data(), 200}, ntkStsBadSize, false},
        {"negative capacity", {s, 0, 100, dst.data(), -1}, ntkStsBadSize, false},
        {"no capacity", {s, 0, 100, dst.data(), 0}, ntkStsDstTooSmall, false},
        {"no capacity for nothing", {s, 0, 0, dst.data(), 0}, ntkStsDstTooSmall, false},
        {"negative position", {s, -1, 100, dst.data(), 200}, ntkStsBadSize, true},
        {"position past the last", {s, INT_MAX - 99, 100, dst.data(), 200}, ntkStsBadSize, true},
        {"missing dictionary", {s, 0, 100, dst.data(), 200, nullptr, 1}, ntkStsNullPtr, true},
        {"negative dictionary", {s, 0, 100, dst.data(), 200, s, -1}, ntkStsBadSize, true},
    };
    for (const Case& c : cases) {
        for (const Lz4Encoder& encoder : lz4Encoders) {
            if (!c.needsDictionary || encoder.takesDictionary) {
                Lz4Call call = c.call;
                SCOPED_TRACE(std::string(encoder.name) + " " + c.name);
                EXPECT_EQ(encoder.encode(call, tables), c.expected);
                EXPECT_EQ(call.srcLen, c.call.srcLen);
                EXPECT_EQ(call.dstLen, c.call.dstLen);
            }
        }
    }
    EXPECT_EQ(dst, Bytes(200, 0x55));
    Ntk8u* oneTable[2] = {tables.hcHash.data(), nullptr};
    int length = 100;
    EXPECT_EQ(ntksEncodeLZ4HC_8u(s, 0, &length, dst.data(), &length, oneTable, nullptr, 0, 0),
              ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZ4HCHashTableInit_8u(oneTable), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZ4HashTableInit_8u(tables.hash.data(), -1), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZ4HashTableGetSize_8u(nullptr), ntkStsNullPtr);
}

}  // namespace
