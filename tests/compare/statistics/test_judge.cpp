#include "judge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "comparisons.h"

namespace compare {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

// p.adjust(p, "holm") of R 4.2.2
TEST(Holm, AgreesWithR) {
    const struct {
        std::vector<double> pValues, adjusted;
    } rows[] = {
        {{}, {}},
        {{0.04}, {0.04}},
        {{0.01, 0.04, 0.03, 0.005}, {0.03, 0.06, 0.06, 0.02}},
        {{0.2, 0.001, 0.5, 0.012, 0.012, 0.9}, {0.6, 0.006, 1, 0.06, 0.06, 1}},
        {{0, 1, 0.0009765625, 0.3, 0.02, 0.02, 0.049}, {0, 1, 0.005859375, 0.6, 0.1, 0.1, 0.147}},
    };
    for (const auto& row : rows) {
        const std::vector<double> adjusted = holmAdjusted(row.pValues);
        ASSERT_EQ(adjusted.size(), row.adjusted.size());
        for (size_t i = 0; i < adjusted.size(); ++i) {
            EXPECT_NEAR(adjusted[i], row.adjusted[i], 1e-15) << row.pValues.size() << ' ' << i;
        }
    }
}

TEST(IsDone, NarrowEnoughAndClear) {
    const struct {
        const char* what;
        Interval interval;
        double pValue;
        int cases;
        bool done;
    } rows[] = {
        {"narrow around 0", {0, -0.004, 0.004}, 1, 1, true},
        {"one end is too far off", {0, -0.004, 0.0051}, 1, 1, false},
        {"infinite", {0, -infinite, infinite}, 0.0001, 1, false},
        {"differs", {0.03, 0.027, 0.034}, 0.004, 10, true},
        {"differs, but not beside so many", {0.03, 0.027, 0.034}, 0.004, 13, false},
        {"differs, but wide", {0.03, 0.02, 0.034}, 0.004, 10, false},
        {"small and without 0, not yet believed", {0.004, 0.001, 0.007}, 0.1, 1, false},
        {"around 0 and just within it", {0.00498, 0, 0.00995}, 0.2, 1, true},
    };
    for (const auto& row : rows) {
        Effect effect;
        effect.interval = row.interval;
        effect.pValue = row.pValue;
        EXPECT_EQ(isDone(effect, Settings{}, row.cases), row.done) << row.what;
    }
    Settings wide;
    wide.precision = 0.05;
    wide.tolerance = 0.1;
    Effect effect;
    effect.interval = {0.04, -0.008, 0.088};
    EXPECT_TRUE(isDone(effect, wide, 1));
    wide.tolerance = 0.05;
    EXPECT_FALSE(isDone(effect, wide, 1));
}

// Twelve starts about the centre, a little apart.
std::vector<double> around(double centre, double apart = 0.0001) {
    std::vector<double> ratios;
    for (int i = 0; i < 12; ++i) {
        ratios.push_back(centre + apart * (i - 5.5));
    }
    return ratios;
}

Comparison comparisonOf(std::vector<Case> cases) {
    Comparison comparison;
    comparison.looks = {12, 16};
    comparison.cases = std::move(cases);
    return comparison;
}

TEST(Judge, CallsEachCaseByItsIntervalAndPValue) {
    const std::pair<std::vector<double>, Verdict> rows[] = {
        {around(1.02), Verdict::slower},
        {around(0.98), Verdict::faster},
        {around(1.004), Verdict::slower}, // small, but there
        {around(1.0), Verdict::same},
        {around(1.0, 0.004), Verdict::open}, // wide
        {std::vector<double>(12, 1.0), Verdict::same},
        {{1.5, 1.5, 1.5}, Verdict::open}, // too few starts
        {{1.0}, Verdict::open},
    };
    for (const auto& [ratios, verdict] : rows) {
        const Judgement judgement = judge(comparisonOf({caseOf("f", ratios)}));
        EXPECT_EQ(judgement.effects.at(0).verdict, verdict) << testing::PrintToString(ratios);
    }
}

// All 12 starts agree: p = 2 * 2/4096, enough beside 50 cases without a difference, not beside 52.
// Of cases that all differ, none weakens the others.
TEST(Judge, AccountsForAllCasesThatWereMeasured) {
    const auto verdictBeside = [](const Case& other, int others) {
        std::vector<Case> cases(others, other);
        cases.push_back(caseOf("differs", around(0.97)));
        return judge(comparisonOf(cases)).effects.back().verdict;
    };
    EXPECT_EQ(verdictBeside(caseOf("f", around(1)), 50), Verdict::faster);
    EXPECT_EQ(verdictBeside(caseOf("f", around(1)), 52), Verdict::open);
    Case failed = caseOf("f", around(1));
    failed.failures.push_back({Side::base, "killed", ""});
    EXPECT_EQ(verdictBeside(failed, 52), Verdict::faster);
    EXPECT_EQ(verdictBeside(Case{}, 52), Verdict::faster);
}

TEST(Judge, TheLooksOfTheComparisonGiveTheConfidence) {
    Comparison comparison = comparisonOf({caseOf("f", around(1.02))});
    const double twoLooks = judge(comparison).effects[0].pValue;
    EXPECT_DOUBLE_EQ(twoLooks, 2 * 2 / 4096.0);
    comparison.looks = {12, 16, 20, 24};
    EXPECT_DOUBLE_EQ(judge(comparison).effects[0].pValue, 2 * twoLooks);
    comparison.looks.clear(); // it ended before any: as they would have been planned
    EXPECT_DOUBLE_EQ(judge(comparison).effects[0].pValue, twoLooks);
    comparison.settings.alpha = 0.0002; // two looks: 0.0001 is less than 2/4096
    EXPECT_FALSE(std::isfinite(judge(comparison).effects[0].interval.low));
    EXPECT_EQ(judge(comparison).effects[0].verdict, Verdict::open);
}

// In each pass the two cases of "one" make up for each other.
TEST(Judge, ASummaryIsTheGeometricMeanOverTheCommonPasses) {
    std::vector<double> rising;
    std::vector<double> falling;
    for (int pass = 1; pass <= 16; ++pass) {
        rising.push_back(1 + 0.01 * pass);
        falling.push_back(1.04 / rising.back());
    }
    Case goesOn = caseOf("one", falling);
    goesOn.starts.erase(goesOn.starts.begin() + 4); // pass 5 gave it no round
    rising.resize(12);
    Case failed = caseOf("one", around(9));
    failed.failures.push_back({Side::base, "killed", ""});
    const Judgement judgement = judge(comparisonOf(
        {goesOn, caseOf("one", rising), failed, caseOf("two", std::vector<double>(12, 0.5))}));

    ASSERT_EQ(judgement.functions.size(), 2u);
    const Summary& one = judgement.functions.at("one");
    EXPECT_EQ(one.cases, 2);
    EXPECT_NEAR(std::exp(one.interval.estimate), std::sqrt(1.04), 1e-12);
    EXPECT_NEAR(one.interval.low, one.interval.high, 1e-12);
    const Summary& two = judgement.functions.at("two");
    EXPECT_EQ(two.cases, 1);
    EXPECT_NEAR(std::exp(two.interval.estimate), 0.5, 1e-12);
    EXPECT_EQ(judgement.all.cases, 3);
    EXPECT_NEAR(std::exp(judgement.all.interval.estimate), std::cbrt(0.52), 1e-12);
}

TEST(Judge, TheSummaryOfOneCaseIsItsOwnInterval) {
    const Judgement judgement = judge(comparisonOf({caseOf("f", around(1.01, 0.003))}));
    const Interval& own = judgement.effects.at(0).interval;
    for (const Interval& interval :
         {judgement.functions.at("f").interval, judgement.all.interval}) {
        EXPECT_EQ(interval.estimate, own.estimate);
        EXPECT_EQ(interval.low, own.low);
        EXPECT_EQ(interval.high, own.high);
    }
}

TEST(Judge, CasesWithoutACommonPassHaveNoSummary) {
    Case later = caseOf("f", {1.0});
    later.starts[0].pass = 2;
    const Judgement judgement = judge(comparisonOf({caseOf("f", {1.0}), later}));
    EXPECT_EQ(judgement.all.interval.low, -infinite);
    EXPECT_EQ(judgement.all.interval.high, infinite);
    EXPECT_EQ(judge(Comparison{}).all.cases, 0);
}

TEST(Judge, HalfWidthsAreThoseOfTheMeasuredCasesWithEnoughStarts) {
    const Judgement judgement =
        judge(comparisonOf({caseOf("f", {1.0}), Case{}, caseOf("f", around(1, 0.001)),
                            caseOf("f", around(1, 0.002)), caseOf("f", around(1, 0.005))}));
    EXPECT_EQ(judgement.medianHalfWidth, judgement.effects[3].interval.halfWidth());
    EXPECT_EQ(judgement.largestHalfWidth, judgement.effects[4].interval.halfWidth());
    EXPECT_GT(judgement.largestHalfWidth, 2 * judgement.medianHalfWidth);
    EXPECT_EQ(judge(comparisonOf({Case{}})).largestHalfWidth, 0);
}

} // namespace
} // namespace compare
