#include <gtest/gtest.h>

#include <algorithm>

#include "../../texts.h"
#include "handmade.h"
#include "markdown.h"

namespace report {

namespace {

struct Files : Handmade {
    Case& addCase(const std::string& file, double length, double clocks) {
        Case& one = add("ntksEncodeLZ4_8u",
                        {{"Length", static_cast<long long>(length)}, {"CodeFile", file}}, {clocks});
        one.length = length;
        return one;
    }
};

TEST(Markdown, AFunctionIsATableOfFilesAndLengths) {
    Files made;
    for (const char* file : {"a", "b|c", "d", "e", "f"}) {
        made.addCase(file, 16384, 4);
        made.addCase(file, 32768, 5);
    }
    made.addCase("a", 21504, 4.5);
    made.report.groups[0].cases[0].spread = 0.123;
    made.report.groups[0].cases[1].result = "FUNCFAIL";
    made.report.groups[0].cases[1].samples.clear();
    const std::string text = markdownText(made.report);
    EXPECT_TRUE(has(text, "| Function | Cases | Clocks per byte |"));
    EXPECT_TRUE(has(text, "\n| ntksEncodeLZ4\\_8u | 10 | 4.25 | 4.00 | 5.00 |  | 471 | 12.30% |\n"))
        << text;
    EXPECT_TRUE(has(text, "\n|  | 16K | 32K | other lengths |\n| --- | ---: | ---: | --- |\n"
                          "| a | 4.00 ±12.3% | **FUNCFAIL** | 4.50 at 21K |\n"
                          "| b\\|c | 4.00 | 5.00 |  |\n"))
        << text;
    EXPECT_TRUE(has(text, "**Failed:**\n\n- ntksEncodeLZ4\\_8u Length=32768 CodeFile=a: FUNCFAIL"));
}

TEST(Markdown, StaysBelowWhatAReviewTakes) {
    Handmade made;
    for (int function = 0; function < 200; ++function) {
        for (int file = 0; file < 40; ++file) {
            made.add("ntksFunction" + std::to_string(function) + "_8u",
                     {{"CodeFile", "a-file-with-a-name-of-some-length" + std::to_string(file)}},
                     {4})
                .length = 16384;
        }
        made.addFailed("ntksFailed" + std::to_string(function), {}, "FAIL", std::string(1000, 'x'));
    }
    const std::string text = markdownText(made.report);
    EXPECT_LT(text.size(), 60000u);
    EXPECT_TRUE(has(text, "... and 170 more")) << "failures";
    EXPECT_TRUE(has(text, " functions more: --html and --csv have all"));
    EXPECT_TRUE(has(text, "\n</details>\n"));

    Handmade one;
    for (int file = 0; file < 40; ++file) {
        one.add("ntksA_8u", {{"CodeFile", std::to_string(file)}}, {4}).length = 16384;
    }
    EXPECT_TRUE(has(markdownText(one.report), "... and 10 more (--html and --csv have all)"));
}

TEST(Markdown, NamesStayText) {
    Handmade made;
    made.group().label = "<b>|12*";
    made.add("<img src=x>", {{"CodeFile", "a|b\nc"}}, {4}).length = 1;
    made.report.remarks = {"<i>"};
    const std::string text = markdownText(made.report);
    for (const char* raw : {"<img", "<b>", "<i>", " a|b", "\nc"}) {
        EXPECT_FALSE(has(text, raw) && !has(text, std::string("\\") + raw)) << raw << text;
    }
    EXPECT_TRUE(has(text, "### \\<b>\\|12\\*"));
    EXPECT_TRUE(has(text, "**Notes:**\n\n- \\<i>"));
}

TEST(Markdown, OfAComparisonThereIsATableOfWhatChanged) {
    Report report;
    Comparison& comparison = report.comparisons.emplace_back();
    comparison.changed = "new";
    comparison.base = "old";
    ComparedCase one = comparedCase("ntksA_8u", "", "slower", 1.1, 0);
    one.isBeyondTolerance = true;
    comparison.cases = {one};
    EXPECT_TRUE(has(markdownText(report),
                    "| ntksA\\_8u |  | 4.000 | 4.400 | +10.00%  [+10.00%, +10.00%] | **slower** |  "
                    "|\n"))
        << markdownText(report);
    comparison.cases.assign(40, one);
    EXPECT_TRUE(has(markdownText(report), "\n... and 10 more\n"));
}

} // namespace

} // namespace report
