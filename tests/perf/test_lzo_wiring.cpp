// The LZO tests on real data: after initData, the init body and one call, the buffers hold what
// liblzo2 turns back into the file.

#include "family.h"

#include <lzo/lzo1x.h>

#include "p_dclzo_ia.h"

using namespace dclzo;

namespace {
class LzoWiring : public FamilyTest {
protected:
    // canStart, initData, one timed call; the buffers stay for the check.
    psTest& call(const char* function, const char* methodName) {
        psTest& test = started(function);
        set(method, methodName);
        EXPECT_TRUE(test.initData());
        EXPECT_EQ(test.runTiming(), PS_OK);
        return test;
    }
    static std::string decode() {
        std::string out(1 << 20, '\0');
        lzo_uint length = out.size();
        const int result =
            lzo1x_decompress_safe(static_cast<const Ntk8u*>(dst.data()), dstLen,
                                  reinterpret_cast<Ntk8u*>(out.data()), &length, nullptr);
        return result == LZO_E_OK ? out.substr(0, length) : "does not decode";
    }
    const std::string text = sampleText(30001);
    const std::string file = makeFile("text", text);
};
} // namespace

TEST_F(LzoWiring, EncoderWithEachMethod) {
    choose("32768", file);
    Ntk32u lengths[3] = {};
    for (const auto& [name, value] :
         {std::pair{"ST", ntkLZOST}, {"ST1X", ntkLZOST1X}, {"MT", ntkLZOMT}}) {
        psTest& test = call("ntksEncodeLZO_8u", name);
        dstLen = 0; // only the init body gives the room back
        EXPECT_EQ(test.runTiming(), PS_OK) << name;
        EXPECT_EQ(method.value(), value);
        EXPECT_EQ(decode(), text) << name;
        EXPECT_EQ(maxSrcLen, 30001U);
        EXPECT_EQ(maxDstLen, 65536U);
        EXPECT_EQ(dst.size(), 65536);
        EXPECT_DOUBLE_EQ(test.getDivisor(), 30001) << name;
        lengths[value] = dstLen;
        test.flushData();
    }
    EXPECT_NE(lengths[ntkLZOST], lengths[ntkLZOST1X]);
    EXPECT_EQ(lengths[ntkLZOST], lengths[ntkLZOMT]);
    EXPECT_EQ(psSumOfBlocks(), 0);
}

// The data come back over the source, with room for twice as many.
TEST_F(LzoWiring, DecodersWriteOverTheSource) {
    choose("16384", file);
    for (const char* function : {"ntksDecodeLZO_8u", "ntksDecodeLZOSafe_8u"}) {
        psTest& test = call(function, "ST1X");
        EXPECT_EQ(maxSrcLen, 32768U) << function;
        EXPECT_EQ(maxDstLen, dstLen) << function;
        EXPECT_LT(dstLen, 16384U / 2);
        EXPECT_DOUBLE_EQ(test.getDivisor(), 16384) << function;
        memset(src.data(), 0, 16384);
        srcLen = 0;
        EXPECT_EQ(test.runTiming(), PS_OK) << function;
        EXPECT_EQ(srcLen, 16384U) << function;
        EXPECT_EQ(memcmp(src.data(), text.data(), 16384), 0) << function;
        test.flushData();
    }
}

// Two bytes make a stream of six, and there is room for four.
TEST_F(LzoWiring, AStreamThatDoesNotFitEndsThePreparation) {
    choose("2", makeFile("two", "ab"));
    psTest& test = started("ntksDecodeLZO_8u");
    EXPECT_FALSE(test.initData());
    test.flushData();
    EXPECT_EQ(psSumOfBlocks(), 0);
}
