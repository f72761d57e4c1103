// What bench_own_cost computes and prints; its figures are those of the machine.
#include <cmath>

#include <gtest/gtest.h>

#include "exponent.h"
#include "process.h"

namespace {

TEST(Cost, ExponentIsThatOfThePowerLaw) {
    const struct { double power, nothing; } cases[] = {{1, 0}, {1, 7}, {2, 0.5}, {0.5, 3}, {0, 0}};
    for (const auto& c : cases) {
        std::vector<Point> points;
        for (const double size : {125.0, 250.0, 500.0, 1000.0}) {
            points.push_back({size, c.nothing + 0.01 * std::pow(size, c.power)});
        }
        EXPECT_NEAR(growthExponent(points, c.nothing), c.power, 1e-9) << c.power;
        points.push_back({2000, c.nothing}); // as cheap as nothing: tells nothing
        EXPECT_NEAR(growthExponent(points, c.nothing), c.power, 1e-9) << c.power;
    }
    EXPECT_EQ(growthExponent({{10, 5}}, 0), 0);
    EXPECT_EQ(growthExponent({{10, 5}, {10, 6}}, 0), 0);
}

TEST(Cost, EveryProgramAnswersWithItsStatus) {
    const Outcome outcome =
        runCommand({.program = NTK_OWN_COST_FILE, .arguments = {"answers", "--runs", "1"}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    for (const char* const row : {"\n| `ntkperf -v -&` | 0 | ", "\n| `ntkreport --wrong` | 2 | "}) {
        EXPECT_NE(outcome.output.find(row), std::string::npos) << outcome.output;
    }
    EXPECT_EQ(runCommand({.program = NTK_OWN_COST_FILE, .arguments = {"answer"}}).status != 0,
              true);
}

} // namespace
