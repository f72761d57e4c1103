#include <gtest/gtest.h>

#include <limits>

#include "format.h"
#include "progresstext.h"

namespace compare {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

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
