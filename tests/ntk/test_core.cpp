// The core's services: statuses, threads, cache size, clocks, floating-point words; byte vectors.
#include "ntkcore.h"
#include "ntks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

namespace {

TEST(StatusString, TellsEveryStatusApartAndKnowsTheSignOfOthers) {
    std::set<std::string> texts;
    for (NtkStatus status = ntkStsNoProcessorInfo; status <= ntkStsSrcEnd; ++status) {
        // -1, the only number in between that is not a status, represents all unknown errors.
        EXPECT_TRUE(texts.insert(ntkGetStatusString(status)).second) << status;
    }
    EXPECT_TRUE(texts.insert(ntkGetStatusString(4711)).second);
    EXPECT_STREQ(ntkGetStatusString(0), "No error");
    EXPECT_STREQ(ntkGetStatusString(-4711), "Unknown error");
}

TEST(NumThreads, StaysWithinItsRange) {
    int threads = 0;
    EXPECT_EQ(ntkGetNumThreads(&threads), ntkStsNoErr);
    EXPECT_EQ(threads, 1);
    for (const int bad : {0, -1, NTK_MAX_NUM_THREADS + 1}) {
        EXPECT_EQ(ntkSetNumThreads(bad), ntkStsBadValue) << bad;
    }
    EXPECT_EQ(ntkSetNumThreads(NTK_MAX_NUM_THREADS), ntkStsNoErr);
    EXPECT_EQ(ntkGetNumThreads(&threads), ntkStsNoErr);
    EXPECT_EQ(threads, NTK_MAX_NUM_THREADS);
    ntkSetNumThreads(1);
    EXPECT_EQ(ntkGetNumThreads(nullptr), ntkStsNullPtr);
}

TEST(MaxCacheSize, IsPlausibleHere) {
    int bytes = -1;
    const NtkStatus status = ntkGetMaxCacheSizeB(&bytes);
    if (status == ntkStsNoProcessorInfo) {
        GTEST_SKIP() << "this processor describes no cache";
    }
    EXPECT_EQ(status, ntkStsNoErr);
    EXPECT_GE(bytes, 16 << 10);
    EXPECT_EQ(ntkGetMaxCacheSizeB(nullptr), ntkStsNullPtr);
}

TEST(Clocks, RunForwardFromReaderToReader) {
    Ntk64u extended = 0;
    Ntk32u registers[4] = {0x80000001U, 0, 0, 0};
    ASSERT_EQ(ntkGetCpuFeatures(&extended, registers), ntkStsNoErr);
    constexpr Ntk32u rdtscpBit = 1U << 27;
    const bool hasRdtscp = (registers[3] & rdtscpBit) != 0;

    Ntk64u previous = ntkGetCpuClocks();
    for (auto* const reader : {ntkStartTsc, ntkStopTsc, ntkStartTscp, ntkStopTscp}) {
        if (hasRdtscp || reader == ntkStartTsc || reader == ntkStopTsc) {
            const Ntk64u now = reader();
            EXPECT_GT(now, previous);
            previous = now;
        }
    }
}

// Restores the control words and clears the flags, so that later tests find the initial state.
class FpuWords : public testing::Test {
protected:
    void TearDown() override {
        ntkFpuSsx4TS(ntkFpuClear, 0, 0);
        ntkFpuSsx4TS(ntkFpuSetControl, m_control, ~0U);
        ntkFpuSsx4TS(ntkSsxSet, m_simd, ~0U);
    }
    const Ntk32u m_control = ntkFpuSsx4TS(ntkFpuGetControl, 0, 0);
    const Ntk32u m_simd = ntkFpuSsx4TS(ntkSsxGet, 0, 0);
};

TEST_F(FpuWords, AreWrittenUnderTheMaskOnly) {
    constexpr Ntk32u precision53 = 0x200;
    constexpr Ntk32u precisionMask = 0x300;
    EXPECT_EQ(ntkFpuSsx4TS(ntkFpuSetControl, precision53, precisionMask),
              (m_control & ~precisionMask) | precision53);
    EXPECT_EQ(ntkFpuSsx4TS(ntkFpuGetControl, 0, 0), (m_control & ~precisionMask) | precision53);

    constexpr Ntk32u flushToZero = 0x8000;
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxSet, flushToZero, flushToZero), m_simd | flushToZero);
    volatile float tiny = 1e-38F;
    tiny = tiny / 4;
    EXPECT_EQ(tiny, 0.0F) << "denormal results are flushed";
    // Reserved bits would fault when written.
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxSet, m_simd | 0xffff0000U, ~0U), m_simd);
    EXPECT_EQ(ntkFpuSsx4TS(99, ~0U, ~0U), 0U);
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxGet, 0, 0), m_simd);
}

TEST_F(FpuWords, FlagsAreSeenAndCleared) {
    constexpr Ntk32u zeroDivide = 4;
    constexpr Ntk32u flags = 0x3f;
    volatile long double zero87 = 0;
    volatile long double quotient87 = 1 / zero87;
    EXPECT_TRUE(std::isinf(quotient87));
    EXPECT_EQ(ntkFpuSsx4TS(ntkFpuGetStatus, 0, 0) & zeroDivide, zeroDivide);
    EXPECT_EQ(ntkFpuSsx4TS(ntkFpuClear, 0, 0), 0U);
    EXPECT_EQ(ntkFpuSsx4TS(ntkFpuGetStatus, 0, 0) & flags, 0U);

    volatile float zero = 0;
    volatile float quotient = 1 / zero;
    EXPECT_TRUE(std::isinf(quotient));
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxGet, 0, 0) & zeroDivide, zeroDivide);
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxClear, 0, 0), 0U);
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxGet, 0, 0), m_simd & ~flags);
}

TEST(ByteVectors, CopyAndZeroExactlyTheLength) {
    const Ntk8u source[4] = {1, 2, 3, 4};
    Ntk8u target[4] = {9, 9, 9, 9};
    EXPECT_EQ(ntksCopy_8u(source, target, 3), ntkStsNoErr);
    EXPECT_EQ(std::string(target, target + 4), std::string("\1\2\3\11"));
    EXPECT_EQ(ntksZero_8u(target + 1, 2), ntkStsNoErr);
    EXPECT_EQ(std::string(target, target + 4), std::string("\1\0\0\11", 4));
    EXPECT_EQ(ntksCopy_8u(source, target, 0), ntkStsNoErr);
    EXPECT_EQ(ntksCopy_8u(source, target, -1), ntkStsBadSize);
    EXPECT_EQ(ntksCopy_8u(nullptr, target, 1), ntkStsNullPtr);
    EXPECT_EQ(ntksCopy_8u(source, nullptr, 1), ntkStsNullPtr);
    EXPECT_EQ(ntksZero_8u(target, -1), ntkStsBadSize);
    EXPECT_EQ(ntksZero_8u(nullptr, 1), ntkStsNullPtr);
    EXPECT_EQ(target[0], 1);
}

} // namespace
