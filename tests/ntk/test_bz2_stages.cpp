// The stages of the bzip2 format against plain ones, byte by byte, over whole and cut data.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <numeric>

#include "dc/bz2/bytekernels.h"
#include "guarded.h"
#include "ntkdc.h"
#include "samples.h"

namespace {

using Symbols = std::vector<Ntk16u>;

// Runs of all lengths, short ones more often, of values of which small ones are more frequent.
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

// ---- Plain versions ----------------------------------------------------------------------------

Bytes plainRle(const Bytes& bytes) {
    Bytes out;
    for (std::size_t i = 0, n = 0; i < bytes.size(); i += n) {
        for (n = 1; n < 255 && i + n < bytes.size() && bytes[i + n] == bytes[i]; n++) {
        }
        out.insert(out.end(), std::min<std::size_t>(n, 4), bytes[i]);
        if (n >= 4) {
            out.push_back(static_cast<Ntk8u>(n - 4));
        }
    }
    return out;
}

// Positions, and the list as it is afterwards.
Bytes plainMtf(const Bytes& bytes, Bytes& list) {
    Bytes out;
    for (const Ntk8u byte : bytes) {
        const auto at = std::find(list.begin(), list.end(), byte);
        out.push_back(static_cast<Ntk8u>(at - list.begin()));
        std::rotate(list.begin(), at, at + 1);
    }
    return out;
}

// By division, not by bits.
Symbols plainZ1Z2(const Bytes& positions) {
    Symbols out;
    for (std::size_t i = 0, n = 0; i < positions.size(); i += std::max<std::size_t>(n, 1)) {
        for (n = 0; i + n < positions.size() && positions[i + n] == 0; n++) {
        }
        for (std::size_t left = n; left > 0;) {
            const std::size_t digit = left % 2 == 1 ? 1 : 2;
            out.push_back(static_cast<Ntk16u>(digit - 1));
            left = (left - digit) / 2;
        }
        if (n == 0) {
            out.push_back(static_cast<Ntk16u>(positions[i] + 1));
        }
    }
    return out;
}

Bytes newList() {
    Bytes list(256);
    std::iota(list.begin(), list.end(), Ntk8u{0});
    return list;
}

// ---- The library's, fed with sources of `piece` and destinations of `room` elements -------------

Bytes newRleState() {
    int size = 0;
    EXPECT_EQ(ntksRLEGetSize_BZ2_8u(&size), ntkStsNoErr);
    Bytes state(static_cast<std::size_t>(size), 0xee);
    EXPECT_EQ(ntksEncodeRLEInit_BZ2_8u(state.data()), ntkStsNoErr);
    return state;
}

Bytes encodeRle(const Bytes& bytes, int piece, int room, Bytes& state) {
    const GuardedBlock source(bytes);
    const GuardedBlock destination(static_cast<std::size_t>(room));
    Bytes out;
    Ntk8u* p = source.data();
    const Ntk8u* const end = p + source.size();
    NtkStatus status = ntkStsNoErr;
    while (p < end || status == ntkStsDstFull) {
        int left = static_cast<int>(std::min<std::ptrdiff_t>(piece, end - p));
        const Ntk8u* const pieceEnd = p + left;
        int written = room;
        status = ntksEncodeRLE_BZ2_8u(&p, &left, destination.data(), &written, state.data());
        EXPECT_EQ(p + left, pieceEnd);
        EXPECT_EQ(status, left == 0 ? ntkStsNoErr : ntkStsDstFull);
        out.insert(out.end(), destination.data(), destination.data() + written);
    }
    int written = room;
    EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(destination.data(), &written, state.data()), ntkStsNoErr);
    out.insert(out.end(), destination.data(), destination.data() + written);
    return out;
}

