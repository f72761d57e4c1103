// The stages of the bzip2 format against reference implementations, over whole and split data.
#include <gtest/gtest.h>

#include <algorithm>

#include "callerblocks.h"
#include "dc/bz2/bytekernels.h"
#include "guarded.h"
#include "kernels.h"
#include "ntkdc.h"
#include "oracles/bz2_dictionary.h"
#include "oracles/bz2_mtf.h"
#include "oracles/bz2_rle.h"
#include "oracles/bz2_z1z2.h"
#include "pieces.h"
#include "samples.h"

namespace {

using Symbols = std::vector<Ntk16u>;

// Runs of all lengths, mostly short, of byte values that are mostly small.
Bytes mixedBytes(std::size_t size, unsigned seed) {
    std::mt19937 generator(seed);
    Bytes bytes;
    while (bytes.size() < size) {
        const auto value = static_cast<Ntk8u>(generator() % 256 >> generator() % 8);
        bytes.insert(bytes.end(), 1 + (generator() % 1024 >> generator() % 11), value);
    }
    bytes.resize(size);
    return bytes;
}

std::vector<Bytes> stageSamples() {
    std::vector<Bytes> all;
    for (const Sample& s : samples()) {
        all.push_back(s.bytes);
    }
    for (unsigned seed = 0; seed < 60; seed++) {
        all.push_back(mixedBytes(seed * 23, seed));
    }
    all.push_back(mixedBytes(40000, 99));
    return all;
}

Bytes newRleState() {
    Bytes state = blockFor(ntksRLEGetSize_BZ2_8u);
    EXPECT_EQ(ntksEncodeRLEInit_BZ2_8u(state.data()), ntkStsNoErr);
    return state;
}

Bytes encodeRle(const Bytes& bytes, Pieces pieces, Bytes& state) {
    Bytes out;
    const auto encode = [&](Ntk8u** src, int* srcLen, Ntk8u** dst, int* dstLen) {
        int written = *dstLen;
        const NtkStatus status = ntksEncodeRLE_BZ2_8u(src, srcLen, *dst, &written, state.data());
        *dst += written;
        *dstLen -= written;
        EXPECT_EQ(status, *srcLen == 0 ? ntkStsNoErr : ntkStsDstFull);
        return status;
    };
    EXPECT_EQ(runInPieces(bytes, pieces, out, encode), ntkStsNoErr);
    const GuardedBlock last(5);
    int written = 0;
    EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(last.data(), &written, state.data()), ntkStsNoErr);
    out.insert(out.end(), last.data(), last.data() + written);
    return out;
}

Bytes decodeRle(const Bytes& bytes, Pieces pieces, Bytes& state) {
    Bytes out;
    const auto decode = [&](Ntk8u** src, int* srcLen, Ntk8u** dst, int* dstLen) {
        return ntksDecodeRLEState_BZ2_8u(src, srcLen, dst, dstLen, state.data());
    };
    EXPECT_EQ(runInPieces(bytes, pieces, out, decode), ntkStsNoErr);
    return out;
}

void checkRle(const Bytes& bytes, Pieces pieces) {
    const Bytes wanted = oracle::rleEncoded(bytes);
    Bytes state = newRleState();
    ASSERT_EQ(encodeRle(bytes, pieces, state), wanted) << bytes.size() << " " << pieces.src;
    Ntk8u inUse[256];
    EXPECT_EQ(ntksRLEGetInUseTable_8u(inUse, state.data()), ntkStsNoErr);
    for (int value = 0; value < 256; value++) {
        const bool occurs = std::find(wanted.begin(), wanted.end(), value) != wanted.end();
        ASSERT_EQ(inUse[value], occurs) << value;
    }
    ASSERT_EQ(decodeRle(wanted, pieces, state), bytes) << bytes.size() << " " << pieces.src;
}

} // namespace

TEST(Bz2Rle, AgreesWithTheOracleAndDecodesHoweverItIsSplit) {
    for (const Bytes& bytes : stageSamples()) {
        checkRle(bytes, {whole, 200000});
        for (const Pieces pieces : {Pieces{1, 5}, {7, 6}, {40, 64}, {300, 19}}) {
            if (bytes.size() <= 2000) {
                checkRle(bytes, pieces);
            }
        }
    }
}

TEST(Bz2Rle, RunsAtEveryPositionAndLength) {
    for (std::size_t before = 0; before < 40; before++) {
        for (const std::size_t run :
             {1, 2, 3, 4, 5, 6, 16, 17, 254, 255, 256, 258, 259, 510, 600}) {
            Bytes bytes = textBytes(before, 3);
            bytes.insert(bytes.end(), run, 'r');
            for (const std::size_t after : {0, 1, 30}) {
                const Bytes tail = textBytes(after, 5);
                bytes.insert(bytes.end(), tail.begin(), tail.end());
                checkRle(bytes, {13, 1000});
                checkRle(bytes, {900, 21});
            }
        }
    }
}

