// LZ4 encoders with a dictionary, and with tables that do not fit the call.
#include <gtest/gtest.h>

#include <algorithm>

#include "dc/lz4/filldestination.h"
#include "dc/lz4/indexscan.h"
#include "dc/lz4/tables.h"
#include "guarded.h"
#include "kernels.h"
#include "lz4calls.h"

namespace {

// The second half of the data is encoded after the first, without a dictionary, or with the first
// half as dictionary: in place, or a copy elsewhere.
enum class Mode { none, inPlace, elsewhere };
constexpr Mode modes[] = {Mode::none, Mode::inPlace, Mode::elsewhere};

struct Halves {
    explicit Halves(const Bytes& bytes)
        : data(bytes), first(data.size() - data.size() / 2),
          copy(Bytes(bytes.begin(), bytes.begin() + first)),
          second(bytes.begin() + first, bytes.end()) {}

    Lz4Call secondHalf(Mode mode, const GuardedBlock& dst) const {
        Lz4Call call{data.data() + first, position, data.size() - first, dst.data(), dst.size()};
        if (mode != Mode::none) {
            call.dict = mode == Mode::inPlace ? data.data() : copy.data();
            call.dictLen = first;
        }
        return call;
    }

    GuardedBlock data;
    int first;
    int position = first; // of the second half in the sequence of data
    GuardedBlock copy;
    Bytes second;
};

template <class Visit> void forEachDictEncoder(Visit visit) {
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

// Encodes the second half and checks that the block decodes to it with the dictionary of the mode
// and, unless the table is useless, not without it.
int encodedLength(const Lz4Encoder& encoder, const Halves& h, Mode mode, Lz4Tables& tables,
                  bool tableIsOfUse = true) {
    const GuardedBlock dst(static_cast<std::size_t>(LZ4_compressBound(h.data.size())));
    Lz4Call call = h.secondHalf(mode, dst);
    EXPECT_EQ(encoder.encode(call, tables), ntkStsNoErr);
    const int dictLen = mode == Mode::none ? 0 : h.first;
    EXPECT_EQ(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen, h.copy.data(), dictLen),
              h.second);
    if (mode != Mode::none && h.data.size() >= 600 && tableIsOfUse) {
        EXPECT_NE(decodedByLiblz4(dst.data(), call.dstLen, call.srcLen), h.second);
    }
    return call.dstLen;
}

TEST(Lz4Dict, MakesShorterBlocksThatNeedIt) {
    for (const std::size_t size : {600, 4000, 30001, 300000}) {
        const Halves h(textBytes(size));
        Halves preset(textBytes(size)); // an empty table has the position, but not the dictionary
        preset.position = 0;
        forEachDictEncoder([&](const Lz4Encoder& encoder) {
            Lz4Tables tables;
            const int alone = encodedLength(encoder, h, Mode::none, tables);
            for (const Mode mode : {Mode::inPlace, Mode::elsewhere}) {
                tables.clear();
                EXPECT_LT(encodedLength(encoder, h, mode, tables), alone) << "rebuilt " << size;
                tables.clear();
                EXPECT_LT(encodedLength(encoder, preset, mode, tables), alone) << "preset " << size;
                prime(encoder, h, tables);
                EXPECT_LT(encodedLength(encoder, h, mode, tables), alone) << "primed " << size;
            }
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

// The data that the table has seen are inaccessible; a second call finds the table at a position
// that does not fit and rebuilds it.
TEST(Lz4Dict, KeepsNoPointerToAnEarlierSource) {
    const Bytes bytes = textBytes(20000);
    const Halves h(bytes);
    forEachDictEncoder([&](const Lz4Encoder& encoder) {
        for (const Mode mode : modes) {
            Lz4Tables tables;
            Halves old(bytes);
            prime(encoder, old, tables);
            old.data.forbid();
            encodedLength(encoder, h, mode, tables);
            Lz4Tables fresh;
            EXPECT_EQ(encodedLength(encoder, h, mode, tables),
                      encodedLength(encoder, h, mode, fresh));
        }
    });
}

TEST(Lz4Dict, GoesOnOverManyBlocks) {
    const GuardedBlock data(textBytes(400000));
    constexpr int step = 20000;
    const GuardedBlock dst(std::size_t{step + 1000});
    forEachDictEncoder([&](const Lz4Encoder& encoder) {
        Lz4Tables tables;
        for (int at = 0; at < data.size(); at += step) {
            const Ntk8u* const src = data.data() + at;
            Lz4Call call{src, at, step, dst.data(), dst.size(), data.data(), at};
            ASSERT_EQ(encoder.encode(call, tables), ntkStsNoErr);
            ASSERT_EQ(decodedByLiblz4(dst.data(), call.dstLen, step, data.data(), at),
                      Bytes(src, src + step))
                << at;
        }
    });
}

// Sequences that are already in the destination, correct or not, without a call of liblz4.
TEST(Lz4Fill, KeepsOnlyWhatIsProven) {
    const GuardedBlock mixed(Bytes{'a', 'b', 'a', 'b', 'a', 'b', 'a', 'b', '0', '1', '2', '3',
                                   '4', '5', '6', '7', '8', '9', 'x', 'y', 'z', 'x', 'y', 'z'});
    const GuardedBlock run(Bytes(24, 'r'));
    struct Case {
        const char* name;
        const GuardedBlock& src;
        Bytes start;
        int srcBytes;
    };
    const Case cases[] = {
        {"true", mixed, {0x22, 'a', 'b', 2, 0}, 22},
        {"other literals", mixed, {0x22, 'a', 'c', 2, 0}, 18},
        {"other match", mixed, {0x22, 'a', 'b', 1, 0}, 18},
        {"distance of 0", mixed, {0x22, 'a', 'b', 0, 0}, 18},
        {"distance before everything", mixed, {0x22, 'a', 'b', 9, 0}, 18},
        {"match past the end", run, {0x1f, 'r', 1, 0, 10}, 18},
    };
    for (const Case& c : cases) {
        Bytes start = c.start;
        start.resize(20, 0);
        const GuardedBlock dst(start);
        const Ntk8u* const src = c.src.data();
        const ntk::lz4::Filled filled =
            ntk::lz4::fillDestination({src, 24, nullptr, 0}, dst.data(), start.size());
        EXPECT_EQ(filled.srcBytes, static_cast<std::size_t>(c.srcBytes)) << c.name;
        EXPECT_EQ(decodedByLiblz4(dst.data(), static_cast<int>(filled.blockBytes), c.srcBytes),
                  Bytes(src, src + c.srcBytes))
            << c.name;
    }
}

TEST(Lz4Tables, OfAnyContentsAreSafe) {
    const Halves h(textBytes(3000));
    for (const Bytes& noise : {Bytes(1, 0), Bytes(1, 0xff), Bytes(1, 0x7f), randomBytes(10007)}) {
        for (const Lz4Encoder& encoder : lz4Encoders) {
            SCOPED_TRACE(encoder.name);
            for (const Mode mode : modes) {
                Lz4Tables tables;
                tables.fill(noise);
                encodedLength(encoder, h, encoder.takesDictionary ? mode : Mode::none, tables);
            }
        }
    }
}

// The worst case: the position fits, but the rest is not what the previous call left.
// (test_lz4_sequence.cpp does so with the tables of the fast encoders.)
TEST(Lz4Tables, AreNotTrustedForTheirPosition) {
    using namespace ntk;
    using namespace ntk::lz4;
    const Halves h(textBytes(3000));
    const auto first = static_cast<Ntk32u>(h.first);
    for (const Ntk32u index : {first - 3, first, first + 700, first + 70000, 0x7fffffffU, ~0U}) {
        for (const Mode mode : {Mode::inPlace, Mode::elsewhere}) {
            SCOPED_TRACE(index);
            Lz4Tables tables;
            auto& stream = stateIn<HcState>(tables.hc()[0]).stream.internal_donotuse;
            auto& record = stateIn<HcRecord>(tables.hc()[1]);
            prime(lz4Hc, h, tables);
            ASSERT_EQ(record.position, h.first);
            std::fill_n(stream.hashTable, LZ4HC_HASHTABLESIZE, index + 65536);
            stream.nextToUpdate = index;
            encodedLength(lz4Hc, h, mode, tables, false);

            // All positions just above the lowest one in use, all links far below it.
            tables.clear();
            prime(lz4Hc, h, tables);
            record.endIndex = index;
            std::fill_n(stream.hashTable, LZ4HC_HASHTABLESIZE, index - first + 10);
            std::fill_n(stream.chainTable, LZ4HC_MAXD, Ntk16u{0x7fff});
            encodedLength(lz4Hc, h, mode, tables, false);
        }
    }
}

TEST(Lz4Tables, ScanFindsAnIndexAboveTheLimitAnywhere) {
    forEachKernel(ntk::lz4::noneAbove, [](ntk::lz4::IndexScanFunction& noneAbove) {
        for (const Ntk32u limit : {1000U, 0x7ffffffeU}) {
            std::vector<Ntk32u> words(128, limit);
            EXPECT_TRUE(noneAbove(words.data(), words.size(), limit));
            for (Ntk32u& word : words) {
                for (const Ntk32u bad : {limit + 1, 0x7fffffffU, 0x80000000U, ~0U}) {
                    word = bad;
                    EXPECT_FALSE(noneAbove(words.data(), words.size(), limit)) << bad;
                }
                word = limit;
            }
        }
    });
}

} // namespace