Bytes decodeRle(const Bytes& bytes, int piece, int room, Bytes& state) {
    const GuardedBlock source(bytes);
    const GuardedBlock destination(static_cast<std::size_t>(room));
    Bytes out;
    Ntk8u* p = source.data();
    const Ntk8u* const end = p + source.size();
    NtkStatus status = ntkStsNoErr;
    while (p < end || status == ntkStsDstFull) {
        int left = static_cast<int>(std::min<std::ptrdiff_t>(piece, end - p));
        int roomLeft = room;
        Ntk8u* to = destination.data();
        status = ntksDecodeRLEState_BZ2_8u(&p, &left, &to, &roomLeft, state.data());
        EXPECT_GE(status, 0);
        EXPECT_EQ(to + roomLeft, destination.data() + room);
        EXPECT_EQ(status == ntkStsNoErr, left == 0 && status != ntkStsDstFull);
        out.insert(out.end(), destination.data(), to);
    }
    return out;
}

} // namespace

TEST(Bz2Rle, AsThePlainOneAndBackHoweverItIsCut) {
    const std::pair<int, int> cuts[] = {{INT_MAX, 200000}, {1, 5}, {7, 6}, {40, 64}, {300, 19}};
    for (const Bytes& bytes : stageSamples()) {
        const Bytes wanted = plainRle(bytes);
        for (const auto& [piece, room] : cuts) {
            if (bytes.size() > 2000 && room < 1000) {
                continue;
            }
            Bytes state = newRleState();
            ASSERT_EQ(encodeRle(bytes, piece, room, state), wanted) << bytes.size() << " " << piece;
            Ntk8u inUse[256];
            EXPECT_EQ(ntksRLEGetInUseTable_8u(inUse, state.data()), ntkStsNoErr);
            for (int value = 0; value < 256; value++) {
                const bool occurs = std::find(wanted.begin(), wanted.end(), value) != wanted.end();
                ASSERT_EQ(inUse[value], occurs) << value;
            }
            ASSERT_EQ(decodeRle(wanted, piece, room, state), bytes) << bytes.size() << " " << piece;
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
                Bytes state = newRleState();
                const Bytes wanted = plainRle(bytes);
                ASSERT_EQ(encodeRle(bytes, 13, 1000, state), wanted) << before << " " << run;
                ASSERT_EQ(encodeRle(bytes, 900, 21, state), wanted) << before << " " << run;
                ASSERT_EQ(decodeRle(wanted, 17, 29, state), bytes) << before << " " << run;
            }
        }
    }
}

TEST(Bz2Rle, AFlushWritesThePendingRunOnce) {
    for (int run = 0; run <= 5; run++) {
        Bytes state = newRleState();
        Bytes bytes(5, 'r');
        Ntk8u* p = bytes.data();
        int left = run;
        const Bytes wanted = plainRle(Bytes(static_cast<std::size_t>(run), 'r'));
        const GuardedBlock out(wanted.size());
        int written = 0;
        ASSERT_EQ(ntksEncodeRLE_BZ2_8u(&p, &left, out.data(), &written, state.data()), 0);
        EXPECT_EQ(written, 0);
        EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(out.data(), &written, state.data()), 0);
        EXPECT_EQ(Bytes(out.data(), out.data() + written), wanted);
        EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(out.data(), &written, state.data()), 0);
        EXPECT_EQ(written, 0);
    }
}

TEST(Bz2Dictionary, RanksAndBackForEveryByteAndKernel) {
    Ntk64u machine = 0;
    ntkGetCpuFeatures(&machine, nullptr);
    for (const Ntk64u features : {machine, Ntk64u{NTK_CPU_SSE2}}) {
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
                for (std::size_t i = 0; i < length; i++) {
                    ASSERT_EQ(block.data()[i], std::count(inUse, inUse + bytes[i], 1)) << i;
                }
                Bytes ranks(block.data(), block.data() + length);
                ASSERT_EQ(ntksExpandDictionary_8u_I(inUse, block.data(), block.size(), size), 0);
                for (std::size_t i = 0; i < length; i++) {
                    const int wanted = ranks[i] < used ? ranks[i] + (256 - used) / 2 : ranks[i];
                    ASSERT_EQ(block.data()[i], wanted) << used << " " << i;
                }
            }
        }
    }
    ntkSetCpuFeatures(machine);
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

