// The bzip2 Huffman tests on real data: what the buffers hold after initData, the init body and one
// call. That the coder's blocks are those of bzip2 is tested with the library.

#include "family.h"

#include <vector>

#include "p_dcbz2huff2_vl.h"

using namespace dcbz2huff;

namespace {

class Bz2HuffWiring : public FamilyTest {
protected:
    psTest& call(const char* function, const std::string& file) {
        psTest& test = started(function);
        set(g_codeFile, file);
        EXPECT_TRUE(test.initData());
        EXPECT_EQ(test.runTiming(), PS_OK);
        return test;
    }
    // The file as symbols, the last one the end of the block.
    static std::vector<Ntk16u> symbolsOf(const std::string& text, char largest) {
        std::vector<Ntk16u> symbols(text.begin(), text.end());
        symbols.back() = static_cast<Ntk16u>(largest + 2);
        return symbols;
    }
    static std::vector<Ntk16u> written(size_t count) {
        const auto* const data = static_cast<const Ntk16u*>(src.data());
        return {data, data + count};
    }
    // What dst holds, decoded from its first byte.
    static std::vector<Ntk16u> decoded(int alphabet, int bytes) {
        int size = 0;
        ntksDecodeHuffGetSize_BZ2_8u16u(100000, &size);
        std::vector<Ntk8u> state(static_cast<size_t>(size));
        std::vector<Ntk16u> out(200000);
        Ntk32u code = 0;
        int bits = 0;
        int outLen = static_cast<int>(out.size());
        auto* at = static_cast<Ntk8u*>(dst.data());
        ntksDecodeHuffInit_BZ2_8u16u(alphabet, state.data());
        EXPECT_EQ(ntksUnpackHuffContext_BZ2_8u16u(&code, &bits, &at, &bytes, state.data()), 0);
        EXPECT_EQ(
            ntksDecodeHuff_BZ2_8u16u(&code, &bits, &at, &bytes, out.data(), &outLen, state.data()),
            0);
        EXPECT_EQ(bytes, 0);
        out.resize(static_cast<size_t>(outLen));
        return out;
    }
    const std::string text = sampleText(120001);
};

TEST_F(Bz2HuffWiring, EncoderWritesTheBlockBehindItsContext) {
    const std::string used = text.substr(0, 102400);
    psTest& test = call("ntksEncodeHuff_BZ2_16u8u", makeFile("text", text));
    EXPECT_EQ(srcLen, 102400);
    EXPECT_EQ(len, 0);
    EXPECT_LT(tmpLen + dstLen, 102400 * 5 / 8);
    dstLen += tmpLen;
    for (; pCodeLenBits > 0; pCodeLenBits -= 8, pCode <<= 8) {
        pDst[dstLen++] = static_cast<Ntk8u>(pCode >> 24);
    }
    EXPECT_TRUE(decoded('t' + 3, dstLen) == symbolsOf(used, 't'));
    EXPECT_DOUBLE_EQ(test.getDivisor(), 102400);
    test.flushData();
    EXPECT_EQ(psSumOfBlocks(), 0);
}

// Short files are measured as they are; the last byte gives way to the end of the block, which is
// decoded, too. All bytes of the coded block are used up.
TEST_F(Bz2HuffWiring, DecoderWritesTheSymbolsOfTheFile) {
    for (const std::string& contents :
         {text.substr(0, 5001), std::string("t"), std::string(99, 't')}) {
        psTest& test = call("ntksDecodeHuff_BZ2_8u16u", makeFile("text", contents));
        const std::vector<Ntk16u> expected = symbolsOf(contents, 't');
        EXPECT_TRUE(written(contents.size()) == expected) << contents.size();
        EXPECT_EQ(pDst1 - static_cast<Ntk8u*>(dst.data()), tmpLen + (tmpCodeLen > 0));
        EXPECT_EQ(pDst, pDst1 + srcLen1);
        EXPECT_EQ(dstLen, 0);
        EXPECT_DOUBLE_EQ(test.getDivisor(), static_cast<double>(contents.size()));
        // The call writes them: they do not stand there from before.
        std::fill_n(static_cast<Ntk16u*>(src.data()), contents.size(), Ntk16u{0});
        EXPECT_EQ(test.runTiming(), PS_OK);
        EXPECT_TRUE(written(contents.size()) == expected) << contents.size();
        test.flushData();
    }
    EXPECT_EQ(psSumOfBlocks(), 0);
}

} // namespace
