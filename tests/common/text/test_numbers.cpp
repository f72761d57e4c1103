#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "numbers.h"

namespace common {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
const double none = std::nan("");

TEST(Numbers, DifferencesArePercentWithASign) {
    const std::pair<double, const char*> cases[] = {{std::log(1.0102), "+1.02%"},
                                                    {std::log(0.995), "-0.50%"},
                                                    {0, "0.00%"},
                                                    {-1e-9, "0.00%"},
                                                    {1e-9, "0.00%"},
                                                    {std::log(0.5), "-50.00%"},
                                                    {std::log(1.9999), "+99.99%"},
                                                    {std::log(2.5), "2.50x"},
                                                    {std::log(9.996), "10x"},
                                                    {std::log(41.2), "41x"},
                                                    {std::log(123.0), "123x"},
                                                    {infinite, "?"},
                                                    {-infinite, "?"},
                                                    {none, "?"}};
    for (const auto& [logRatio, text] : cases) {
        EXPECT_EQ(percentText(logRatio), text) << logRatio;
    }
    EXPECT_EQ(widthText(0.0021), "0.21%");
    EXPECT_EQ(settingText(0.005), "0.5%");
    EXPECT_EQ(settingText(0.01), "1%");
}

TEST(Numbers, ClocksHaveFourDigitsAndNoExponent) {
    const std::pair<double, const char*> cases[] = {
        {4.9213, "4.921"},    {0.0726999, "0.07270"}, {12.3456, "12.35"},
        {9.99996, "10.00"},   {999.96, "1000"},       {9.996, "9.996"},
        {123456.7, "123457"}, {1, "1.000"},           {0, "0"},
        {none, "?"},          {infinite, "?"},        {-1, "?"}};
    for (const auto& [clocks, text] : cases) {
        EXPECT_EQ(clocksText(clocks), text) << clocks;
    }
}

TEST(Numbers, DurationsHaveTheUnitsOfTheirSize) {
    const std::pair<double, const char*> cases[] = {{0, "0 s"},
                                                    {0.25, "0.2 s"},
                                                    {1, "1 s"},
                                                    {9.94, "9.9 s"},
                                                    {9.96, "10 s"},
                                                    {59.4, "59 s"},
                                                    {59.6, "1 min 00 s"},
                                                    {200, "3 min 20 s"},
                                                    {3599, "59 min 59 s"},
                                                    {3599.7, "1 h 00 min"},
                                                    {7500, "2 h 05 min"},
                                                    {infinite, "?"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(durationText(seconds), text) << seconds;
    }
}

TEST(Numbers, NumbersReadBackAsTheyWere) {
    for (const double number : {0.1, 1.0 / 3, 1e300, 5e-324, 65537.25}) {
        EXPECT_EQ(std::strtod(exactText(number).c_str(), nullptr), number);
    }
    EXPECT_EQ(exactText(infinite), "");
    EXPECT_EQ(exactText(none), "");
}

} // namespace

} // namespace common
