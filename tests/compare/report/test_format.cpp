#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "format.h"
#include "progresstext.h"

namespace compare {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
const double none = std::nan("");

TEST(Format, DifferencesArePercentWithASign) {
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

TEST(Format, ClocksHaveFourDigitsAndNoExponent) {
    const std::pair<double, const char*> cases[] = {
        {4.9213, "4.921"},    {0.0726999, "0.07270"}, {12.3456, "12.35"},
        {9.99996, "10.00"},   {999.96, "1000"},       {9.996, "9.996"},
        {123456.7, "123457"}, {1, "1.000"},           {0, "0"},
        {none, "?"},          {infinite, "?"},        {-1, "?"}};
    for (const auto& [clocks, text] : cases) {
        EXPECT_EQ(clocksText(clocks), text) << clocks;
    }
}

TEST(Format, DurationsHaveTheUnitsOfTheirSize) {
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

TEST(Format, NumbersReadBackAsTheyWere) {
    for (const double number : {0.1, 1.0 / 3, 1e300, 5e-324, 65537.25}) {
        EXPECT_EQ(std::strtod(exactText(number).c_str(), nullptr), number);
    }
    EXPECT_EQ(exactText(infinite), "");
    EXPECT_EQ(exactText(none), "");
}

TEST(Format, ParametersShowBothSidesWhereTheyDiffer) {
    const NamedValues plain = {{"A", 1LL}, {"B", "x"}, {"C", 0.5}};
    const NamedValues other = {{"A", 1LL}, {"B", "y"}, {"D", 2LL}};
    EXPECT_EQ(parametersText(plain), "A=1 B=x C=0.5");
    EXPECT_EQ(parametersText({plain, plain}), "A=1 B=x C=0.5");
    EXPECT_EQ(parametersText({plain, other}), "A=1 B=x -> y C=0.5 -> none D=none -> 2");
    EXPECT_EQ(parametersText(NamedValues()), "");
    EXPECT_EQ(parametersText({plain, other}, ParameterForm::values), "1 x -> y 0.5 -> none "
                                                                     "none -> 2");
}

TEST(Format, OfAFileTheTableHasTheNameOnly) {
    const NamedValues here = {{"CodeFile", "/data/corpus/book1"}, {"Rate", "1/2"}};
    const NamedValues there = {{"CodeFile", "/other/book1"}, {"Rate", "1/2"}};
    EXPECT_EQ(parametersText({here, here}, ParameterForm::table), "CodeFile=book1 Rate=1/2");
    EXPECT_EQ(parametersText({here, here}, ParameterForm::values), "book1 1/2");
    EXPECT_EQ(parametersText({here, there}, ParameterForm::table),
              "CodeFile=/data/corpus/book1 -> /other/book1 Rate=1/2");
    EXPECT_EQ(parametersText(here), "CodeFile=/data/corpus/book1 Rate=1/2");
}

TEST(Format, LinesAreBrokenBetweenWords) {
    EXPECT_EQ(wrapped("ab cd ef", 5, ""), "ab cd\nef");
    EXPECT_EQ(wrapped("ab cd ef", 5, "  "), "ab cd\n  ef");
    EXPECT_EQ(wrapped("  ab cd", 5, "  "), "  ab\n  cd");
    EXPECT_EQ(wrapped("ab cd ef", 0, ""), "ab cd ef");
    EXPECT_EQ(wrapped("abcdefgh ij", 5, ""), "abcdefgh\nij") << "a word is never torn";
}

TEST(Format, KeysCanBePastedIntoAShell) {
    EXPECT_EQ(keysText({"-fLZ4", "-dCodeFile=a;b", "-dX=it's", "-f=a"}),
              "-fLZ4 '-dCodeFile=a;b' '-dX=it'\\''s' -f=a");
}

TEST(Format, TextsAreFittedByCharactersNotBytes) {
    const std::string umlauts = "\xc3\xa4\xc3\xb6\xc3\xbc"; // three characters
    EXPECT_EQ(columnsOf(umlauts), 3);
    EXPECT_EQ(padded(umlauts, 5), umlauts + "  ");
    EXPECT_EQ(padded("12", 4, true), "  12");
    EXPECT_EQ(shortened(umlauts + umlauts, 5), "\xc3\xa4...\xc3\xbc");
    EXPECT_EQ(shortened("CodeLength=16384", 16), "CodeLength=16384");
    EXPECT_EQ(shortened("CodeLength=16384", 10), "Cod...6384");
    EXPECT_EQ(shortened("CodeLength", 2), "..");
    EXPECT_EQ(cut(umlauts + umlauts, 5), "\xc3\xa4\xc3\xb6...");
    EXPECT_EQ(cut("CodeLength", 10), "CodeLength");
    EXPECT_EQ(cut("CodeLength", 2), "..");
    EXPECT_EQ(printable("a\x1b[2J\nb"), "a?[2J?b");
}

TEST(Progress, IsCutToTheTerminal) {
    EXPECT_EQ(progressText("ntksX A=1 B=2", 0.424, 200, 79),
              "ntksX   42%, 3 min 20 s left  A=1 B=2");
    EXPECT_EQ(progressText("", 1.5, -1, 79), "100%, 0 s left");
    EXPECT_EQ(progressText("", 0, infinite, 79), "  0%");
    EXPECT_EQ(progressText("ntksX A=12345678", 0, infinite, 18), "ntksX    0%  A=...");
    for (const int columns : {0, 1, 10, 25}) {
        EXPECT_LE(columnsOf(progressText("ntksEncodeLZ4_8u A=1", 0.5, 10, columns)), columns);
    }
}

} // namespace

} // namespace compare
