// The LZSS tests on real data: what the measured calls leave in the buffers, the encoder's state
// that is never reset included.

#include "family.h"

#include "p_dclzss_ia.h"

using namespace dclzss;

namespace {
class LzssWiring : public FamilyTest {
protected:
    // canStart and initData; the buffers stay for the check.
    psTest& prepare(const char* function) {
        psTest& test = started(function);
        EXPECT_TRUE(test.initData());
        return test;
    }
    static std::string written() {
        return {static_cast<const char*>(dst.data()), static_cast<size_t>(pDst - dstStart())};
    }
    static const Ntk8u* dstStart() { return static_cast<const Ntk8u*>(dst.data()); }

    // What a call of the library leaves when the text goes through a new state so many times.
    std::string lastOfEncoded(int times) {
        std::string state(static_cast<size_t>(psSumOfBlocks()), '\0'); // room enough
        auto* const encoder = reinterpret_cast<Ntk8u*>(state.data());
        ntksEncodeLZSSInit_8u(encoder);
        std::string out;
        while (times-- > 0) {
            std::string in = text;
            out.assign(65536, '\0');
            auto* from = reinterpret_cast<Ntk8u*>(in.data());
            auto* to = reinterpret_cast<Ntk8u*>(out.data());
            int fromLen = static_cast<int>(in.size());
            int toLen = 65536;
            ntksEncodeLZSS_8u(&from, &fromLen, &to, &toLen, encoder);
            out.resize(static_cast<size_t>(65536 - toLen));
        }
        return out;
    }
    const std::string text = sampleText(30001);
    const std::string file = makeFile("text", text);
};
} // namespace

// A measured call goes on in the stream of the call before, and nothing is flushed: what it leaves
// is what the library writes for the last of so many equal pieces.
TEST_F(LzssWiring, EncoderGoesOnFromCallToCall) {
    choose("32768", file);
    psTest& test = prepare("ntksEncodeLZSS_8u");
    EXPECT_EQ(test.runTiming(), PS_OK);
    EXPECT_EQ(srcLen, 0);
    EXPECT_EQ(dstLen, 65536 - static_cast<int>(written().size()));
    EXPECT_EQ(written(), lastOfEncoded(2)); // the loop method makes one call more than asked for
    EXPECT_NE(written(), lastOfEncoded(1));
    EXPECT_EQ(test.runTiming(), PS_OK);
    EXPECT_EQ(written(), lastOfEncoded(4));
    EXPECT_DOUBLE_EQ(test.getDivisor(), 30001);
    test.flushData();
    EXPECT_EQ(psSumOfBlocks(), 0);
}

// Source length: the stream with its flushed tail. The data come back over the source, with room
// for twice as many, from a state made new before every call.
TEST_F(LzssWiring, DecoderWritesOverTheSource) {
    choose("16384", file);
    psTest& test = prepare("ntksDecodeLZSS_8u");
    const Ntk32u codeLen = maxDstLen;
    EXPECT_LT(codeLen, 16384U / 2);
    EXPECT_EQ(maxSrcLen, 32768U);
    EXPECT_DOUBLE_EQ(test.getDivisor(), 16384);
    for (int i = 0; i < 2; ++i) {
        memset(src.data(), 0, 16384);
        EXPECT_EQ(test.runTiming(), PS_OK);
        EXPECT_EQ(memcmp(src.data(), text.data(), 16384), 0);
        EXPECT_EQ(srcLen, 16384);
        EXPECT_EQ(dstLen, 0);
        EXPECT_EQ(written().size(), codeLen);
        Ntk8u malformed[] = {1, 1, 0}; // leaves a state that only an initialisation mends
        Ntk8u* from = malformed;
        int fromLen = 3;
        EXPECT_EQ(ntksDecodeLZSS_8u(&from, &fromLen, &pSrc, &srcLen, pState), ntkStsBadSrcData);
    }
    test.flushData();
}

// Length, file, no variant, ratio. That of the encoder is the decoder's, of the complete stream,
// although its measured calls write less: each finds the data of the call before.
TEST_F(LzssWiring, CellsOfTheTable) {
    for (const std::string length : {"4096", "8192"}) {
        choose(length, file);
        prepare("ntksDecodeLZSS_8u").flushData();
        const Ntk32u codeLen = maxDstLen;
        for (const std::string function : {"ntksEncodeLZSS_8u", "ntksDecodeLZSS_8u"}) {
            psTest& test = prepare(function.c_str());
            EXPECT_EQ(test.runTiming(), PS_OK);
            EXPECT_EQ(written().size() < codeLen, function == "ntksEncodeLZSS_8u");
            EXPECT_EQ(cellsOf(test), length + "," + file + ",-," +
                                         psText(std::stod(length) / codeLen).c_str() + "\n");
            EXPECT_EQ(test.runTiming(), PS_OK);
            test.flushData();
        }
    }
    EXPECT_EQ(psSumOfBlocks(), 0);
}