TEST(Bz2Rle, AFlushWritesThePendingRunOnce) {
    for (std::size_t run = 0; run <= 5; run++) {
        Bytes state = newRleState();
        const Bytes bytes(run, 'r');
        EXPECT_EQ(encodeRle(bytes, {whole, 0}, state), oracle::rleEncoded(bytes));
        EXPECT_EQ(encodeRle({}, {whole, 0}, state), Bytes());
    }
}

TEST(Bz2Dictionary, AgreesWithTheOracleForEveryByteAndKernel) {
    for (const Ntk64u features : {machineFeatures(), Ntk64u{NTK_CPU_SSE2}}) {
        ntkSetCpuFeatures(features);
        for (const int used : {0, 1, 100, 256}) {
            Ntk8u inUse[256] = {};
            std::fill_n(inUse + (256 - used) / 2, used, Ntk8u{1});
            for (const std::size_t length : {0, 1, 63, 64, 65, 1000}) {
                const Bytes bytes = randomBytes(length, 8);
                const GuardedBlock block(bytes);
                int size = -1;
                ASSERT_EQ(ntksReduceDictionary_8u_I(inUse, block.data(), block.size(), &size), 0);
                EXPECT_EQ(size, used);
                const Bytes ranks(block.data(), block.data() + length);
                ASSERT_EQ(ranks, oracle::reduced(inUse, bytes)) << used;
                ASSERT_EQ(ntksExpandDictionary_8u_I(inUse, block.data(), block.size(), size), 0);
                ASSERT_EQ(Bytes(block.data(), block.data() + length),
                          oracle::expanded(inUse, ranks))
                    << used;
            }
        }
    }
    ntkInit();
}

TEST(Bz2Dictionary, SizesThatDoNotFitTheTable) {
    Ntk8u inUse[256] = {};
    inUse[10] = inUse[20] = 7; // any value but 0
    const struct {
        int size;
        NtkStatus status;
        Bytes expanded;
    } cases[] = {{2, ntkStsNoErr, {10, 20, 2}},
                 {1, ntkStsNoErr, {10, 1, 2}},
                 {256, ntkStsNoErr, {10, 20, 2}},
                 {257, ntkStsBadValue, {0, 1, 2}},
                 {-1, ntkStsBadValue, {0, 1, 2}}};
    for (const auto& c : cases) {
        Bytes bytes = {0, 1, 2};
        EXPECT_EQ(ntksExpandDictionary_8u_I(inUse, bytes.data(), 3, c.size), c.status) << c.size;
        EXPECT_EQ(bytes, c.expanded) << c.size;
    }
}

// The list is kept from piece to piece; the inverse works in place, too.
TEST(Bz2Mtf, EveryKernelAgreesWithTheOracleAndDecodes) {
    std::vector<Bytes> all = stageSamples();
    all.push_back({});
    for (int value = 255; value >= 0; value--) { // from every position
        all.back().push_back(static_cast<Ntk8u>(value));
        all.back().push_back(static_cast<Ntk8u>(value * 7));
    }
    const auto check = [&](ntk::bz2::MoveToFront& forward, ntk::bz2::MoveToFront& inverse) {
        oracle::Mtf mtf;
        Bytes list = mtf.list();
        Bytes inverseList = list;
        for (const Bytes& bytes : all) {
            const GuardedBlock source(bytes);
            const GuardedBlock positions(bytes.size());
            forward(source.data(), positions.data(), bytes.size(), list.data());
            const Bytes out(positions.data(), positions.data() + bytes.size());
            ASSERT_EQ(out, mtf.forward(bytes)) << bytes.size();
            ASSERT_EQ(list, mtf.list());
            inverse(positions.data(), positions.data(), bytes.size(), inverseList.data());
            ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), positions.data())) << bytes.size();
            ASSERT_EQ(inverseList, mtf.list());
        }
    };
    forEachKernel(ntk::bz2::mtfForwardKernel, [&](ntk::bz2::MoveToFront& forward) {
        forEachKernel(ntk::bz2::mtfInverseKernel,
                      [&](ntk::bz2::MoveToFront& inverse) { check(forward, inverse); });
    });
}

