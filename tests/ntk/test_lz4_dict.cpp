// LZ4 encoders with a dictionary, and what they do with tables that do not fit the call.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "dc/lz4/tables.h"
#include "guarded.h"
#include "lz4calls.h"

namespace {

// The second part of the data is encoded after the first, with the first as dictionary: none of
// it, where it lies, or a copy elsewhere.
enum class Mode { none, inPlace, elsewhere };
constexpr Mode modes[] = {Mode::none, Mode::inPlace, Mode::elsewhere};

struct Halves {
    explicit Halves(const Bytes& bytes)
        : data(bytes),
          first(data.size() - data.size() / 2),
          copy(Bytes(bytes.begin(), bytes.begin() + first)) {}

    Lz4Call secondHalf(Mode mode, GuardedBlock& dst) const {
        Lz4Call call{data.data() + first, first, data.size() - first, dst.data(), dst.size()};
        if (mode != Mode::none) {
            call.dict = mode == Mode::inPlace ? data.data() : copy.data();
            call.dictLen = first;
        }
        return call;
    }
    Bytes second() const { return Bytes(data.data() + first, data.data() + data.size()); }

    GuardedBlock data;
    int first;
    GuardedBlock copy;
};

template <class Visit>
void forEachDictEncoder(Visit visit) {
    for (const Lz4Encoder& encoder : lz4Encoders) {
        if (encoder.takesDictionary) {
            SCOPED_TRACE(encoder.name);
            visit(encoder);
        }
    }
}

void prime(const Lz4Encoder& encoder, const Halves& h, Lz4Tables& tables) {
    Bytes out(static_cast<std::size_t>(LZ4_compressBound(h.first)));
    Lz4Call call{h.data.data(), 0, h.first, out.data(), static_cast<int>(out.size())};
    ASSERT_EQ(encoder.encode(call, tables), ntkStsNoErr);
}

GuardedBlock destinationFor(const Halves& h) {
    return GuardedBlock(static_cast<std::size_t>(LZ4_compressBound(h.data.size())));
}

// Encodes the second half and checks that the block decodes to it with the dictionary of the mode
// and, of a table of any use, not without.
int encodedLength(const Lz4Encoder& encoder, const Halves& h, Mode mode, Lz4Tables& tables,
                  bool tableIsOfUse = true) {
    GuardedBlock dst = destinationFor(h);
    Lz4Call call = h.secondHalf(mode, dst);
    EXPECT_EQ(encoder.encode(call, tables), ntkStsNoErr);
    const int dictLen = mode == Mode::none ? 0 : h.first;
    EXPECT_EQ(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen, h.copy.data(), dictLen),
              h.second());
    if (mode != Mode::none && h.data.size() >= 600 && tableIsOfUse) {
        EXPECT_NE(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen), h.second())
            << "the block must need its dictionary";
    }
    return call.dstLen;
}

TEST(Lz4Dict, MakesShorterBlocksThatNeedIt) {
    for (const std::size_t size : {600, 4000, 30001, 300000}) {
        const Halves h(textBytes(size));
        forEachDictEncoder([&](const Lz4Encoder& encoder) {
            std::map<Mode, int> primed;
            std::map<Mode, int> rebuilt;
            for (const Mode mode : modes) {
                Lz4Tables tables;
                rebuilt[mode] = encodedLength(encoder, h, mode, tables);
                tables.clear();
                prime(encoder, h, tables);
                primed[mode] = encodedLength(encoder, h, mode, tables);
            }
            EXPECT_LT(primed[Mode::inPlace], primed[Mode::none]) << size;
            EXPECT_LT(primed[Mode::elsewhere], primed[Mode::none]) << size;
            EXPECT_LT(rebuilt[Mode::inPlace], rebuilt[Mode::none]) << size;
            EXPECT_LT(rebuilt[Mode::elsewhere], rebuilt[Mode::none]) << size;
        });
    }
}

TEST(Lz4Dict, HandlesTheSmallestData) {
    for (std::size_t size = 1; size <= 40; ++size) {
        const Halves h(textBytes(size));
        forEachDictEncoder([&](const Lz4Encoder& encoder) {
            for (const Mode mode : modes) {
                Lz4Tables tables;
                prime(encoder, h, tables);
                const int length = encodedLength(encoder, h, mode, tables);
                EXPECT_EQ(length == 1, h.data.size() == h.first) << size;
            }
        });
    }
}

