#include "pscputick_gcc.h"

#include <chrono>
#include <ctime>

#include <ntkcore.h>

#include <gtest/gtest.h>

TEST(Frequency, MeasuredFromTwoSpansOfASecond) {
    const struct {
        long long first, second;
        int mhz;
    } cases[] = {{2395700000, 2395700000, 2395},
                 {2000000000, 2400500000, 2200},
                 {1999000, 0, 0},
                 {100, 2001000, 1},
                 {5000000000, 5001000000, 5000},
                 {0, 0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(psMeasuredMHz(c.first, c.second), c.mhz) << c.first;
}

TEST(Frequency, SnapsToANominalOneWithinThreePercent) {
    const struct {
        int measured, mhz;
    } cases[] = {{2395, 2400}, {3500, 3500}, {3060, 3060}, {3154, 3060}, {3155, 3155},
                 {2450, 2400}, {2465, 2500}, {2515, 2500}, {2516, 2530}, {67, 66},
                 {63, 63},     {540, 530},   {900, 900},   {4100, 4100}, {0, 0},
                 {1, 1},       {1200, 1200}, {1030, 1000}};
    for (const auto& c : cases)
        EXPECT_EQ(psNominalMHz(c.measured), c.mhz) << c.measured;
}

// Takes two to three seconds once; sleeps through most of them.
TEST(Frequency, IsMeasuredOnce) {
    using clock = std::chrono::steady_clock;
    if (psCpuTicker::knownFreq() != 0)
        GTEST_SKIP() << "another test of this process has measured it";
    const auto cpuBefore = std::clock();
    const auto begin = clock::now();
    const unsigned long long clocks = ntkGetCpuClocks();
    const int mhz = psCpuTicker::getFreq();
    const double seconds = std::chrono::duration<double>(clock::now() - begin).count();
    const double rate = static_cast<double>(ntkGetCpuClocks() - clocks) / seconds / 1e6;
    EXPECT_NEAR(mhz, rate, 0.05 * rate);
    EXPECT_LT(static_cast<double>(std::clock() - cpuBefore) / CLOCKS_PER_SEC, 0.5);
    const auto again = clock::now();
    EXPECT_EQ(psCpuTicker::getFreq(), mhz);
    EXPECT_LT(clock::now() - again, std::chrono::milliseconds(500));
    EXPECT_EQ(psCpuTicker::knownFreq(), mhz);
}

// Initialised before any static initialiser.
static const unsigned long long s_clocksAtStart = ntk_StartCpuClocks ? ntk_StartCpuClocks() : 0;

TEST(ClockReaders, RunFromTheStart) {
    EXPECT_GT(s_clocksAtStart, 0u);
    const unsigned long long start = ntk_StartCpuClocks();
    EXPECT_GT(start, s_clocksAtStart);
    EXPECT_GT(ntk_StopCpuClocks(), start);
    EXPECT_EQ(psCpuTicker::getClockFactor(), 1);
}
