#include <gtest/gtest.h>

#include <climits>

#include "pstimingmath.h"

namespace {
struct Case {
    psString got;
    const char* want;
};

void expectTexts(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        EXPECT_STREQ(c.got.c_str(), c.want);
    }
}
} // namespace

TEST(TimingMath, Texts) {
    expectTexts({
        {clockStr(0), "0"},
        {clockStr(-5), "-5"},
        {clockStr(2147483647), "2147483647"},
        {clockStr(2147483648), "2147483640"},
        {clockStr(12345678901), "12345678900"},
        {psAccuracyText(0.0005), "0.05%"},
        {psAccuracyText(0.000999), "0.10%"},
        {psAccuracyText(0.001), "0.1%"},
        {psAccuracyText(0.073), "7.3%"},
        {psAccuracyText(2.5), "250.0%"},
    });
}

TEST(TimingMath, SpreadsOfRuns) {
    EXPECT_DOUBLE_EQ(psRelativeSpread(110, 90), 0.2);
    EXPECT_DOUBLE_EQ(psRelativeSpread(100, 100), 0);
    const double runs[] = {100, 130, 70};
    EXPECT_DOUBLE_EQ(psMeanSpread(runs, 3), 0.3);
    EXPECT_DOUBLE_EQ(psMeanSpread(runs, 0), 0);
    EXPECT_DOUBLE_EQ(psSmallest(runs, 3), 70);
}

TEST(TimingMath, PriorRunIsTooShortOrLongEnough) {
    EXPECT_EQ(psJudgePriorRun(300, 1, 10000), PS_ACCUR_WARN);
    EXPECT_EQ(psJudgePriorRun(300, 128, 10000), PS_OK);
    EXPECT_EQ(psJudgePriorRun(10000, 1, 10000), PS_OK);
    EXPECT_EQ(psJudgePriorRun(0, 1, 0), PS_ACCUR_FAIL);
}

TEST(TimingMath, LoopCountsGrow) {
    EXPECT_EQ(psShortRunFactor(10000, 300), 128);
    EXPECT_EQ(psShortRunFactor(10000, 5000), 4);
    EXPECT_EQ(psShortRunFactor(10000, 312), 64); // 64.1 is cut first
    EXPECT_EQ(psShortRunFactor(1LL << 40, 1), 1LL << 41);
    EXPECT_EQ(psTimesLoops(2048, 128), 262144);
    EXPECT_EQ(psTimesLoops(2048, 1LL << 41), INT_MAX);
    EXPECT_EQ(psTimesLoops(2048, 1LL << 61), INT_MAX);
    EXPECT_EQ(psTimesLoops(-3, 8), -24);
    EXPECT_EQ(psTimesLoops(INT_MIN, 8), INT_MIN);
    EXPECT_EQ(psTimesLoops(-2048, 1LL << 61), INT_MIN);
    EXPECT_EQ(psInnerLoops(4, 200), 1 + 99);
    EXPECT_EQ(psInnerLoops(4, 201), 1);
    EXPECT_DOUBLE_EQ(psStatBudgetClocks(2400, 100), 24000000);
}

TEST(TimingMath, LoopRangeOfAFactor) {
    const struct {
        int factor, minLoops, maxLoops;
    } cases[] = {{0, 0, 0}, {-2, 4, 8192}, {3, 0, 256}, {1, 0, 1024}, {33, 0, 1024}};
    for (const auto& c : cases) {
        const psLoopRange range = psLoopRangeOfFactor(c.factor);
        EXPECT_EQ(range.minLoops, c.minLoops) << c.factor;
        EXPECT_EQ(range.maxLoops, c.maxLoops) << c.factor;
    }
}
