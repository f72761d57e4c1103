// A library that says it did well and leaves a length that cannot be: the length and the function
// are named, the test fails, and nothing is computed from it.

#include "family.h"

#include <array>
#include <cstring>

#include "../patterns.h"
#include "captured.h"
#include "patched.h"

namespace {

size_t g_argument = 0;
int g_length = 0;

// Stands in for any function: all arguments are whole numbers and pointers, and take a word each.
int leaveLength(int* a, int* b, int* c, int* d, int* e, int* f, int* g, int* h, int* i, int* j,
                int* k, int* l, int* m) {
    const std::array<int*, 13> arguments = {a, b, c, d, e, f, g, h, i, j, k, l, m};
    *arguments[g_argument] = g_length;
    return 0;
}

// Makes a function of the library leave a length in an argument, counted from 0, and nothing else.
class LyingFunction {
public:
    LyingFunction(const char* name, size_t argument, int length) : m_patch(name, code()) {
        g_argument = argument;
        g_length = length;
    }

private:
    static std::vector<unsigned char> code() {
        // movabs rax, leaveLength; jmp rax
        std::vector<unsigned char> bytes = {0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0};
        const auto target = reinterpret_cast<uintptr_t>(&leaveLength);
        memcpy(&bytes[2], &target, sizeof target);
        return bytes;
    }
    const PatchedFunction m_patch;
};

struct Lie {
    const char* measured;
    const char* liar;
    size_t argument;
    std::vector<int> lengths;
    const char* what;
};

void PrintTo(const Lie& lie, std::ostream* out) {
    *out << lie.liar;
}

const std::vector<int> ofBlock = {-1, 1 << 30};   // no room has these
const std::vector<int> ofCode = {0, -1, 1 << 30}; // the code of some bytes is not empty

const Lie lies[] = {
    {"ntksEncodeLZ4_8u", "ntksEncodeLZ4_8u", 3, ofCode, "destination length"},
    {"ntksEncodeLZ4Safe_8u", "ntksEncodeLZ4Safe_8u", 1, ofCode, "source length"},
    {"ntksEncodeLZ4Dict_8u", "ntksEncodeLZ4Dict_8u", 4, ofCode, "destination length"},
    {"ntksEncodeLZ4DictSafe_8u", "ntksEncodeLZ4DictSafe_8u", 2, ofBlock,
     "length of the first part"},
    {"ntksEncodeLZ4HC_8u", "ntksEncodeLZ4HC_8u", 4, ofCode, "destination length"},
    {"ntksDecodeLZ4_8u", "ntksDecodeLZ4_8u", 3, ofCode, "destination length"},
    {"ntksDecodeLZ4_8u", "ntksEncodeLZ4_8u", 3, ofCode, "destination length"},
    {"ntksEncodeLZ4_8u", "ntksEncodeLZ4HashTableGetSize_8u", 0, {0, -1}, "size"},
    {"ntksEncodeLZ4_8u", "ntksEncodeLZ4HCHashTableGetSize_8u", 0, {0, -1}, "size"},
    {"ntksEncodeLZO_8u", "ntksEncodeLZO_8u", 3, {0, 1 << 30}, "destination length"},
    {"ntksDecodeLZO_8u", "ntksDecodeLZO_8u", 3, {0, 1 << 30}, "destination length"},
    {"ntksDecodeLZOSafe_8u", "ntksEncodeLZO_8u", 3, {0, 1 << 30}, "destination length"},
    {"ntksEncodeLZO_8u", "ntksEncodeLZOGetSize", 2, {0}, "size"},
    {"ntksEncodeLZSS_8u", "ntksEncodeLZSS_8u", 1, ofBlock, "source length left"},
    {"ntksDecodeLZSS_8u", "ntksDecodeLZSS_8u", 3, ofBlock, "destination length left"},
    {"ntksDecodeLZSS_8u", "ntksEncodeLZSSFlush_8u", 1, ofBlock, "destination length left"},
    {"ntksEncodeLZSS_8u", "ntksLZSSGetSize_8u", 0, {0, -1}, "size"},
    {"ntksEncodeZfp444_32f", "ntksZfpGetLength_32f", 0, ofCode, "length"},
    {"ntksDecodeZfp444_32f", "ntksZfpGetLength_32f", 0, ofCode, "length"},
    {"ntksDeflateLZ77_8u", "ntksDeflateLZ77_8u", 12, ofBlock, "destination length left"},
    {"ntksInflate_8u", "ntksDeflateHuff_8u", 4, ofBlock, "length of the pending bits"},
    {"ntksDeflateHuff_8u", "ntksDeflateHuff_8u", 8, ofBlock, "destination index"},
    {"ntksInflate_8u", "ntksInflate_8u", 6, ofBlock, "destination length left"},
    {"ntksEncodeRLE_BZ2_8u", "ntksEncodeRLE_BZ2_8u", 3, ofBlock, "destination length"},
    {"ntksBWTFwd_8u", "ntksReduceDictionary_8u_I", 3, {-1, 300}, "length of the dictionary"},
    {"ntksDecodeZ1Z2_BZ2_16u8u", "ntksDecodeZ1Z2_BZ2_16u8u", 3, ofBlock, "destination length"},
    {"ntksEncodeHuffInit_BZ2_16u8u", "ntksEncodeZ1Z2_BZ2_8u16u", 3, ofBlock, "destination length"},
    {"ntksEncodeHuff_BZ2_16u8u", "ntksEncodeHuff_BZ2_16u8u", 5, ofBlock, "destination length"},
    {"ntksDecodeHuff_BZ2_8u16u", "ntksDecodeHuff_BZ2_8u16u", 5, ofCode, "destination length"},
    {"ntksDecodeHuff_BZ2_8u16u", "ntksEncodeHuff_BZ2_16u8u", 1, ofBlock, "length of the pending"},
    {"ntksEncodeHuff_BZ2_16u8u", "ntksPackHuffContext_BZ2_16u8u", 3, ofBlock, "destination length"},
};

class ImpossibleLengths : public FamilyTest, public testing::WithParamInterface<Lie> {};

bool hasNoNumber(const std::string& text) {
    return fits(text, "(^|[^a-z])-?(inf|nan)([^a-z]|$)");
}

} // namespace

