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
        psTest& test = started(function);
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
    psTest& test = started("ntksCRC32_8u");
    std::set<std::string> starts;
    for (int i = 0; i < 2; i++) {
        choose("16384", "unused");
        ASSERT_TRUE(test.initData());
        starts.insert(std::string(reinterpret_cast<const char*>(pSrc), 64));
        test.flushData();
    }
    EXPECT_EQ(starts.size(), 2u);
}
