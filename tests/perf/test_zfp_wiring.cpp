// The ZFP tests: the measured call codes the field as libzfp codes it whole, and takes it back.

#include "family.h"

#include <memory>

#include <zfp.h>

#include "p_dczfp.h"

using namespace dczfp;

namespace {
class ZfpWiring : public FamilyTest {
protected:
    // canStart, initData, one timed call; the buffers stay for the check.
    static psTest& call(const char* function, const char* bitsPerValue) {
        psTest& test = started(function);
        set(rate, bitsPerValue);
        EXPECT_TRUE(test.initData());
        memset(decomprBuf.data(), 0xff, static_cast<size_t>(decomprBuf.objectSize()));
        EXPECT_EQ(test.runTiming(), PS_OK);
        return test;
    }
    // libzfp on the whole field: coded from it, or decoded into it.
    static std::string whole(void* field, std::string coded) {
        const std::unique_ptr<zfp_field, decltype(&zfp_field_free)> array(
            zfp_field_3d(field, zfp_type_float, 32, 32, 32), zfp_field_free);
        const bool isCoded = !coded.empty();
        coded.resize(1 << 18);
        const std::unique_ptr<bitstream, decltype(&stream_close)> bits(
            stream_open(coded.data(), coded.size()), stream_close);
        const std::unique_ptr<zfp_stream, decltype(&zfp_stream_close)> zfp(
            zfp_stream_open(bits.get()), zfp_stream_close);
        zfp_stream_set_rate(zfp.get(), rate.value(), zfp_type_float, 3, zfp_false);
        coded.resize(isCoded ? zfp_decompress(zfp.get(), array.get())
                             : zfp_compress(zfp.get(), array.get()));
        return coded;
    }
    static std::string coded() {
        return std::string(static_cast<const char*>(comprBuf.data()),
                           static_cast<size_t>(comprLen));
    }
};
} // namespace

TEST_F(ZfpWiring, TheFieldIsCodedAsLibzfpCodesItWhole) {
    for (const char* const bitsPerValue : {"4", "8", "16", "1", "32"}) {
        psTest& encoder = call("ntksEncodeZfp444_32f", bitsPerValue);
        EXPECT_EQ(coded(), whole(fieldBuf.data(), "")) << bitsPerValue;
        EXPECT_EQ(comprLen, 4096 * rate.value());
        EXPECT_EQ(ntksEncodeZfp444_32f(static_cast<float*>(fieldBuf.data()), 4, 16, pState),
                  ntkStsBadValue)
            << "the call did not end the stream";
        EXPECT_DOUBLE_EQ(encoder.getDivisor(), 32768);
        const std::string field(static_cast<const char*>(fieldBuf.data()), 131072);
        encoder.flushData();
        EXPECT_DOUBLE_EQ(encoder.getDivisor(), 0); // there is no field now

        psTest& decoder = call("ntksDecodeZfp444_32f", bitsPerValue);
        EXPECT_EQ(memcmp(fieldBuf.data(), field.data(), field.size()), 0) << "another field";
        std::string expected(131072, '\0');
        whole(expected.data(), coded());
        EXPECT_EQ(memcmp(decomprBuf.data(), expected.data(), expected.size()), 0) << bitsPerValue;
        EXPECT_DOUBLE_EQ(decoder.getDivisor(), comprLen);
        decoder.flushData();
    }
    EXPECT_EQ(psSumOfBlocks(), 0);
}

// Smooth: no step from value to value takes more than a tenth of the field's range.
TEST_F(ZfpWiring, TheFieldIsSmoothAndNotFlat) {
    psTest& test = call("ntksEncodeZfp444_32f", "8");
    const auto* const field = static_cast<const float*>(fieldBuf.data());
    const auto [least, most] = std::minmax_element(field, field + fieldLen);
    EXPECT_GT(*most - *least, 0.5);
    for (int i = 0; i < fieldLen; i++) {
        for (const int step : {1, 32, 1024}) {
            if (i / step % 32 < 31) {
                ASSERT_LT(std::abs(field[i + step] - field[i]), (*most - *least) / 10) << i;
            }
        }
    }
    test.flushData();
}
