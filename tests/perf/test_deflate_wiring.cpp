// The deflate tests on real data: after initData, the init body and one call, the buffers hold what
// zlib turns back into the file.

#include "family.h"

#include <zlib.h>

#include <numeric>

#include "p_dclz77deflate_ia.h"

using namespace dcdeflate;

namespace {
class DeflateWiring : public FamilyTest {
protected:
    // canStart, initData; the caller looks, calls and flushes.
    psTest& prepare(const char* function, int level, const std::string& path) {
        psTest& test = started(function);
        set(g_codeFile, path);
        set(comprLevel, std::to_string(level));
        EXPECT_TRUE(test.initData());
        test.tool().setMethodLoop(2); // the second call finds what the first one left
        return test;
    }
    // The stream with a block header before it, which moves all bits up by 3.
    static std::string inflated(const Ntk8u* stream, Ntk32u length) {
        std::string block;
        unsigned bits = 3;
        for (Ntk32u i = 0; i < length; i++, bits >>= 8) {
            bits |= static_cast<unsigned>(stream[i]) << 3;
            block.push_back(static_cast<char>(bits));
        }
        block.push_back(static_cast<char>(bits));
        std::string out(1 << 20, '\0');
        z_stream z{};
        inflateInit2(&z, -MAX_WBITS);
        z.next_in = reinterpret_cast<Bytef*>(block.data());
        z.avail_in = static_cast<uInt>(block.size());
        z.next_out = reinterpret_cast<Bytef*>(out.data());
        z.avail_out = static_cast<uInt>(out.size());
        const bool ended = inflate(&z, Z_FINISH) == Z_STREAM_END;
        out.resize(z.total_out);
        inflateEnd(&z);
        return ended ? out : "does not end";
    }
    static std::string prepared(const Ntk8u* bytes, size_t length) {
        return std::string(reinterpret_cast<const char*>(bytes), length);
    }
    const std::string text = sampleText(120000);
    const std::string file = makeFile("text", text);
    const std::string whole = text.substr(0, 102400);
};
} // namespace

// The search makes the same entries again, in just the room that there is, whatever is left in the
// chains; the coder makes the same bytes again.
TEST_F(DeflateWiring, EncoderMakesWhatZlibRestores) {
    Ntk32u smallest = 102400;
    for (const int level : {1, 6, 9}) {
        psTest& search = prepare("ntksDeflateLZ77_8u", level, file);
        EXPECT_EQ(inflated(pHuff, huffLen), whole) << level;
        EXPECT_LT(huffLen, smallest) << level;
        smallest = huffLen;
        EXPECT_DOUBLE_EQ(search.getDivisor(), 102400);
        const std::string lit = prepared(pLit, distLen);
        const std::string dist = prepared(pDist, 2 * distLen);
        std::fill_n(pLit, distLen, Ntk8u{0xEE});
        std::fill_n(pDist, 2 * distLen, Ntk8u{0xEE});
        const Ntk32u frequencies = std::accumulate(pLitFreqTable, std::end(pLitFreqTable), 0u);
        auto* const heads = reinterpret_cast<Ntk32s*>(pHashHead);
        std::fill_n(heads, 32768, 7); // a position of the data
        EXPECT_EQ(search.runTiming(), PS_OK);
        EXPECT_EQ(std::count(heads, heads + 32768, 7), 0);
        EXPECT_EQ(std::accumulate(pLitFreqTable, std::end(pLitFreqTable), 0u),
                  frequencies + 3 * distLen); // one untimed call, two timed ones
        EXPECT_EQ(prepared(pLit, distLen), lit);
        EXPECT_EQ(prepared(pDist, 2 * distLen), dist);
        EXPECT_EQ(srcLen, 0);
        EXPECT_EQ(dstLen, 0);
        search.flushData();

        psTest& coder = prepare("ntksDeflateHuff_8u", level, file);
        const std::string stream = prepared(pHuff, huffLen - 2);
        std::fill_n(pHuff, huffLen, Ntk8u{0xEE});
        EXPECT_EQ(coder.runTiming(), PS_OK);
        EXPECT_EQ(prepared(pHuff, huffLen - 2), stream);
        coder.flushData();
    }
    EXPECT_EQ(psSumOfBlocks(), 0);
}

// The source is overwritten with what the stream holds, from any bits that wait.
TEST_F(DeflateWiring, InflaterRestoresTheFile) {
    for (const auto& [path, contents] : {std::pair{file, whole},
                                         {makeFile("short", "abcabcabcabc"), "abcabcabcabc"},
                                         {makeFile("one", "\xFF"), "\xFF"}}) {
        psTest& test = prepare("ntksInflate_8u", contents.size() > 1 ? 1 : 9, path);
        std::fill_n(pData, dataLen, Ntk8u{0xEE});
        code = 0xFFFFFFFF;
        inflateState.progress = 0xFFFFFFFF;
        EXPECT_EQ(test.runTiming(), PS_OK);
        EXPECT_EQ(prepared(pData, dataLen), contents);
        EXPECT_EQ(mode, ntkInflateFinished);
        EXPECT_DOUBLE_EQ(test.getDivisor(), static_cast<double>(contents.size()));
        test.flushData();
    }
}
