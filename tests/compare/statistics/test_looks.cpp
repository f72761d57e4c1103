#include "looks.h"

#include <gtest/gtest.h>

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

TEST(Looks, AllPassesTogetherTakeTheTimeOfACase) {
    for (const int cases : {1, 32, 500}) {
        const Looks looks = planLooks(cases, 0.05);
        EXPECT_DOUBLE_EQ(secondsOfPass(looks, 1.5) * looks.last(), 1.5);
    }
}

} // namespace
} // namespace compare