// The list goes on from piece to piece; the inverse works in place, too.
TEST(Bz2Mtf, EveryKernelAsThePlainOneAndBack) {
    Ntk64u machine = 0;
    ntkGetCpuFeatures(&machine, nullptr);
    std::vector<Bytes> all = stageSamples();
    all.push_back({});
    for (int value = 255; value >= 0; value--) { // from every position
        all.back().push_back(static_cast<Ntk8u>(value));
        all.back().push_back(static_cast<Ntk8u>(value * 7));
    }
    const auto check = [&](const auto& forward, const auto& inverse) {
        SCOPED_TRACE(std::string(forward.name) + " " + inverse.name);
        Bytes plainList = newList();
        Bytes list = newList();
        Bytes inverseList = newList();
        for (const Bytes& bytes : all) {
            const GuardedBlock source(bytes);
            const GuardedBlock positions(bytes.size());
            forward.run(source.data(), positions.data(), bytes.size(), list.data());
            const Bytes out(positions.data(), positions.data() + bytes.size());
            ASSERT_EQ(out, plainMtf(bytes, plainList)) << bytes.size();
            ASSERT_EQ(list, plainList);
            inverse.run(positions.data(), positions.data(), bytes.size(), inverseList.data());
            ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), positions.data())) << bytes.size();
            ASSERT_EQ(inverseList, plainList);
        }
    };
    for (const auto& forward : ntk::bz2::mtfForwardKernel.candidates()) {
        for (const auto& inverse : ntk::bz2::mtfInverseKernel.candidates()) {
            if (ntk::isEligible(forward, machine, machine) &&
                ntk::isEligible(inverse, machine, machine)) {
                check(forward, inverse);
            }
        }
    }
}

TEST(Bz2Z1Z2, AsThePlainOneAndBackIntoExactlyTheRoomNeeded) {
    std::vector<int> frequencies(258, 5);
    for (Bytes bytes : stageSamples()) {
        const Symbols wanted = plainZ1Z2(bytes);
        std::vector<int> wantedFrequencies = frequencies;
        for (const Ntk16u symbol : wanted) {
            wantedFrequencies[symbol]++;
        }
        const GuardedBlock source(bytes);
        const GuardedBlock symbols(2 * wanted.size());
        Ntk8u* from = source.data();
        int left = source.size();
        auto* const to = reinterpret_cast<Ntk16u*>(symbols.data());
        int count = static_cast<int>(wanted.size());
        ASSERT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&from, &left, to, &count, frequencies.data()), 0);
        ASSERT_EQ(Symbols(to, to + count), wanted) << bytes.size();
        EXPECT_EQ(from, source.data() + source.size());
        EXPECT_EQ(frequencies, wantedFrequencies);
        const GuardedBlock decoded(bytes.size());
        Ntk16u* symbol = to;
        int length = decoded.size();
        ASSERT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&symbol, &count, decoded.data(), &length), 0);
        ASSERT_EQ(length, decoded.size());
        EXPECT_EQ(count, 0);
        ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), decoded.data())) << bytes.size();
    }
}

