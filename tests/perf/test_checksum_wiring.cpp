#include "family.h"

#include <unistd.h>

#include <set>

#include "p_dcchecksum_ia.h"

using namespace dcchecksum;

namespace {
using ChecksumWiring = FamilyTest;
}

TEST_F(ChecksumWiring, EveryCallGoesOnFromTheValueBefore) {
    choose("16384", "unused");
    checksum = 0;
    std::set<Ntk32u> values;
    for (const char* function :
         {"ntksAdler32_8u", "ntksCRC32_8u", "ntksCRC32C_8u", "ntksCRC32_BZ2_8u"}) {
        psTest& test = findTest(function);
        test.forgetParms();
        ASSERT_TRUE(test.canStart());
        EXPECT_EQ(test.parms().count(), 1);
        ASSERT_TRUE(test.initData());
        EXPECT_EQ(srcLen, 16384);
        EXPECT_DOUBLE_EQ(test.getDivisor(), 16384);
        const std::set<Ntk8u> bytes(pSrc, pSrc + srcLen);
        EXPECT_GT(bytes.size(), 250u); // random, over the whole range
        test.tool().setMethodLoop(2);  // the untimed call and two timed ones
        const Ntk32u before = checksum;
        EXPECT_EQ(test.runTiming(), PS_OK);
        const Ntk32u after = checksum;
        checksum = before;
        const auto call = std::string(function) == "ntksAdler32_8u"  ? ntksAdler32_8u
                          : std::string(function) == "ntksCRC32_8u"  ? ntksCRC32_8u
                          : std::string(function) == "ntksCRC32C_8u" ? ntksCRC32C_8u
                                                                     : ntksCRC32_BZ2_8u;
        for (int i = 0; i < 3; i++) {
            call(pSrc, srcLen, &checksum);
        }
        EXPECT_EQ(checksum, after) << function;
        values.insert(after);
        test.flushData();
    }
    EXPECT_EQ(values.size(), 4u);
}

TEST_F(ChecksumWiring, DataDifferFromLengthToLength) {
    psTest& test = findTest("ntksCRC32_8u");
    test.forgetParms();
    ASSERT_TRUE(test.canStart());
    std::set<std::string> starts;
    for (int i = 0; i < 2; i++) {
        choose("16384", "unused");
        ASSERT_TRUE(test.initData());
        starts.insert(std::string(reinterpret_cast<const char*>(pSrc), 64));
        test.flushData();
    }
    EXPECT_EQ(starts.size(), 2u);
}

// The order of the files is the order in which users see the tests when they switch sorting off.
TEST_F(ChecksumWiring, TestsAreRegisteredInTheirOrder) {
    psString names;
    for (const psTest* test : *pTestList) {
        names += test->functionName() + " " + test->info().name + "/" + test->info().macro + "\n";
    }
    EXPECT_STREQ(names.c_str(), "__psOS OS information/\n"
                                "__psHost Computer information/\n"
                                "ntksEncodeRLE_BZ2_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksReduceDictionary_8u_I Timdc_BZ2/KX_REG_I\n"
                                "ntksExpandDictionary_8u_I Timdc_BZ2/KX_REG_I\n"
                                "ntksBWTFwd_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksBWTInv_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksMTFFwd_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksMTFInv_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksEncodeZ1Z2_BZ2_8u16u Timdc_BZ2/KX_REG_I\n"
                                "ntksDecodeZ1Z2_BZ2_16u8u Timdc_BZ2/KX_REG_I\n"
                                "ntksDecodeBlock_BZ2_16u8u Timdc_BZ2/KX_REG_I\n"
                                "ntksDecodeRLEState_BZ2_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksBWTFwd_SelectSort_8u Timdc_BZ2/KX_REG_I\n"
                                "ntksEncodeHuffInit_BZ2_16u8u Timdc_BZ2/KX_REG\n"
                                "ntksEncodeHuff_BZ2_16u8u Timdcbz2Huff/KX_REG_I\n"
                                "ntksDecodeHuff_BZ2_8u16u Timdcbz2Huff/KX_REG_I\n"
                                "ntksAdler32_8u TimdcChecksum/KX_REG\n"
                                "ntksCRC32_8u TimdcChecksum/KX_REG\n"
                                "ntksCRC32C_8u TimdcChecksum/KX_REG\n"
                                "ntksCRC32_BZ2_8u TimdcChecksum/KX_REG\n"
                                "ntksEncodeLZ4_8u TimdcLZ4/KX_REG_I\n"
                                "ntksEncodeLZ4Safe_8u TimdcLZ4/KX_REG_I\n"
                                "ntksEncodeLZ4Dict_8u TimdcLZ4Dict/KX_REG_I\n"
                                "ntksEncodeLZ4DictSafe_8u TimdcLZ4Dict/KX_REG_I\n"
                                "ntksEncodeLZ4HC_8u TimdcLZ4Dict/KX_REG_I\n"
                                "ntksDecodeLZ4_8u TimdcLZ4/KX_REG_I\n"
                                "ntksDeflateLZ77_8u Timdc_Deflate/KX_REG_I\n"
                                "ntksDeflateHuff_8u Timdc_Deflate/KX_REG_I\n"
                                "ntksInflate_8u Timdc_Deflate/KX_REG_I\n"
                                "ntksEncodeLZO_8u TimdcLZO/KX_REG_I\n"
                                "ntksDecodeLZO_8u TimdcLZO/KX_REG_I\n"
                                "ntksDecodeLZOSafe_8u TimdcLZO/KX_REG_I\n"
                                "ntksEncodeLZSS_8u TimdcLZSS/KX_REG_I\n"
                                "ntksDecodeLZSS_8u TimdcLZSS/KX_REG_I\n"
                                "ntksEncodeZfp444_32f TimdcZfpEncode444/KX_REG_Ibs_X\n"
                                "ntksDecodeZfp444_32f TimdcZfpDecode444/KX_REG_Ibs_X\n");
}
