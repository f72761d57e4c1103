// The tests of the bzip2 stages on real data: what the buffers hold after initData and two calls
// (an untimed and a timed one), by reference implementations of the stages.

#include "family.h"

#include <algorithm>
#include <set>
#include <vector>

#include "oracles/bwt.h"
#include "oracles/bz2_dictionary.h"
#include "oracles/bz2_mtf.h"
#include "oracles/bz2_rle.h"
#include "oracles/bz2_z1z2.h"
#include "p_dcbz2_ia.h"

using namespace dcbz2;

namespace {

using Bytes = std::vector<Ntk8u>;
using Symbols = std::vector<Ntk16u>;

Bytes reduced(const Bytes& bytes) {
    return oracle::reduced(inUse, bytes);
}

Bytes expanded(const Bytes& bytes) {
    return oracle::expanded(inUse, bytes);
}

Bytes held(const Ntk8u* block, int length) {
    return Bytes(block, block + length);
}

class Bz2Wiring : public FamilyTest {
protected:
    void SetUp() override {
        FamilyTest::SetUp();
        choose("16384", file); // this length is not the family's
    }
    void TearDown() override {
        if (m_test) {
            m_test->flushData();
            EXPECT_EQ(psSumOfBlocks(), 0);
        }
        FamilyTest::TearDown();
    }

    psTest& prepare(const char* function) {
        if (m_test) {
            m_test->flushData();
        }
        m_test = &started(function);
        EXPECT_TRUE(m_test->initData());
        return *m_test;
    }
    void call() { EXPECT_EQ(m_test->runTiming(), PS_OK); }

    // A length that is no multiple of anything; a last run with a count; first bytes that it
    // overwrites.
    static std::string text() { return sampleText(2993) + std::string(8, 'z'); }
    // What the dictionary stage gets: the last run over the first bytes, and zeroes at the end,
    // where it should be.
    static Bytes runCoded() {
        const std::string t = text();
        Bytes bytes = oracle::rleEncoded(Bytes(t.begin(), t.end()));
        std::copy(bytes.end() - 5, bytes.end(), bytes.begin());
        std::fill(bytes.end() - 5, bytes.end(), Ntk8u{0});
        return bytes;
    }
    static Bytes lastColumn() { return oracle::bwt(reduced(runCoded())).bytes; }

    const std::string file = makeFile("text", text());
    psTest* m_test = nullptr;
};

} // namespace

TEST_F(Bz2Wiring, EveryStageReadsWhatTheStageBeforeWrote) {
    prepare("ntksEncodeRLE_BZ2_8u");
    EXPECT_EQ(maxLen, 409600);
    EXPECT_EQ(len, 3001);
    EXPECT_EQ(std::string(pSrcRLE, pSrcRLE + len), text());
    const Bytes coded = runCoded();
    EXPECT_EQ(held(pSrcDict, srcDictLen), reduced(coded));
    EXPECT_EQ(held(pSrcBWT, srcBWTLen), reduced(coded));
    EXPECT_EQ(sizeDictionary, std::count(inUse, inUse + 256, 1));
    const std::string t = text();
    EXPECT_EQ(sizeDictionary, std::set<char>(t.begin(), t.end()).size() + 1); // and the count 4
    const Bytes column = lastColumn();
    EXPECT_EQ(held(pSrcMTF, srcMTFLen), column);
    const Bytes positions = oracle::Mtf().forward(column);
    EXPECT_EQ(held(pSrcZ1Z2, srcZ1Z2Len), positions);
    const Symbols wanted = oracle::z1z2Encoded(positions);
    const auto* const symbols = reinterpret_cast<const Ntk16u*>(pDstZ1Z2);
    EXPECT_EQ(Symbols(symbols, symbols + dstZ1Z2Len), wanted);
    for (int i = 0; i < 256; i++) { // of the transform's bytes, and of the symbols
        EXPECT_EQ(freqTable[i], std::count(column.begin(), column.end(), i) +
                                    std::count(wanted.begin(), wanted.end(), i));
    }
    EXPECT_EQ(idx, 0);
    EXPECT_DOUBLE_EQ(m_test->getDivisor(), 3001);
}

// The run of eight that the first call left pending comes first in the second one.
TEST_F(Bz2Wiring, RunsAreEncodedFromTheStateTheCallBeforeLeft) {
    prepare("ntksEncodeRLE_BZ2_8u");
    call();
    const std::string t = text();
    Bytes wanted = {'z', 'z', 'z', 'z', 4};
    const Bytes coded = oracle::rleEncoded(Bytes(t.begin(), t.end()));
    wanted.insert(wanted.end(), coded.begin(), coded.end() - 5);
    EXPECT_EQ(held(pSrcDict, dstLen), wanted);
    EXPECT_EQ(srcLen, 0);
}

TEST_F(Bz2Wiring, DictionaryIsAppliedToItsOwnResult) {
    prepare("ntksReduceDictionary_8u_I");
    const Bytes once = reduced(runCoded());
    call();
    EXPECT_EQ(held(pSrcDict, srcDictLen), reduced(reduced(once)));
    prepare("ntksExpandDictionary_8u_I");
    call();
    EXPECT_EQ(held(pSrcDict, srcDictLen), expanded(expanded(once)));
}

