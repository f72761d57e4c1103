// The LZ4 tests on real data: after initData, the init body and one call, the buffers hold what an
// independent decoder turns back into the file.

#include "family.h"

#include <lz4.h>

#include "captured.h"
#include "p_dclz4.h"

using namespace dclz4;

namespace {
class Lz4Wiring : public FamilyTest {
protected:
    // canStart, initData, one timed call; the buffers stay for the check.
    psTest& call(const char* function, const char* dict) {
        psTest& test = started(function);
        if (dict) {
            set(dictType, dict);
        }
        EXPECT_TRUE(test.initData());
        EXPECT_EQ(test.runTiming(), PS_OK);
        return test;
    }
    static std::string decode(int srcLen, const std::string& dictionary) {
        std::string out(1 << 20, '\0');
        const int length = LZ4_decompress_safe_usingDict(
            static_cast<const char*>(comprBuf.data()), out.data(), srcLen,
            static_cast<int>(out.size()), dictionary.data(), static_cast<int>(dictionary.size()));
        return length < 0 ? "does not decode" : out.substr(0, static_cast<size_t>(length));
    }
    const std::string text = sampleText(30001); // odd: the first part is one byte longer
    const std::string file = makeFile("text", text);
};
} // namespace

TEST_F(Lz4Wiring, WholeBufferEncoders) {
    choose("65536", file);
    for (const char* function : {"ntksEncodeLZ4_8u", "ntksEncodeLZ4Safe_8u"}) {
        psTest& test = call(function, nullptr);
        EXPECT_EQ(decode(encodeDstLen, ""), text) << function;
        EXPECT_LT(encodeDstLen, 30001 / 2) << function;
        EXPECT_DOUBLE_EQ(test.getDivisor(), 30001) << function;
        test.flushData();
    }
}

TEST_F(Lz4Wiring, DecoderIsMeasuredPerCompressedByte) {
    choose("16384", file);
    psTest& test = call("ntksDecodeLZ4_8u", nullptr);
    EXPECT_EQ(decodeDstLen, 16384);
    EXPECT_EQ(memcmp(decomprBuf.data(), text.data(), 16384), 0);
    EXPECT_DOUBLE_EQ(test.getDivisor(), decodeSrcLen);
    test.flushData();
}

// The second half decodes with the first as dictionary; with "N" it decodes alone and is larger.
// The HC test with "N" takes the whole file.
TEST_F(Lz4Wiring, DictionaryModes) {
    choose("65536", file);
    const std::string first = text.substr(0, 15001);
    const std::string second = text.substr(15001);
    for (const char* function :
         {"ntksEncodeLZ4Dict_8u", "ntksEncodeLZ4DictSafe_8u", "ntksEncodeLZ4HC_8u"}) {
        const bool isHC = std::string(function) == "ntksEncodeLZ4HC_8u";
        psTest& none = call(function, "N");
        EXPECT_EQ(decode(encodeDstLen, ""), isHC ? text : second) << function;
        EXPECT_DOUBLE_EQ(none.getDivisor(), isHC ? 30001 : 15000);
        EXPECT_EQ(pDict, nullptr);
        const int aloneLen = encodeDstLen;
        none.flushData();
        for (const char* dict : {"I", "E"}) {
            psTest& test = call(function, dict);
            EXPECT_EQ(decode(encodeDstLen, first), second) << function << dict;
            EXPECT_NE(decode(encodeDstLen, ""), second) << function << dict;
            EXPECT_LT(encodeDstLen, aloneLen) << function << dict;
            EXPECT_EQ(pDict, *dict == 'I' ? fileBuf.data() : dictBuf.data());
            EXPECT_DOUBLE_EQ(test.getDivisor(), 15000) << function << dict;
            test.flushData();
        }
    }
    EXPECT_EQ(psSumOfBlocks(), 0);
}

TEST_F(Lz4Wiring, OneByteLeavesNothingForTheSecondPart) {
    choose("16384", makeFile("one", "x"));
    for (const char* function :
         {"ntksEncodeLZ4Dict_8u", "ntksEncodeLZ4DictSafe_8u", "ntksEncodeLZ4HC_8u"}) {
        psTest& test = call(function, "I");
        EXPECT_EQ(srcIdx, 1) << function;
        EXPECT_EQ(dictLen, 1) << function;
        EXPECT_EQ(decode(encodeDstLen, "x"), "") << function;
        test.flushData();
    }
}

// Every length after the first needs more bytes than the length before it.
TEST_F(Lz4Wiring, LengthsThatWouldMeasureTheSameBytesArePassedOver) {
    const struct {
        size_t bytes;
        const char* lengths;
        int measured;
    } cases[] = {
        {16385, "16384;262144;*2", 2},
        {10000, "16384;32768", 2}, // a list asks for what it says
        {0, "16384;262144;*2", 0},
    };
    psTest& test = findTest("ntksEncodeLZ4_8u");
    for (const auto& c : cases) {
        const std::string path = makeFile("sized", sampleText(c.bytes));
        g_codeLen.translate(c.lengths);
        g_codeFile.translate(path.c_str());
        const Captured log;
        test.run();
        EXPECT_EQ(timesIn(log.text(), "-- performance:"), c.measured)
            << c.bytes << " " << c.lengths << log.text();
        EXPECT_EQ(test.result(), c.measured ? PS_OK : PS_DATA_FAIL);
    }
}
