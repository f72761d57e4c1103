#include <gtest/gtest.h>

#include <cmath>

#include "grid.h"

namespace report {

namespace {

const std::vector<GridColumn> columns = {
    {"Name", false, 0}, {"First", true, 2}, {"Second", true, 1}, {"Last", false, 0}};
const std::vector<GridRow> rows = {{{"a"}, {"1"}, {"22"}, {"x"}},
                                   {{"a long name of it"}, {"333"}, {"4"}, {""}}};

TEST(Grid, ColumnsAreAsWideAsTheirCells) {
    EXPECT_EQ(gridText(columns, rows, {}), "Name               First  Second  Last\n"
                                           "a                      1      22  x\n"
                                           "a long name of it    333       4\n");
}

TEST(Grid, OnANarrowTerminalColumnsGoThenTheFirstIsShortened) {
    const std::string whole = gridText(columns, rows, {});
    EXPECT_EQ(gridText(columns, rows, {.columns = 38}), whole);
    EXPECT_EQ(gridText(columns, rows, {.columns = 37}), "Name               Second  Last\n"
                                                        "a                      22  x\n"
                                                        "a long name of it       4\n");
    EXPECT_EQ(gridText(columns, rows, {.columns = 30}), "Name               Last\n"
                                                        "a                  x\n"
                                                        "a long name of it\n");
    EXPECT_EQ(gridText(columns, rows, {.columns = 18}), "Name          Last\n"
                                                        "a             x\n"
                                                        "a lo...of it\n");
    EXPECT_EQ(gridText(columns, rows, {.columns = 3}), gridText(columns, rows, {.columns = 18}))
        << "below that nothing can be read";
}

TEST(Grid, ColoursAreAroundTheTextAlone) {
    const std::vector<GridRow> red = {{{"a"}, {"1", Colour::red}, {"2"}, {"x", Colour::none}}};
    const TerminalStyle style = {.hasColours = true};
    EXPECT_EQ(gridText(columns, red, style),
              "\x1b[1mName\x1b[0m  \x1b[1mFirst\x1b[0m  \x1b[1mSecond\x1b[0m  \x1b[1mLast\x1b[0m\n"
              "a         \x1b[31m1\x1b[0m       2  x\n");
    EXPECT_EQ(gridText(columns, red, {}).find('\x1b'), std::string::npos);
    EXPECT_EQ(coloured("", Colour::red, style), "");
    EXPECT_EQ(coloured("x", Colour::none, style), "x");
}

TEST(Bars, AreAsHighAsTheirPartOfTheLargest) {
    const TerminalStyle blocks = {.hasBlocks = true};
    EXPECT_EQ(bars({8, 4, 1, 0}, blocks), "\u2588\u2584\u2581\u2581");
    EXPECT_EQ(bars({8, 4, 1, 0}, {}), "#-__");
    EXPECT_EQ(bars({0.5}, blocks), "\u2588");
    EXPECT_EQ(bars({0, 0}, {}), "__");
    EXPECT_EQ(bars({}, blocks), "");
    EXPECT_EQ(bars({1, std::nan(""), -1, INFINITY}, {}), "#???");
}

} // namespace

} // namespace report