// Stopped where the destination is full and gone on with, at every capacity.
TEST(Bz2Z1Z2, AFullDestinationStopsBeforeASymbolOrRun) {
    const Bytes bytes = mixedBytes(1000, 12);
    const Symbols wanted = plainZ1Z2(bytes);
    for (int room = 10; room < 260; room++) {
        Symbols symbols;
        Bytes source = bytes;
        std::vector<int> frequencies(258);
        Ntk8u* from = source.data();
        int left = static_cast<int>(source.size());
        NtkStatus status = ntkStsDstFull;
        while (status == ntkStsDstFull) {
            const GuardedBlock destination(2 * static_cast<std::size_t>(room));
            auto* const to = reinterpret_cast<Ntk16u*>(destination.data());
            int count = room;
            status = ntksEncodeZ1Z2_BZ2_8u16u(&from, &left, to, &count, frequencies.data());
            ASSERT_GT(count, 0);
            symbols.insert(symbols.end(), to, to + count);
        }
        ASSERT_EQ(symbols, wanted) << room;
        Bytes decoded;
        Ntk16u* symbol = symbols.data();
        int count = static_cast<int>(symbols.size());
        for (status = ntkStsDstFull; status == ntkStsDstFull;) {
            const GuardedBlock destination(1023 + static_cast<std::size_t>(room));
            int length = destination.size();
            status = ntksDecodeZ1Z2_BZ2_16u8u(&symbol, &count, destination.data(), &length);
            ASSERT_GT(length, 0);
            decoded.insert(decoded.end(), destination.data(), destination.data() + length);
        }
        ASSERT_EQ(decoded, bytes) << room;
    }
}

TEST(Bz2Z1Z2, DestinationsThatEndAnywhere) {
    const Bytes bytes = mixedBytes(1500, 7);
    const Symbols symbols = plainZ1Z2(bytes);
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
        ASSERT_EQ(rest, plainZ1Z2(Bytes(bytes.begin() + length, bytes.end()))) << room;
    }
}

// Each with nothing before it, and deep enough in a block that whole windows meet it.
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

// Made of the plain stages; the sorting step is the library's, which has its own judges.
Block blockOf(const Bytes& text) {
    Block block;
    Bytes bytes = text;
    for (const Ntk8u b : text) {
        block.inUse[b] = 1;
    }
    int size = 0;
    const int length = static_cast<int>(text.size());
    EXPECT_EQ(ntksReduceDictionary_8u_I(block.inUse, bytes.data(), length, &block.sizeDictionary),
              0);
    EXPECT_EQ(ntksBWTFwdGetSize_8u(length, &size), 0);
    Bytes buffer(static_cast<std::size_t>(size));
    Bytes sorted(text.size());
    EXPECT_EQ(ntksBWTFwd_8u(bytes.data(), sorted.data(), length, &block.idx, buffer.data()), 0);
    Bytes list = newList();
    block.symbols = plainZ1Z2(plainMtf(sorted, list));
    return block;
}

NtkStatus decodeBlock(const Block& block, const GuardedBlock& decoded, int* length) {
    int size = 0;
    EXPECT_EQ(ntksBWTInvGetSize_8u(decoded.size(), &size), 0);
    const GuardedBlock buffer(static_cast<std::size_t>(size));
    *length = decoded.size();
    return ntksDecodeBlock_BZ2_16u8u(block.symbols.data(), static_cast<int>(block.symbols.size()),
                                     decoded.data(), length, block.idx, block.sizeDictionary,
                                     block.inUse, buffer.data());
}

} // namespace

TEST(Bz2DecodeBlock, GivesTheTextBack) {
    for (const Bytes& text : stageSamples()) {
        if (text.empty()) {
            continue;
        }
        Block block = blockOf(text);
        const GuardedBlock decoded(text.size());
        int length = 0;
        ASSERT_EQ(decodeBlock(block, decoded, &length), ntkStsNoErr);
        ASSERT_EQ(length, decoded.size());
        ASSERT_TRUE(std::equal(text.begin(), text.end(), decoded.data())) << text.size();
        const GuardedBlock tooSmall(text.size() - 1);
        block.idx = 0; // some rotation
        EXPECT_EQ(decodeBlock(block, tooSmall, &length), ntkStsDstTooSmall);
        EXPECT_EQ(length, tooSmall.size());
        EXPECT_EQ(decodeBlock(block, decoded, &length), ntkStsNoErr);
        Bytes wanted = text;
        std::sort(wanted.begin(), wanted.end());
        std::sort(decoded.data(), decoded.data() + decoded.size());
        EXPECT_TRUE(std::equal(wanted.begin(), wanted.end(), decoded.data())) << text.size();
    }
}