TEST_P(ImpossibleLengths, AreFailuresThatNameThem) {
    const Lie& lie = GetParam();
    choose("2000", makeFile("text", sampleText(2000)));
    psTest& test = findTest(lie.measured);
    const std::string table = testPath("table.csv");
    for (const int length : lie.lengths) {
        const Captured log;
        ASSERT_TRUE(g_cstrm.addStream(table.c_str(), false));
        psResult result = PS_UNDEFINED;
        {
            const LyingFunction liar(lie.liar, lie.argument, length);
            result = test.run();
        }
        g_cstrm.close();
        EXPECT_EQ(result, PS_FUNC_FAIL);
        EXPECT_TRUE(has(log.text(), std::string("--NTK FAIL. ") + lie.what));
        EXPECT_TRUE(has(log.text(), std::string(" in ") + lie.liar + ": not within "));
        EXPECT_FALSE(hasNoNumber(log.text() + readFile(table))) << log.text() << readFile(table);
        EXPECT_EQ(psSumOfBlocks(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ImpossibleLengths, testing::ValuesIn(lies), [](const auto& lie) {
    return std::string(lie.param.liar) + std::to_string(lie.param.argument) + "For" +
           lie.param.measured;
});

// What is possible and has no figure: a second half of no bytes, a checksum of no bytes.
TEST_F(FamilyTest, WhatHasNoValueIsADash) {
    const struct {
        const char *function, *length;
        int dashes; // in the log
    } cases[] = {{"ntksEncodeLZ4Dict_8u", "16", 3}, {"ntksEncodeLZ4DictSafe_8u", "16", 3},
                 {"ntksEncodeLZ4HC_8u", "16", 2},   {"ntksCRC32_8u", "0", 1},
                 {"ntksEncodeLZSS_8u", "16", 0},    {"ntksDecodeLZO_8u", "16", 0}};
    const std::string table = testPath("table.csv");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.function);
        choose(c.length, makeFile("byte", "x"));
        const Captured log;
        ASSERT_TRUE(g_cstrm.addStream(table.c_str(), false));
        EXPECT_EQ(findTest(c.function).run(), PS_OK);
        g_cstrm.close();
        EXPECT_FALSE(hasNoNumber(log.text() + readFile(table))) << log.text() << readFile(table);
        EXPECT_EQ(timesIn(log.text(), "perf=       - clocks\n"), c.dashes) << log.text();
    }
}