TEST_F(Bz2Wiring, TransformWithEveryHint) {
    const auto check = [this] {
        std::fill_n(pSrcMTF, srcMTFLen, Ntk8u{0xee});
        call();
        const oracle::Bwt expected = oracle::bwt(reduced(runCoded()));
        EXPECT_EQ(held(pSrcMTF, srcMTFLen), expected.bytes);
        EXPECT_EQ(idx, expected.row);
    };
    prepare("ntksBWTFwd_8u");
    check();
    prepare("ntksBWTFwd_SelectSort_8u");
    psString names;
    do {
        check();
        names += hint.valueString() + ";";
    } while (hint.nextValue());
    EXPECT_STREQ(names.c_str(), "ntkBWTItohTanakaLimSort;ntkBWTItohTanakaUnlimSort;"
                                "ntkBWTSuffixSort; ntkBWTAutoSort;");
    hint.translate("ntkBWTAutoSort;ntkBWTSuffixSort");
    EXPECT_EQ(hint.value(), ntkBWTAutoSort);
}

// Row 0 is not the text's: the least rotation comes out.
TEST_F(Bz2Wiring, InverseTransformsStartFromRowZero) {
    const Bytes once = (prepare("ntksBWTInv_8u"), reduced(runCoded()));
    int size = 0;
    ntksBWTInvGetSize_8u(srcBWTLen, &size);
    int allocated = 0;
    ASSERT_TRUE(psMallocInfo(pBWTBuff, &allocated, nullptr));
    EXPECT_EQ(allocated, size);
    call();
    const Bytes least = oracle::rotated(once, oracle::sortedRotations(once).front());
    EXPECT_NE(least, once);
    EXPECT_EQ(held(pSrcBWT, srcBWTLen), least);
    prepare("ntksDecodeBlock_BZ2_16u8u");
    std::fill_n(pSrcZ1Z2, srcZ1Z2Len, Ntk8u{0xee});
    call();
    EXPECT_EQ(dstLen, srcBWTLen);
    EXPECT_EQ(held(pSrcZ1Z2, dstLen), expanded(least));
}

TEST_F(Bz2Wiring, MoveToFrontGoesOnWithItsList) {
    prepare("ntksMTFFwd_8u");
    const Bytes column = lastColumn();
    oracle::Mtf mtf;
    const Bytes positions = mtf.forward(column);
    EXPECT_EQ(held(pMTFState, 256), mtf.list());
    call();
    mtf.forward(column);
    EXPECT_EQ(held(pSrcZ1Z2, srcZ1Z2Len), mtf.forward(column));
    prepare("ntksMTFInv_8u");
    oracle::Mtf inverse;
    EXPECT_EQ(held(pMTFState, 256), inverse.list()); // from the beginning
    call();
    EXPECT_EQ(inverse.inverse(positions), column);
    EXPECT_EQ(held(pSrcMTF, srcMTFLen), inverse.inverse(positions));
}

TEST_F(Bz2Wiring, RunsOfZeroes) {
    prepare("ntksEncodeZ1Z2_BZ2_8u16u");
    const Bytes positions = oracle::Mtf().forward(lastColumn());
    const Symbols wanted = oracle::z1z2Encoded(positions);
    const int before = freqTable[0];
    std::fill_n(pDstZ1Z2, 2 * dstZ1Z2Len, Ntk8u{0xee});
    call();
    const auto* const symbols = reinterpret_cast<const Ntk16u*>(pDstZ1Z2);
    EXPECT_EQ(Symbols(symbols, symbols + dstLen), wanted);
    EXPECT_EQ(freqTable[0], before + 2 * std::count(wanted.begin(), wanted.end(), 0));
    prepare("ntksDecodeZ1Z2_BZ2_16u8u");
    std::fill_n(pSrcZ1Z2, srcZ1Z2Len, Ntk8u{0xee});
    call();
    EXPECT_EQ(held(pSrcZ1Z2, dstLen), positions);
    EXPECT_EQ(pSrc, pDstZ1Z2 + 2 * dstZ1Z2Len);
}

// Not the file: the source was overwritten at its start, and holds ranks.
TEST_F(Bz2Wiring, RunsAreDecodedFromRanks) {
    prepare("ntksDecodeRLEState_BZ2_8u");
    Bytes ranks = reduced(runCoded());
    const size_t firstLen = oracle::rleDecoded(ranks).size();
    call();
    const size_t once = ranks.size();
    ranks.resize(2 * once);
    std::copy_n(ranks.begin(), once, ranks.begin() + static_cast<std::ptrdiff_t>(once));
    const Bytes twice = oracle::rleDecoded(ranks);
    EXPECT_EQ(Bytes(pSrcRLE, pDst),
              Bytes(twice.begin() + static_cast<std::ptrdiff_t>(firstLen), twice.end()));
    EXPECT_EQ(dstLen, maxLen - (pDst - pSrcRLE));
}

// The same tables as from the symbols and an alphabet of the dictionary's size.
TEST_F(Bz2Wiring, HuffmanTablesAreThoseOfTheSymbols) {
    prepare("ntksEncodeHuffInit_BZ2_16u8u");
    const auto packed = [](Ntk8u* state) {
        Bytes out(30000);
        Ntk32u code = 0;
        int bits = 0;
        int length = static_cast<int>(out.size());
        EXPECT_EQ(ntksPackHuffContext_BZ2_16u8u(&code, &bits, out.data(), &length, state), 0);
        out.resize(static_cast<size_t>(length));
        return out;
    };
    int size = 0;
    ntksEncodeHuffGetSize_BZ2_16u8u(100000, &size);
    Bytes state(static_cast<size_t>(size));
    ASSERT_EQ(ntksEncodeHuffInit_BZ2_16u8u(sizeDictionary, freqTable,
                                           reinterpret_cast<Ntk16u*>(pDstZ1Z2), dstZ1Z2Len,
                                           state.data()),
              0);
    std::fill_n(pEncodeHuffState, size, Ntk8u{0});
    call();
    const Bytes wanted = packed(state.data());
    EXPECT_GT(wanted.size(), 20u);
    EXPECT_EQ(packed(pEncodeHuffState), wanted);
}