TEST(Bz2DecodeBlock, MalformedBlocks) {
    const Block good = blockOf(textBytes(300));
    const int dictionary = good.sizeDictionary;
    const auto beyond = static_cast<Ntk16u>(dictionary + 1);
    const struct {
        const char* name;
        void (*spoil)(Block&, Ntk16u);
        NtkStatus status;
    } cases[] = {
        {"position beyond the dictionary", [](Block& b, Ntk16u symbol) { b.symbols[200] = symbol; },
         ntkStsBadSrcData},
        {"and at the end", [](Block& b, Ntk16u symbol) { b.symbols.back() = symbol; },
         ntkStsBadSrcData},
        {"row of no text", [](Block& b, Ntk16u) { b.idx = 300; }, ntkStsBadValue},
        {"negative row", [](Block& b, Ntk16u) { b.idx = -1; }, ntkStsBadValue},
        {"dictionary of another size", [](Block& b, Ntk16u) { b.sizeDictionary--; },
         ntkStsBadValue},
        {"nothing in use",
         [](Block& b, Ntk16u) {
             std::fill_n(b.inUse, 256, Ntk8u{0});
             b.sizeDictionary = 0;
             b.symbols.assign(2, 0);
         },
         ntkStsBadSrcData},
        {"endless run", [](Block& b, Ntk16u) { b.symbols.assign(1000, 1); }, ntkStsBadSrcData},
        {"empty",
         [](Block& b, Ntk16u) {
             b.symbols = {};
             b.symbols.reserve(1);
             b.idx = 0;
         },
         ntkStsNoErr},
    };
    for (const auto& c : cases) {
        Block block = good;
        c.spoil(block, beyond);
        const GuardedBlock decoded(300);
        int length = -1;
        EXPECT_EQ(decodeBlock(block, decoded, &length), c.status) << c.name;
        EXPECT_EQ(length, c.status == ntkStsNoErr ? 0 : 300) << c.name;
    }
    std::mt19937 generator(4);
    for (int i = 0; i < 3000; i++) { // mutations: some status, nothing outside
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

// Null pointers, then lengths.
TEST(Bz2Stages, ArgumentsAreChecked) {
    Bytes state = newRleState();
    Ntk8u bytes[256] = {};
    Ntk16u symbols[4] = {};
    int frequencies[258] = {};
    Ntk8u* p = bytes;
    Ntk16u* s = symbols;
    int length = 4;
    int negative = -1;
    int size = 0;
    Ntk8u* const st = state.data();
    EXPECT_EQ(ntksEncodeRLE_BZ2_8u(&p, &length, nullptr, &length, st), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeRLE_BZ2_8u(&p, &negative, bytes, &length, st), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(bytes, nullptr, st), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeRLEState_BZ2_8u(&p, &length, &p, &negative, st), ntkStsBadSize);
    EXPECT_EQ(ntksRLEGetInUseTable_8u(nullptr, st), ntkStsNullPtr);
    EXPECT_EQ(ntksReduceDictionary_8u_I(bytes, bytes, -1, &size), ntkStsBadSize);
    EXPECT_EQ(ntksExpandDictionary_8u_I(bytes, nullptr, 4, 1), ntkStsNullPtr);
    EXPECT_EQ(ntksMTFGetSize_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksMTFInit_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksMTFFwd_8u(bytes, bytes, -1, st), ntkStsBadSize);
    EXPECT_EQ(ntksMTFInv_8u(bytes, nullptr, 1, st), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&p, &length, s, &negative, frequencies), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&s, &length, bytes, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeBlock_BZ2_16u8u(s, -1, bytes, &length, 0, 0, bytes, st), ntkStsBadSize);
    EXPECT_EQ(p, bytes);
    EXPECT_EQ(length, 4);
}
