// The inflater on malformed, truncated and damaged streams, with zlib as the reference, and on bad
// arguments.
#include <gtest/gtest.h>

#include "guarded.h"
#include "inflatecalls.h"

namespace {

// Code lengths of consecutive symbols.
struct Lengths {
    unsigned symbol;
    std::vector<unsigned> lengths;
};

BitWriter fixedBlock() {
    return BitWriter().bits(1, 1).bits(1, 2);
}

BitWriter codeCounts(unsigned literalCodes, unsigned distanceCodes, unsigned lengthCodes,
                     unsigned isLast = 1) {
    return BitWriter()
        .bits(isLast, 1)
        .bits(2, 2)
        .bits(literalCodes - 257, 5)
        .bits(distanceCodes - 1, 5)
        .bits(lengthCodes - 4, 4);
}

// A dynamic block up to its symbols, with as many distance codes as given. The code for
// lengths has 4 bits for each of 0 to 15.
BitWriter dynamicBlock(const std::vector<Lengths>& literals, const std::vector<unsigned>& distances,
                       unsigned literalCodes = 258, unsigned isLast = 1) {
    BitWriter w = codeCounts(literalCodes, static_cast<unsigned>(distances.size()), 19, isLast);
    for (unsigned i = 0; i < 19; ++i) {
        w.bits(i < 3 ? 0 : 4, 3);
    }
    std::vector<unsigned> row(literalCodes);
    for (const Lengths& some : literals) {
        std::copy(some.lengths.begin(), some.lengths.end(), row.begin() + some.symbol);
    }
    row.insert(row.end(), distances.begin(), distances.end());
    for (const unsigned length : row) {
        for (unsigned bit = 4; bit-- > 0;) {
            w.bits(length >> bit & 1, 1);
        }
    }
    return w;
}

// The code of 'a' is 0, of the end 10 and of a length of 3 is 11.
const std::vector<Lengths> threeCodes = {{'a', {1}}, {256, {2, 2}}};

// Only the length 1 has a code: 256 times the unused bit, then that code for the end.
BitWriter oneLengthCode() {
    BitWriter w = codeCounts(257, 1, 18).bits(0, 17).bits(0, 17).bits(0, 17).bits(1, 3);
    for (int i = 0; i < 8; ++i) {
        w.bits(~0U, 32);
    }
    return w.code("00").code("0");
}

// Lengths of 31 codes, which are complete.
std::vector<unsigned> distancesUpTo30() {
    std::vector<unsigned> lengths(31, 5);
    lengths[0] = 4;
    return lengths;
}

// The longest symbols, and runs of them: two literals of 11 bits, a length and a distance with
// codes of 15 bits, beginning at all bits of a byte.
BitWriter longestSymbols() {
    const std::vector<unsigned> unary = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    std::vector<unsigned> distances = unary;
    distances.insert(distances.end(), {15, 15});
    BitWriter w = dynamicBlock({{'a', unary}, {256, {15}}, {284, {15}}}, distances, 285);
    const char* const length = "111111111111111"; // 227 and 5 extra bits
    w.code("0").code(length).bits(31, 5).code("0");
    for (unsigned i = 0; i < 40; ++i) {
        w.code("11111111110").code("11111111110").code(length).bits(i % 32, 5);
        w.code(length).bits(i, 6).code(i % 3 == 0 ? "0" : "");
    }
    return w.code("111111111111110");
}

struct Case {
    const char* name;
    BitWriter stream;
    Verdict expected;
};

const Verdict valid = Verdict::valid;
const Verdict malformed = Verdict::malformed;

const Case cases[] = {
    {"block of the reserved type", BitWriter().bits(1, 1).bits(3, 2), malformed},
    {"stored", BitWriter().bits(1, 8).bits(2, 16).bits(0xfffd, 16).bits('a', 8).bits('b', 8),
     valid},
    {"stored, wrong complement", BitWriter().bits(1, 8).bits(2, 16).bits(0xfffc, 16), malformed},
    {"fixed, empty", fixedBlock().code("0000000"), valid},
    {"fixed, a match", fixedBlock().code("10010001").code("0000001").code("00000").code("0000000"),
     valid},
    {"fixed, the match a byte too far",
     fixedBlock().code("10010001").code("0000001").code("00001").code("0000000"), malformed},
    {"fixed, a match first", fixedBlock().code("0000001").code("00000").code("0000000"), malformed},
    {"fixed, symbol 286", fixedBlock().code("11000110"), malformed},
    {"fixed, symbol 287", fixedBlock().code("11000111"), malformed},
    {"fixed, distance symbol 30", fixedBlock().code("10010001").code("0000001").code("11110"),
     malformed},
    {"fixed, distance symbol 31", fixedBlock().code("10010001").code("0000001").code("11111"),
     malformed},
    {"287 literal codes", codeCounts(287, 1, 4), malformed},
    {"31 distance codes", codeCounts(257, 31, 4), malformed},
    {"no length codes", codeCounts(257, 1, 4), malformed},
    {"one length code", oneLengthCode(), malformed},
    {"incomplete length codes", codeCounts(257, 1, 4).bits(1, 3).bits(2, 3), malformed},
    {"over-subscribed length codes", codeCounts(257, 1, 4).bits(1, 3).bits(1, 3).bits(1, 3),
     malformed},
    // Codes for 16 and 0, then 18 and 0, of 1 bit each.
    {"repetition of nothing", codeCounts(257, 1, 4).bits(1, 9).bits(1, 3).code("1"), malformed},
    {"repetition beyond the last",
     codeCounts(257, 1, 4).bits(0, 6).bits(1, 3).bits(1, 3).code("1").bits(127, 7).code("1").bits(
         127, 7),
     malformed},
    {"dynamic", dynamicBlock(threeCodes, {1, 1}).code("0").code("11").code("0").code("10"), valid},
    {"no code for the end", dynamicBlock({{'a', {1, 1}}}, {1, 1}), malformed},
    {"over-subscribed literals", dynamicBlock({{'a', {1, 1}}, {256, {1}}}, {1, 1}), malformed},
    {"incomplete literals", dynamicBlock({{'a', {2}}, {256, {2}}}, {1, 1}), malformed},
    {"the end alone, of 1 bit", dynamicBlock({{256, {1}}}, {1, 1}).code("0"), valid},
    {"the end alone, the other code", dynamicBlock({{256, {1}}}, {1, 1}).code("1"), malformed},
    {"the end alone, of 2 bits", dynamicBlock({{256, {2}}}, {1, 1}), malformed},
    {"no distances, none used", dynamicBlock(threeCodes, {0}).code("0").code("10"), valid},
    {"no distances, one used", dynamicBlock(threeCodes, {0}).code("0").code("11"), malformed},
    {"one distance", dynamicBlock(threeCodes, {1}).code("0").code("11").code("0").code("10"),
     valid},
    {"one distance, the other used", dynamicBlock(threeCodes, {1}).code("0").code("11").code("1"),
     malformed},
    {"one distance of 2 bits", dynamicBlock(threeCodes, {2}), malformed},
    {"incomplete distances", dynamicBlock(threeCodes, {1, 2}), malformed},
    {"over-subscribed distances", dynamicBlock(threeCodes, {1, 1, 1}), malformed},
    {"287 literal codes with lengths", dynamicBlock(threeCodes, {1, 1}, 287).code("10"), malformed},
    {"31 distance codes with lengths", dynamicBlock(threeCodes, distancesUpTo30()).code("10"),
     malformed},
    {"a second block of 288 and 32 codes",
     dynamicBlock(threeCodes, {1, 1}, 258, 0).code("10").bits(5, 3).bits(~0U, 10).bits(0, 4),
     malformed},
    {"literals of up to 15 bits without the end",
     dynamicBlock({{0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 15}}}, {1, 1}),
     malformed},
    {"the longest symbols", longestSymbols(), valid},
    {"codes of 15 bits",
     dynamicBlock({{'a', {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}}, {256, {15, 15}}}, {1, 1})
         .code("0")
         .code("11111111111110")
         .code("111111111111111")
         .code("1")
         .code("111111111111110"),
     valid},
};