TEST(Lz4Dict, KeepsNoPointerToAnEarlierSource) {
    const Bytes bytes = textBytes(20000);
    forEachDictEncoder([&](const Lz4Encoder& encoder) {
        Lz4Tables tables;
        Halves old(bytes);
        prime(encoder, old, tables);
        old.data.forbid();
        old.copy.forbid();
        const Halves h(bytes);
        for (const Mode mode : modes) {
            // The later modes find a table whose position does not fit any more.
            encodedLength(encoder, h, mode, tables);
        }
    });
}

TEST(Lz4Dict, GoesOnOverManyBlocks) {
    const Bytes bytes = textBytes(400000);
    constexpr int step = 20000;
    const GuardedBlock data(bytes);
    forEachDictEncoder([&](const Lz4Encoder& encoder) {
        Lz4Tables tables;
        for (int at = 0; at < data.size(); at += step) {
            Bytes dst(step + 1000);
            Lz4Call call{data.data() + at, at, step, dst.data(), step + 1000, data.data(), at};
            ASSERT_EQ(encoder.encode(call, tables), ntkStsNoErr);
            ASSERT_EQ(decodedByLiblz4(dst.data(), call.dstLen, step, data.data(), at),
                      Bytes(data.data() + at, data.data() + at + step))
                << at;
        }
    });
}

TEST(Lz4Dict, StopsAtAFullDestinationWithADictionary) {
    const Halves h(textBytes(1200));
    forEachDictEncoder([&](const Lz4Encoder& encoder) {
        for (int capacity = encoder.stopsWhenFull ? 2 : 200; capacity < 200; ++capacity) {
            for (const Mode mode : {Mode::inPlace, Mode::elsewhere}) {
                Lz4Tables tables;
                prime(encoder, h, tables);
                GuardedBlock dst(static_cast<std::size_t>(capacity));
                Lz4Call call = h.secondHalf(mode, dst);
                const NtkStatus status = encoder.encode(call, tables);
                const bool isWhole = call.srcLen == h.data.size() - h.first;
                ASSERT_EQ(status, isWhole ? ntkStsNoErr : ntkStsDstFull) << capacity;
                ASSERT_GT(call.srcLen, 0);
                Bytes expected = h.second();
                expected.resize(static_cast<std::size_t>(call.srcLen));
                ASSERT_EQ(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen, h.copy.data(),
                                          h.first),
                          expected)
                    << capacity;
            }
        }
    });
}

TEST(Lz4Dict, TakesAnyContentsOfATable) {
    const Halves h(textBytes(3000));
    for (const Bytes& noise : {Bytes(1, 0), Bytes(1, 0xff), Bytes(1, 0x7f), randomBytes(10007)}) {
        for (const Lz4Encoder& encoder : lz4Encoders) {
            SCOPED_TRACE(encoder.name);
            for (const Mode mode : modes) {
                Lz4Tables tables;
                tables.fill(noise);
                const Mode possible = encoder.takesDictionary ? mode : Mode::none;
                encodedLength(encoder, h, possible, tables);
            }
        }
    }
}

// The worst case: the position fits, but the rest is not what the last call left.
TEST(Lz4Dict, TrustsNoTableForItsPosition) {
    using namespace ntk::lz4;
    const Halves h(textBytes(3000));
    const auto first = static_cast<Ntk32u>(h.first);
    for (const Ntk32u index : {first - 3, first, first + 700, first + 70000, 0x7fffffffU, ~0U}) {
        for (const Mode mode : {Mode::inPlace, Mode::elsewhere}) {
            SCOPED_TRACE(index);
            Lz4Tables tables;
            auto& table = tableIn<HashTable>(tables.hash.data());
            prime(lz4Encoders[2], h, tables);
            ASSERT_EQ(table.position, h.first);
            std::fill_n(table.stream.internal_donotuse.hashTable, LZ4_HASH_SIZE_U32, index);
            encodedLength(lz4Encoders[2], h, mode, tables);

            auto& stream = tableIn<HcState>(tables.hcHash.data()).stream.internal_donotuse;
            auto& record = tableIn<HcRecord>(tables.hcChain.data());
            prime(lz4Encoders[4], h, tables);
            ASSERT_EQ(record.position, h.first);
            std::fill_n(stream.hashTable, LZ4HC_HASHTABLESIZE, index + 65536);
            stream.nextToUpdate = index;
            encodedLength(lz4Encoders[4], h, mode, tables, false);

            tables.clear();
            prime(lz4Encoders[4], h, tables);
            record.endIndex = index;
            encodedLength(lz4Encoders[4], h, mode, tables);
        }
    }
}

}  // namespace
