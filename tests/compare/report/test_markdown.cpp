#include <gtest/gtest.h>

#include <algorithm>

#include "handmade.h"

namespace compare {

namespace {

std::string textOf(const Handmade& handmade) {
    return markdownText(handmade.comparison, handmade.judgement);
}

TEST(Markdown, BeginsWithTheAnswer) {
    Handmade handmade;
    EXPECT_TRUE(textOf(handmade).starts_with("**Nothing could be measured.**\n"));
    handmade.addSame("f");
    EXPECT_TRUE(textOf(handmade).starts_with(
        "**The only decided case is not slower by more than 1%.** Cases: 1 same.\n"));
    handmade.comparison.isComplete = false;
    EXPECT_TRUE(has(textOf(handmade), "** INCOMPLETE: the budget was used up. Cases:"));
}

TEST(Markdown, ShowsWhatChangedBeforeTheFoldAndTheOpenBehindIt) {
    Handmade handmade;
    handmade.addSame("same");
    handmade.addOpen("open");
    handmade.addFaster("faster");
    handmade.addSame("other").outcome.changed.status = 1;
    handmade.addSlower("slower");
    handmade.addFailed("failed", Side::changed);
    const std::string text = textOf(handmade);
    const auto at = [&](const std::string& what) { return text.find("\n| " + what + " |"); };
    const std::size_t fold = text.find("\n<details>");
    ASSERT_NE(fold, std::string::npos);
    EXPECT_LT(at("failed"), at("slower"));
    EXPECT_LT(at("slower"), at("other"));
    EXPECT_LT(at("other"), at("faster"));
    EXPECT_LT(at("faster"), fold);
    EXPECT_GT(at("open | 1"), fold);
    EXPECT_NE(at("open | 1"), std::string::npos);
    EXPECT_EQ(at("same"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\n</details>\n"));
}

TEST(Markdown, FitsIntoAReviewWhateverItIsMadeOf) {
    Handmade handmade;
    const std::string name(40, 'f');
    for (int i = 0; i < 1000; ++i) {
        const std::string function = name + std::to_string(i % 150);
        handmade.addFailed(function, Side::changed).failures[0].detail =
            std::string(5000, 'x') + "\n" + std::string(5000, 'y') + "\nz\nz\nz";
        handmade.addSlower(function).outcome.changed.values = {{"Text", std::string(5000, 'x')}};
        handmade.addOpen(function);
        handmade.judgement.functions[function] = {2, {0.05, 0.04, 0.06}};
        handmade.comparison.unpaired.push_back({Side::base, function, {{"A", 1LL}}});
    }
    handmade.comparison.sides.base.keys.push_back(std::string(70000, 'k'));
    handmade.judgement.all = {2000, {0.05, 0.04, 0.06}};
    const std::string text = textOf(handmade);
    EXPECT_LT(text.size(), 60000u);
    EXPECT_TRUE(has(text, "\n\n... and 1970 more\n"));
    EXPECT_TRUE(has(text, "\n| Open in | Cases |\n|---|---:|\n| " + name + "0 | 7 |\n"));
}

TEST(Markdown, TheHeadNamesTheUnit) {
    Handmade handmade;
    handmade.addSlower("f");
    EXPECT_TRUE(has(textOf(handmade), "| Base, clocks per element | New, clocks per element |"));
    handmade.addSlower("g").outcome.base.unit = "value";
    EXPECT_TRUE(has(textOf(handmade), "| Base, clocks per unit |"));
}

// Else a row of the table would fall apart, or a name become markup.
TEST(Markdown, CellsAreEscapedAndRowsWhole) {
    Handmade handmade;
    Case& measured = handmade.addSlower("a_b|c");
    measured.parameters.base = {{"A", "<b>\n|"}};
    measured.parameters.changed = measured.parameters.base;
    handmade.judgement.functions["a_b|c"] = {2, {0.05, 0.04, 0.06}};
    handmade.judgement.all = {2, {0.05, 0.04, 0.06}};
    const std::string text = textOf(handmade);
    EXPECT_TRUE(has(text, "| a\\_b\\|c | A=\\<b>?\\| | 4.000 | 4.200 | +5.00%  [+4.00%, +6.00%] | "
                          "**slower** |"));
    EXPECT_TRUE(has(text, "| a\\_b\\|c | 2 | +5.13%"));
    for (const std::string& line : linesOf(text)) {
        if (line.starts_with("|")) {
            EXPECT_TRUE(line.ends_with("|")) << line;
        }
    }
}

} // namespace

} // namespace compare
