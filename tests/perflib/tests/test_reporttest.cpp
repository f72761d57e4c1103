#include "psreporttest.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "plain_test.h"
#include "psreportformat.h"
#include "pssettings.h"
#include "report_text.h"

namespace outer::inner {
template <class T> struct NamedTest : PlainTest { using PlainTest::PlainTest; };
} // namespace outer::inner

TEST(TestReport, TestTitleIsShort) {
    const PlainTest test("ntksName", "Class/about it/MACRO", "dir/p_file.cpp");
    const std::string start = psReportFormat::getDateStr(test.startTime()).c_str();
    const psReportTestTitle title(test);
    EXPECT_EQ(logText(title), std::string(79, '-') + "\n" +
                                  " Function : ntksName\n"
                                  " Test     : Class\n"
                                  " Source   : p_file.cpp\n"
                                  " Description: about it\n"
                                  " Start    : " +
                                  start + "\n");
    EXPECT_EQ(tableText([&](psCStream& out) { out << title; }), "");
    EXPECT_EQ(psReportTestTitle(PlainTest("a", "b")).items().find("Description"), nullptr);
}

TEST(TestReport, ClassesHaveNoNamespaces) {
    const std::pair<const char*, const char*> cases[] = {
        {"TimdcLZ4", "TimdcLZ4"},
        {"a::b::TimdcLZ4", "TimdcLZ4"},
        {"(anonymous namespace)::Test", "Test"},
        {"a::Test<b::c, d<e::f> >", "Test<b::c, d<e::f> >"},
        {"a::Test<b::c>::Inner", "Inner"},
        {"f(a::b)::Local", "Local"},
    };
    for (const auto& [type, name] : cases) {
        EXPECT_STREQ(psWithoutNamespaces(type).c_str(), name);
    }
}

TEST(TestReport, TestResultIsOneRecord) {
    EXPECT_EQ(logText(psReportTestResult()), "");

    const std::string result = " Result   : ", none = "--No measurements have been done\n";
    const std::string words =
        "Near 53 Invalid Denormal Overflow Underflow Inexact,Ok,"
        "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero,Ok";
    const struct {
        psResult outcome;
        const char *words, *shortName;
        std::string text; // %s: the time
    } cases[] = {
        {PS_OK, words.c_str(), "OK", result + "successfully, %s\n"},
        {PS_FUNC_NOTE, words.c_str(), "FUNCWRN", result + "lib function note, %s\n"},
        {PS_EXCEPTION, "-,-,-,-", "EXCPTFAIL", result + "exception, %s\n" + none},
        {PS_UNDEFINED, "-,-,-,-", "FAIL", result + "fail, %s\n" + none},
    };
    const psString path = g_settings.programPath;
    g_settings.programPath = "bin/ntk,perf";
    for (const auto& c : cases) {
        outer::inner::NamedTest<int> test("ntksName", "Title", "dir/p_file.cpp");
        {
            const Captured output;
            test.giving(c.outcome)->run();
        }
        const psReportTestResult report(test);
        const std::string record = tableText([&](psCStream& out) { out << report; });
        const std::string front = std::string("ntksName,NamedTest<int>,") + c.words;
        EXPECT_EQ(record.substr(0, front.length()), front);
        const std::string back = ",Title," + std::to_string(test.endTime() - test.startTime()) +
                                 ",p_file.cpp," + c.shortName + ",bin/ntk perf\n";
        EXPECT_EQ(record.substr(record.length() - back.length()), back) << record;
        EXPECT_EQ(std::count(record.begin(), record.end(), ','), 10) << record;
        const double seconds = difftime(test.endTime(), test.startTime());
        const psString time = psReportFormat::getTimeStr(seconds);
        EXPECT_EQ(logText(report), psFormat(c.text.c_str(), time.c_str()).c_str());
        EXPECT_EQ(report.measuredNothing(), c.words == std::string("-,-,-,-"));
        for (const int level : {PS_OUT_ERR, PS_OUT_WARN}) {
            const Captured terse(level);
            g_ostrm << report;
            const bool told =
                report.measuredNothing() || (c.outcome == PS_FUNC_NOTE && level == PS_OUT_WARN);
            const std::string word = psResultWord(report.result());
            EXPECT_EQ(terse.text(), told ? "-- ntksName: " + word + "\n" : "");
        }
    }
    g_settings.programPath = path;
}
