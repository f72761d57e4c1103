#include "looks.h"

#include <gtest/gtest.h>

#include <cmath>

namespace compare {
namespace {

TEST(Looks, TwoOfThemShareTheChanceOfError) {
    const struct {
        int cases;
        double alpha;
        std::vector<int> passes;
    } rows[] = {
        {1, 0.05, {8, 16}},    {2, 0.05, {9, 17}},   {32, 0.05, {13, 21}},
        {500, 0.05, {17, 25}}, {32, 0.01, {15, 23}}, {0, 0.05, {8, 16}},
    };
    for (const auto& row : rows) {
        const Looks looks = planLooks(row.cases, row.alpha);
        EXPECT_EQ(looks.passes, row.passes) << row.cases;
        EXPECT_DOUBLE_EQ(looks.confidence, 1 - row.alpha / 2) << row.cases;
    }
}

// 2/2^n is the smallest p-value of n starts; with one start more the smallest start may disagree.
TEST(Looks, TheFirstCanTellADifferenceAmongAllCases) {
    for (const int cases : {1, 3, 10, 32, 100, 500, 5000}) {
        const Looks looks = planLooks(cases, 0.05);
        const int first = looks.passes.front();
        EXPECT_LE(2 * cases * 4 * std::pow(0.5, first), 0.05) << cases;
        EXPECT_GT(2 * cases * 8 * std::pow(0.5, first), 0.05) << cases;
    }
}

TEST(Looks, AllPassesTogetherTakeTheTimeOfACase) {
    for (const int cases : {1, 32, 500}) {
        const Looks looks = planLooks(cases, 0.05);
        EXPECT_DOUBLE_EQ(secondsOfPass(looks, 1.5) * looks.last(), 1.5);
    }
}

} // namespace
} // namespace compare