TEST(InflateHostile, TellsValidAndMalformedStreamsApart) {
    for (const Case& c : cases) {
        Bytes stream = c.stream.done();
        const std::size_t length = stream.size();
        stream.resize(length + 300); // far enough from the end for the fast loop
        constexpr std::size_t capacity = 20000;
        const Inflated byZlib = zlibInflated(stream, capacity);
        EXPECT_EQ(byZlib.verdict, c.expected) << c.name;
        for (const std::size_t piece : {std::size_t{1}, stream.size()}) {
            const Inflated found = inflatedInPieces(stream, capacity, piece, capacity);
            EXPECT_EQ(found.verdict, c.expected) << c.name;
            if (c.expected == valid) {
                EXPECT_EQ(found, byZlib) << c.name;
                EXPECT_EQ(found.taken, length) << c.name;
            }
        }
    }
}

// After an error the arguments are unchanged, but not the work buffer: the call is repeated, then
// made with every mode; any status will do.
TEST(InflateHostile, KeepsToItsWorkBufferWhenCalledAgainAfterAnError) {
    for (const Case& c : cases) {
        Bytes stream = c.stream.done();
        const std::size_t length = stream.size();
        stream.resize(length + 300);
        for (std::size_t cut = 0; c.expected == malformed && cut < length; ++cut) {
            Inflater inflater;
            const GuardedBlock data(1000);
            const Ntk8u* src = stream.data();
            Ntk8u* dst = data.data();
            if (inflater.call(src, cut, dst, 1000) < 0) {
                break;
            }
            const int modeThere = inflater.mode;
            for (int mode : {modeThere, modeThere, 0, 1, 2, 3, 4, 5, 6, 7, 8}) {
                const NtksInflateState state = inflater.state;
                const Ntk32u code = inflater.code;
                const int codeLen = inflater.codeLen;
                const Ntk8u* next = src;
                Ntk8u* out = dst;
                inflater.mode = mode;
                inflater.call(next, static_cast<std::size_t>(stream.data() + stream.size() - src),
                              out, static_cast<std::size_t>(data.data() + 1000 - dst));
                ASSERT_TRUE(inflater.keptToWorkBuffer()) << c.name << ", " << cut << ", " << mode;
                inflater.state = state;
                inflater.code = code;
                inflater.codeLen = codeLen;
            }
        }
    }
}