namespace {

// Encodes into destinations of this room, continuing after every stop.
Symbols encodeZ1Z2(const Bytes& bytes, std::size_t room, std::vector<int>& frequencies) {
    Symbols symbols;
    const GuardedBlock source(bytes);
    Ntk8u* from = source.data();
    int left = source.size();
    NtkStatus status = ntkStsDstFull;
    while (status == ntkStsDstFull && !testing::Test::HasFailure()) {
        const GuardedBlock destination(2 * room);
        auto* const to = reinterpret_cast<Ntk16u*>(destination.data());
        int count = static_cast<int>(room);
        status = ntksEncodeZ1Z2_BZ2_8u16u(&from, &left, to, &count, frequencies.data());
        EXPECT_TRUE(count > 0 || bytes.empty()) << room;
        symbols.insert(symbols.end(), to, to + count);
    }
    EXPECT_EQ(status, ntkStsNoErr);
    EXPECT_EQ(from, source.data() + source.size());
    return symbols;
}

Bytes decodeZ1Z2(Symbols symbols, std::size_t room) {
    Bytes decoded;
    symbols.reserve(1); // no null
    Ntk16u* from = symbols.data();
    int left = static_cast<int>(symbols.size());
    NtkStatus status = ntkStsDstFull;
    while (status == ntkStsDstFull && !testing::Test::HasFailure()) {
        const GuardedBlock destination(room);
        int length = destination.size();
        status = ntksDecodeZ1Z2_BZ2_16u8u(&from, &left, destination.data(), &length);
        EXPECT_TRUE(length > 0 || symbols.empty()) << room;
        decoded.insert(decoded.end(), destination.data(), destination.data() + length);
    }
    EXPECT_EQ(status, ntkStsNoErr);
    EXPECT_EQ(left, 0);
    return decoded;
}

} // namespace

TEST(Bz2Z1Z2, AgreesWithTheOracleAndDecodesInExactlyTheRoomNeeded) {
    std::vector<int> frequencies(258, 5);
    std::vector<int> wantedFrequencies = frequencies;
    for (const Bytes& bytes : stageSamples()) {
        const Symbols wanted = oracle::z1z2Encoded(bytes);
        for (const Ntk16u symbol : wanted) {
            wantedFrequencies[symbol]++;
        }
        ASSERT_EQ(encodeZ1Z2(bytes, wanted.size(), frequencies), wanted) << bytes.size();
        EXPECT_EQ(frequencies, wantedFrequencies);
        ASSERT_EQ(decodeZ1Z2(wanted, bytes.size()), bytes) << bytes.size();
    }
}

TEST(Bz2Z1Z2, AFullDestinationStopsBeforeASymbolOrRun) {
    const Bytes bytes = mixedBytes(1000, 12);
    const Symbols wanted = oracle::z1z2Encoded(bytes);
    std::vector<int> frequencies(258);
    for (std::size_t room = 10; room < 260; room++) {
        ASSERT_EQ(encodeZ1Z2(bytes, room, frequencies), wanted) << room;
        ASSERT_EQ(decodeZ1Z2(wanted, 1023 + room), bytes) << room;
    }
}

TEST(Bz2Z1Z2, DestinationsThatEndAnywhere) {
    const Bytes bytes = mixedBytes(1500, 7);
    const Symbols symbols = oracle::z1z2Encoded(bytes);
    for (std::size_t room = 0; room < bytes.size(); room++) {
        const GuardedBlock destination(room);
        Symbols source = symbols;
        Ntk16u* from = source.data();
        int count = static_cast<int>(source.size());
        int length = destination.size();
        ASSERT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&from, &count, destination.data(), &length),
                  ntkStsDstFull);
        ASSERT_TRUE(std::equal(destination.data(), destination.data() + length, bytes.begin()));
        const Symbols rest(from, from + count);
        ASSERT_EQ(rest, oracle::z1z2Encoded(Bytes(bytes.begin() + length, bytes.end()))) << room;
    }
}

// Each at the start, and far enough into a block to be within whole windows.
TEST(Bz2Z1Z2, MalformedSymbols) {
    const struct {
        const char* name;
        Symbols symbols;
        NtkStatus status;
    } cases[] = {{"beyond the bytes", {257}, ntkStsBadSrcData},
                 {"largest", {0xffff}, ntkStsBadSrcData},
                 {"a negative number", {0x8000}, ntkStsBadSrcData},
                 {"longest run", Symbols(31, 0), ntkStsDstFull},
                 {"run too long", Symbols(31, 1), ntkStsBadSrcData},
                 {"run of a window", Symbols(64, 0), ntkStsBadSrcData},
                 {"run of windows", Symbols(300, 1), ntkStsBadSrcData}};
    for (const auto& c : cases) {
        for (const std::size_t before : {0, 100, 130, 170}) {
            Symbols symbols(before, 3);
            symbols.insert(symbols.end(), c.symbols.begin(), c.symbols.end());
            symbols.insert(symbols.end(), 200, 4);
            const GuardedBlock decoded(1000);
            Ntk16u* from = symbols.data();
            int count = static_cast<int>(symbols.size());
            int length = decoded.size();
            EXPECT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&from, &count, decoded.data(), &length), c.status)
                << c.name << before;
            const bool failed = c.status < 0;
            EXPECT_EQ(length, failed ? 1000 : static_cast<int>(before)) << c.name;
            EXPECT_EQ(from, symbols.data() + (failed ? 0 : before)) << c.name;
            EXPECT_EQ(count, static_cast<int>(symbols.size() - (failed ? 0 : before))) << c.name;
        }
    }
}

