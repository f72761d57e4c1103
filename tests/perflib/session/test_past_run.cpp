// What a process gets to know of those before it in the same run.
#include <gtest/gtest.h>

#include "pspastrun.h"

namespace {

psString joined(const psStringList& texts) {
    psString text;
    for (const psString& piece : texts) {
        text += piece + "|";
    }
    return text;
}

TEST(PastRun, ResultsAndWhatTheyCounted) {
    psPastRun past;
    for (const char* const line :
         {"begun\t1700000000\t88000000000", "answer\tLength\t1;2", "answer\tSize\t",
          "asked\tone\tLength\tOwn", "remark\ta: \"b\" was not taken",
          "result\t1\t7\t3\t2\t1\t8000000000", "result\t-1\t7\t3\t2\t1\t9000000000",
          "word of another time\t1", "closed"}) {
        past.take(line);
    }
    EXPECT_EQ(past.begun, 1700000000);
    EXPECT_EQ(past.begunInstant, 88000000000);
    ASSERT_EQ(past.answers.count(), 2);
    EXPECT_TRUE(past.answers.front().name == "Length" && past.answers.front().text == "1;2");
    EXPECT_TRUE(past.answers.back().name == "Size" && past.answers.back().text.empty());
    ASSERT_EQ(past.asked.count(), 1);
    EXPECT_STREQ(joined(past.asked.front().names).c_str(), "Length|Own|");
    EXPECT_STREQ(joined(past.remarks).c_str(), "a: \"b\" was not taken|");
    ASSERT_EQ(past.results.count(), 2);
    EXPECT_EQ(past.results.front().code, 1);
    EXPECT_EQ(past.results.back().code, -1);
    EXPECT_EQ(past.results.front().tableLines, 7);
    EXPECT_EQ(past.figures.measured, 3);
    EXPECT_EQ(past.figures.spread, 2);
    EXPECT_EQ(past.figures.switchedOut, 1);
    EXPECT_EQ(past.figures.clocksInCalls, 9000000000);
    EXPECT_TRUE(past.isSummaryWritten);
    EXPECT_FALSE(past.lost);
}

TEST(PastRun, TheTestThatIsLost) {
    psPastRun past;
    for (const char* const line : {"result\t1\t7\t3\t2\t1\t800", "test\ttwo\t55",
                                   "at\tntkFunctionCalls\tN=1 F=a\t1\t5\t3\t2\t850\t9",
                                   "row\ttwo\t8u\t\t1", "lost\tSIGKILL\tkilled\tlast words"}) {
        past.take(line);
    }
    ASSERT_TRUE(past.lost);
    EXPECT_STREQ(past.lost->function.c_str(), "two");
    EXPECT_EQ(past.lost->startTime, 55);
    EXPECT_STREQ(past.lost->label.c_str(), "ntkFunctionCalls");
    EXPECT_STREQ(past.lost->combination.c_str(), "N=1 F=a");
    EXPECT_TRUE(past.lost->hasMeasured);
    EXPECT_STREQ(joined(past.lost->cells).c_str(), "two|8u||1|");
    EXPECT_STREQ(past.lost->word.c_str(), "SIGKILL");
    EXPECT_STREQ(past.lost->message.c_str(), "killed");
    EXPECT_STREQ(past.lost->lastError.c_str(), "last words");
    EXPECT_EQ(past.figures.measured, 5); // those of its combinations count
    EXPECT_EQ(past.figures.switchedOut, 2);
    EXPECT_EQ(past.lost->clocksInCalls, 50);
}

} // namespace