// Guards around both buffers. The zeros appended complete every stream.
TEST(InflateHostile, AgreesWithZlibOnDamagedStreams) {
    constexpr std::size_t capacity = 40000;
    const Bytes data = textBytes(4000);
    const GuardedBlock dst(capacity);
    std::mt19937 generator(4);
    int verdicts[4] = {};
    for (int round = 0; round < 6000; ++round) {
        const int kind = round % 4;
        Bytes stream = kind == 3 ? randomBytes(200, generator())
                                 : deflated(data, {kind == 0 ? 1 : 9, kind == 1 ? Z_FIXED : 0, 2});
        const std::size_t reach = round % 8 < 4 ? 60 : stream.size();
        for (unsigned n = generator() % 3; n > 0; --n) {
            stream[generator() % reach] ^= static_cast<Ntk8u>(1U << generator() % 8);
        }
        stream.resize(stream.size() + 400);
        const Inflated expected = zlibInflated(stream, capacity);
        const GuardedBlock src(stream);
        Inflater inflater;
        const Ntk8u* next = src.data();
        Ntk8u* out = dst.data();
        const Verdict verdict =
            verdictOf(inflater.call(next, stream.size(), out, capacity), inflater);
        ASSERT_EQ(verdict, expected.verdict) << round;
        ++verdicts[static_cast<int>(verdict)];
        if (verdict != malformed) {
            ASSERT_EQ(Bytes(dst.data(), out), expected.data);
        }
        if (verdict == valid) {
            ASSERT_EQ(static_cast<std::size_t>(next - src.data()), expected.taken);
        }
    }
    EXPECT_GT(verdicts[static_cast<int>(valid)], 1000);
    EXPECT_GT(verdicts[static_cast<int>(malformed)], 1000);
}

TEST(InflateHostile, RejectsBadArgumentsAndLeavesThemAlone) {
    const Bytes stream = fixedBlock().code("10010001").code("0000000").done();
    const Bytes dynamic = dynamicBlock(threeCodes, {1, 1}).code("0").code("10").done();
    const struct {
        const Bytes& stream;
        int codeLen, mode;
        bool hasWorkBuffer;
        NtkStatus expected;
    } calls[] = {
        {stream, -1, ntkInflateBlockHeader, true, ntkStsBadValue},
        {stream, 33, ntkInflateBlockHeader, true, ntkStsBadValue},
        {stream, 0, -1, true, ntkStsBadValue},
        {stream, 0, 9, true, ntkStsBadValue},
        {stream, 0, ntkInflateDynamic, true, ntkStsBadValue}, // without codes
        {stream, 0, ntkInflateDynamic, false, ntkStsBadValue},
        {stream, 0, 8, false, ntkStsBadValue},
        {dynamic, 0, ntkInflateBlockHeader, false, ntkStsNullPtr},
        {stream, 0, ntkInflateBlockHeader, false, ntkStsNoErr},
        {stream, 0, ntkInflateFinished, false, ntkStsNoErr},
    };
    for (const auto& c : calls) {
        Inflater inflater;
        inflater.codeLen = c.codeLen;
        inflater.mode = c.mode;
        inflater.state = c.hasWorkBuffer ? inflater.state : NtksInflateState{};
        const Ntk8u* src = c.stream.data();
        Ntk8u byte = 0;
        Ntk8u* dst = &byte;
        EXPECT_EQ(inflater.call(src, c.stream.size(), dst, 1), c.expected) << &c - calls;
        const bool isDecoded = c.expected == ntkStsNoErr && c.mode == ntkInflateBlockHeader;
        EXPECT_EQ(dst - &byte, isDecoded) << &c - calls;
        EXPECT_EQ(src == c.stream.data(), !isDecoded) << &c - calls;
        EXPECT_EQ(inflater.mode, isDecoded ? ntkInflateFinished : c.mode) << &c - calls;
    }
}

} // namespace