namespace {

struct Block {
    Symbols symbols;
    int idx = 0;
    int sizeDictionary = 0;
    Ntk8u inUse[256] = {};
};

// Encoded by the oracles except for the transform: the library's is faster and has tests of its
// own.
Block blockOf(const Bytes& text) {
    Block block;
    for (const Ntk8u b : text) {
        block.inUse[b] = 1;
    }
    const int length = static_cast<int>(text.size());
    block.sizeDictionary = static_cast<int>(std::count(block.inUse, block.inUse + 256, 1));
    const Bytes ranks = oracle::reduced(block.inUse, text);
    Bytes buffer = blockFor(ntksBWTFwdGetSize_8u, length);
    Bytes sorted(text.size());
    EXPECT_EQ(ntksBWTFwd_8u(ranks.data(), sorted.data(), length, &block.idx, buffer.data()), 0);
    block.symbols = oracle::z1z2Encoded(oracle::Mtf().forward(sorted));
    return block;
}

NtkStatus decodeBlock(const Block& block, const GuardedBlock& decoded, int* length) {
    const GuardedBlock buffer(blockFor(ntksBWTInvGetSize_8u, decoded.size()));
    *length = decoded.size();
    return ntksDecodeBlock_BZ2_16u8u(block.symbols.data(), static_cast<int>(block.symbols.size()),
                                     decoded.data(), length, block.idx, block.sizeDictionary,
                                     block.inUse, buffer.data());
}

} // namespace

TEST(Bz2DecodeBlock, RestoresTheText) {
    for (const Bytes& text : stageSamples()) {
        if (text.empty()) {
            continue;
        }
        const Block block = blockOf(text);
        const GuardedBlock decoded(text.size());
        int length = 0;
        ASSERT_EQ(decodeBlock(block, decoded, &length), ntkStsNoErr);
        ASSERT_EQ(length, decoded.size());
        ASSERT_TRUE(std::equal(text.begin(), text.end(), decoded.data())) << text.size();
        const GuardedBlock tooSmall(text.size() - 1);
        EXPECT_EQ(decodeBlock(block, tooSmall, &length), ntkStsDstTooSmall);
        EXPECT_EQ(length, tooSmall.size());
    }
}

TEST(Bz2DecodeBlock, MalformedBlocks) {
    const Block good = blockOf(textBytes(300));
    static const auto beyond = static_cast<Ntk16u>(good.sizeDictionary + 1);
    const struct {
        const char* name;
        void (*spoil)(Block&);
        NtkStatus status = ntkStsBadSrcData;
    } cases[] = {
        {"position beyond the dictionary", [](Block& b) { b.symbols[200] = beyond; }},
        {"and at the end", [](Block& b) { b.symbols.back() = beyond; }},
        {"endless run", [](Block& b) { b.symbols.assign(1000, 1); }},
        {"row of no text", [](Block& b) { b.idx = 300; }, ntkStsBadValue},
        {"negative row", [](Block& b) { b.idx = -1; }, ntkStsBadValue},
        {"dictionary of another size", [](Block& b) { b.sizeDictionary--; }, ntkStsBadValue},
        {"nothing in use", [](Block& b) { b = {Symbols(2, 0)}; }},
        {"empty",
         [](Block& b) {
             b.symbols.clear();
             b.idx = 0;
         },
         ntkStsNoErr},
    };
    for (const auto& c : cases) {
        Block block = good;
        c.spoil(block);
        const GuardedBlock decoded(300);
        int length = -1;
        EXPECT_EQ(decodeBlock(block, decoded, &length), c.status) << c.name;
        EXPECT_EQ(length, c.status == ntkStsNoErr ? 0 : 300) << c.name;
    }
    std::mt19937 generator(4);
    for (int i = 0; i < 3000; i++) { // mutations: any status, no access outside
        Block block = good;
        for (unsigned k = 0; k <= generator() % 8; k++) {
            block.symbols[generator() % block.symbols.size()] =
                static_cast<Ntk16u>(generator() >> generator() % 32);
        }
        const GuardedBlock decoded(300);
        int length = 0;
        decodeBlock(block, decoded, &length);
        ASSERT_LE(length, 300);
    }
}
