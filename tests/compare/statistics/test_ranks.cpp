#include "ranks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

// Values of R 4.2.2 stand beside the call that gave them.
namespace compare {
namespace {

TEST(Median, OfAnEvenNumberItIsTheMeanOfTheMiddleTwo) {
    EXPECT_EQ(median({3}), 3);
    EXPECT_EQ(median({4, 1}), 2.5);
    EXPECT_EQ(median({9, 1, 5}), 5);
    EXPECT_EQ(median({10, -2, 4, 3, 1, 8}), 3.5);
    EXPECT_EQ(median({7, 7, 7, 7}), 7);
}

// tied <- function(x) { x <- x[x != 0]; r <- rank(abs(x)); m <- sum(r) / 2
//   s <- as.matrix(expand.grid(rep(list(0:1), length(x)))) %*% r
//   mean(abs(s - m) >= abs(sum(r[x > 0]) - m)) }
TEST(SignedRank, ZerosAreLeftOutAndEqualSizesShareTheirRanks) {
    const std::pair<std::vector<double>, double> rows[] = {
        {{}, 1},
        {{0, 0, 0}, 1},
        {{0.3}, 1},
        {{1, 1, 1, -1}, 0.625},
        {{2, 2, -1, 3, 3, 5}, 0.0625},
        {{0, 0, 1, 2, -3, 3}, 0.75},
        {{1, -1, 2, 2, -2, 3, 4, 4, 4}, 0.05078125},
        {{.5, .5, .5, .5, .5, .5, .5, .5}, 0.0078125},
        {{1, 1, 2, -2, -2, 3, 3, -3, 4, 5}, 0.21875},
        {{-1, -1, -2, 2, 2, -3, -3, 3, -4, -5}, 0.21875},
    };
    for (const auto& [values, pValue] : rows) {
        EXPECT_NEAR(signedRankPValue(values), pValue, 1e-15) << testing::PrintToString(values);
    }
}

// wilcox.test(values, exact = TRUE, conf.int = TRUE, conf.level = confidence)
TEST(SignedRank, AgreesWithR) {
    // The depression scores of Hollander and Wolfe (1973), first minus second visit.
    const std::vector<double> scores = {0.952, -0.147, 1.022, 0.43, 0.62, 0.59, 0.49, -0.08, 0.01};
    const std::vector<double> few = {.012, -.003, .007, .004, -.001, .009, .002, .015};
    const std::vector<double> fourteen = {.00374, .01184, .00164, .02595, .0133, .0018,  .01487,
                                          .01738, .01576, .00695, .02512, .0139, .00379, -.01215};
    const std::vector<double> thirty = {
        -.01494, .0067,  .03476,  -.01961, .00139, .00565,  .01716, -.00179, .04269, .00022,
        .01135,  .02264, -.00485, -.01779, .03864, -.04322, .02057, .00372,  .02326, .01165,
        .04482,  -.021,  .03479,  .04209,  .0031,  -.04603, .01254, -.00893, .01884, .00879};
    const struct {
        const std::vector<double>& values;
        double confidence, pValue, low, high, estimate;
    } rows[] = {
        {scores, 0.95, 0.0390625, 0.01, 0.786, 0.46},
        {few, 0.9, 0.0546875, 0.0005, 0.0105, 0.0055},
        {few, 0.95, 0.0546875, -0.0005, 0.012, 0.0055},
        {few, 0.98, 0.0546875, -0.002, 0.0135, 0.0055},
        {fourteen, 1 - 0.05 / 3, 0.00231933593750, 0.00269, 0.01738, 0.010125},
        {thirty, 0.95, 0.0732440743595362, -0.000565, 0.01716, 0.008525},
        {thirty, 0.99, 0.0732440743595362, -0.00398, 0.02022, 0.008525},
    };
    for (const auto& row : rows) {
        const Interval interval = signedRankInterval(row.values, row.confidence);
        EXPECT_NEAR(signedRankPValue(row.values), row.pValue, 1e-13) << row.confidence;
        EXPECT_NEAR(interval.low, row.low, 1e-12) << row.confidence;
        EXPECT_NEAR(interval.high, row.high, 1e-12) << row.confidence;
        EXPECT_NEAR(interval.estimate, row.estimate, 1e-12) << row.confidence;
    }
}

// The widest interval of n values holds with 1 - 2/2^n.
TEST(SignedRank, TooFewValuesForTheConfidenceGiveInfiniteEnds) {
    const std::vector<double> values = {5, 1, 4, 2, 3, 6, 7, 8};
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (size_t count = 1; count <= values.size(); ++count) {
        const std::span<const double> some(values.data(), count);
        const double most = 1 - 2 * std::pow(0.5, count);
        const Interval possible = signedRankInterval(some, most);
        EXPECT_EQ(possible.low, *std::min_element(some.begin(), some.end()));
        EXPECT_EQ(possible.high, *std::max_element(some.begin(), some.end()));
        const Interval impossible = signedRankInterval(some, most + 1e-6);
        EXPECT_EQ(impossible.low, -infinite);
        EXPECT_EQ(impossible.high, infinite);
        EXPECT_EQ(impossible.estimate, possible.estimate);
    }
    const Interval none = signedRankInterval({}, 0.5);
    EXPECT_EQ(none.halfWidth(), infinite);
    EXPECT_TRUE(none.contains(1e9));
}

TEST(Interval, ItsHalfWidthIsTheLargerOne) {
    EXPECT_DOUBLE_EQ((Interval{1, -2, 2}.halfWidth()), 3);
    EXPECT_DOUBLE_EQ((Interval{1, 0.5, 4}.halfWidth()), 3);
}

} // namespace
} // namespace compare
