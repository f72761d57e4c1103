#include "psprogress.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "aside.h"
#include "plain_test.h"
#include "psbase.h"

TEST(Progress, SecondsLeftAreThoseOfTheTestsDone) {
    const struct {
        int done, left;
        double ofDone, ofCurrent, seconds; // -1: not known
    } cases[] = {
        {0, 5, 0, 3, -1},  // nothing is known
        {1, 1, 10, 0, 10}, // the last one has begun
        {4, 10, 8, 0.5, 19.5},
        {4, 10, 8, 7, 18}, // it takes longer than the others: these are still left
        {2, 1, 10, 99, 0},
        {3, 7, 0, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psSecondsLeft(c.done, c.left, c.ofDone, c.ofCurrent).value_or(-1), c.seconds)
            << c.done << " " << c.left;
    }
}

TEST(Progress, TextsAreNoFinerThanTheyAreWorth) {
    const std::pair<double, const char*> cases[] = {
        {0, "1 s"},       {1.4, "1 s"},    {9.4, "9 s"},         {9.6, "10 s"},  {17.6, "20 s"},
        {57.4, "55 s"},   {57.6, "1 min"}, {89, "1 min"},        {91, "2 min"},  {3500, "58 min"},
        {3569, "59 min"}, {3571, "1 h"},   {4300, "1 h 10 min"}, {36000, "10 h"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_STREQ(psAboutText(seconds).c_str(), text) << seconds;
    }
    EXPECT_STREQ(psProgressText(12, 38, "ntksDeflateHuff_8u", 20).c_str(),
                 "12/38 ntksDeflateHuff_8u, about 20 s left");
    EXPECT_STREQ(psProgressText(1, 38, "__psHost", std::nullopt).c_str(), "1/38 __psHost");
}

TEST(Progress, IsRenewedWhenATestBeginsAndInALongOneOnceASecond) {
    const Aside<psTestList> list(pTestList); // the counts of a run
    psRegTest(new PlainTest("info"));
    double now = 100;
    std::vector<std::string> shown;
    psProgress progress([&] { return now; },
                        [&](const psString& text) { shown.emplace_back(text.c_str()); });
    const auto runTest = [&](PlainTest& test, psResult result,
                             const std::vector<double>& measured) {
        progress.testBegins(test);
        const double begin = now;
        for (const double seconds : measured) {
            now += seconds;
            progress.write({});
        }
        test.run();
        progress.testEnds(test, result, now - begin);
        pTestList->plus(result);
    };
    psRunPlan plan;
    plan.tests = 5;
    progress.begin(plan);
    PlainTest info("info"), one("one"), two("two"), faulty("faulty"), last("last");
    progress.testBegins(info); // measures nothing: tells nothing of the time
    progress.testEnds(info, PS_OK, 50);
    pTestList->plus(PS_OK);
    runTest(one, PS_OK, {0.5, 0.4, 2, 0.5, 0.6});
    runTest(two, PS_OK, {3, 3});
    runTest(faulty, PS_EXCEPTION, {300});
    runTest(last, PS_OK, {});
    progress.end(*pTestList);
    EXPECT_EQ(shown,
              (std::vector<std::string>{"1/5 info", "2/5 one", "2/5 one", "2/5 one",
                                        "3/5 two, about 10 s left", // 3 of 4 s each
                                        "3/5 two, about 9 s left", "3/5 two, about 8 s left",
                                        "4/5 faulty, about 10 s left", "4/5 faulty, about 5 s left",
                                        "5/5 last, about 5 s left", ""}));
}
