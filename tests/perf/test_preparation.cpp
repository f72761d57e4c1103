// A call of the library that fails while data are prepared: it is named, nothing else is called,
// and the combination is not measured.

#include "family.h"

#include <cstring>
#include <vector>

#include "captured.h"
#include "patched.h"

namespace {

// Makes a function of the library return ntkStsBadValue at once.
class FailingFunction {
public:
    explicit FailingFunction(const char* name) : m_patch(name, code()) {}

private:
    static std::vector<unsigned char> code() {
        constexpr int status = ntkStsBadValue;
        std::vector<unsigned char> bytes = {0xB8, 0, 0, 0, 0, 0xC3}; // mov eax, status; ret
        memcpy(&bytes[1], &status, sizeof status);
        return bytes;
    }
    const PatchedFunction m_patch;
};

struct Family {
    const char* function; // the measured one, of the longest preparation in its family
    std::vector<const char*> preparation;
};

void PrintTo(const Family& family, std::ostream* out) {
    *out << family.function;
}

const Family families[] = {
    {"ntksBWTInv_8u",
     {"ntksRLEGetSize_BZ2_8u", "ntksEncodeRLEInit_BZ2_8u", "ntksEncodeRLE_BZ2_8u",
      "ntksEncodeRLEFlush_BZ2_8u", "ntksRLEGetInUseTable_8u", "ntksReduceDictionary_8u_I",
      "ntksBWTFwdGetSize_8u", "ntksBWTFwd_8u", "ntksBWTInvGetSize_8u", "ntksMTFGetSize_8u",
      "ntksMTFInit_8u", "ntksMTFFwd_8u", "ntksZero_8u", "ntksEncodeZ1Z2_BZ2_8u16u",
      "ntksEncodeHuffGetSize_BZ2_16u8u", "ntksEncodeHuffInit_BZ2_16u8u"}},
    {"ntksDecodeHuff_BZ2_8u16u",
     {"ntksEncodeHuffGetSize_BZ2_16u8u", "ntksZero_8u", "ntksEncodeHuffInit_BZ2_16u8u",
      "ntksPackHuffContext_BZ2_16u8u", "ntksEncodeHuff_BZ2_16u8u",
      "ntksDecodeHuffGetSize_BZ2_8u16u", "ntksDecodeHuffInit_BZ2_8u16u",
      "ntksUnpackHuffContext_BZ2_8u16u"}},
    {"ntksDecodeLZ4_8u",
     {"ntksEncodeLZ4HashTableGetSize_8u", "ntksEncodeLZ4HashTableInit_8u",
      "ntksEncodeLZ4HCHashTableGetSize_8u", "ntksEncodeLZ4_8u"}},
    {"ntksInflate_8u", {"ntksDeflateLZ77_8u", "ntksDeflateHuff_8u"}},
    {"ntksDecodeLZO_8u", {"ntksEncodeLZOGetSize", "ntksEncodeLZOInit_8u", "ntksEncodeLZO_8u"}},
    {"ntksDecodeLZSS_8u",
     {"ntksLZSSGetSize_8u", "ntksEncodeLZSSInit_8u", "ntksEncodeLZSS_8u", "ntksEncodeLZSSFlush_8u",
      "ntksDecodeLZSSInit_8u"}},
    {"ntksDecodeZfp444_32f",
     {"ntksZfpGetSize_32f", "ntksEncodeZfp444_32f", "ntksZfpGetLength_32f"}},
};

class Preparation : public FamilyTest, public testing::WithParamInterface<Family> {};

} // namespace

TEST_P(Preparation, EndsWithTheCallThatFails) {
    choose("16384", makeFile("text", sampleText(16384)));
    psTest& test = started(GetParam().function);
    for (const char* const function : GetParam().preparation) {
        const Captured log;
        {
            const FailingFunction failing(function);
            EXPECT_FALSE(test.initData()) << function;
        }
        test.flushData();
        const std::string text = log.text();
        EXPECT_EQ(text.rfind("--NTK FAIL. status = -5 in " + std::string(function) + ": "), 0u)
            << text;
        EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
        EXPECT_EQ(psSumOfBlocks(), 0) << function;
    }
    EXPECT_TRUE(test.initData()); // none of them fails any more
    test.flushData();
}

INSTANTIATE_TEST_SUITE_P(Of, Preparation, testing::ValuesIn(families),
                         [](const auto& family) { return std::string(family.param.function); });

namespace {

struct Unmeasurable {
    const char *function, *parameter, *value;
    const char* message; // a part of it
};

const Unmeasurable unmeasurable[] = {
    {"ntksMTFFwd_8u", "CodeLength", "0", "-- CodeLength=0 is not within 1 to "},
    {"ntksMTFFwd_8u", "CodeLength", "536870912", "-- CodeLength=536870912 is not within 1 to "},
    {"ntksMTFFwd_8u", "CodeFile", "/nowhere/book", "-- Can't open file /nowhere/book to read\n"},
    {"ntksEncodeHuff_BZ2_16u8u", "CodeFile", "/nowhere/book", "-- Can't open file /nowhere/book"},
    {"ntksEncodeHuff_BZ2_16u8u", "CodeFile", "/dev/null",
     "-- Can't read file /dev/null: it is empty"},
    {"ntksInflate_8u", "CodeFile", "/nowhere/book", "-- Can't open file /nowhere/book to read\n"},
    {"ntksInflate_8u", "CodeFile", "/dev/null", "-- Can't read file /dev/null: it is empty\n"},
    {"ntksInflate_8u", "CodeFile", "/proc/self/mem", "/proc/self/mem: Input/output error\n"},
    {"ntksInflate_8u", "comprLevel", "0", "ntksDeflateLZ77_8u"}, // the search refuses them
    {"ntksInflate_8u", "comprLevel", "10", "ntksDeflateLZ77_8u"},
    {"ntksEncodeLZ4_8u", "CodeLength", "0", "-- CodeLength=0 is not within 1 to "},
    {"ntksEncodeLZ4_8u", "CodeLength", "-1500000000", "=-1500000000 is not within 1 to "},
    {"ntksEncodeLZ4_8u", "CodeLength", "1073741824", "=1073741824 is not within 1 to "},
    {"ntksDecodeZfp444_32f", "rate", "0", "-- rate=0 is not within 1 to 32"},
    {"ntksDecodeZfp444_32f", "rate", "33", "-- rate=33 is not within 1 to 32"},
};

} // namespace

TEST_F(FamilyTest, WhatCannotBeMeasuredIsNotPrepared) {
    choose("16384", makeFile("text", sampleText(16384)));
    for (const Unmeasurable& c : unmeasurable) {
        SCOPED_TRACE(std::string(c.function) + " " + c.parameter + "=" + c.value);
        psTest& test = started(c.function);
        setNamed(test, c.parameter, c.value);
        {
            const Captured log;
            EXPECT_FALSE(test.initData());
            EXPECT_TRUE(has(log.text(), c.message));
        }
        test.flushData();
        EXPECT_EQ(psSumOfBlocks(), 0);
        choose("16384", testPath("text"));
    }
}
