#include "psreport.h"

#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"
#include "plain_test.h"
#include "ps.h"
#include "pscputick_gcc.h"

namespace {

const std::string thick = std::string(79, '=') + "\n";
const std::string thin = std::string(79, '-') + "\n";

// What a table receives from the reports.
template <class Put> std::string tableText(Put put) {
    const std::string path = testPath("report.csv");
    psCStream table;
    table.addStream(path.c_str(), false);
    put(table);
    table.close();
    return readFile(path);
}

template <class Report> std::string logText(const Report& report) {
    const Captured output;
    g_ostrm << report;
    return output.text();
}

} // namespace

namespace outer::inner {
template <class T> struct NamedTest : PlainTest { using PlainTest::PlainTest; };
} // namespace outer::inner

TEST(Reports, TimesAreTexts) {
    const struct {
        double seconds;
        const char* text;
    } cases[] = {
        {0, "00:00:00"},
        {59.9, "00:00:59"},
        {3725, "01:02:05"},
        {359999, "99:59:59"},
        {-5, "00:00:00"},
        {360000, "UNKNOWN (Very large value)"},
        {1e18, "UNKNOWN (Very large value)"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(psReportFormat::getTimeStr(c.seconds).c_str(), c.text) << c.seconds;
    }
    const time_t now = time(nullptr);
    EXPECT_EQ(psReportFormat::getDateStr(now).c_str() + std::string("\n"), ctime(&now));
}

TEST(Reports, ProcessorIsDescribedByWhatIsKnown) {
    const struct {
        const char* brand;
        int processors, freqMHz, cacheBytes;
        const char* text;
    } cases[] = {
        {"NAME", 2, 2400, 272629760, "NAME, x2, 2.40 GHz, Max cache size 266240 K"},
        {"NAME", 1, 999, 2048, "NAME, x1, 999 MHz, Max cache size 2 K"},
        {"NAME", 0, 1000, 0, "NAME, 1.00 GHz"},
        {"NAME", 2, 0, 1023, "NAME, x2"},
        {"", 0, 0, 0, "Unknown CPU"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(psProcessorText(c.brand, c.processors, c.freqMHz, c.cacheBytes).c_str(),
                     c.text);
    }
}

TEST(Reports, TitleHasFiveItems) {
    const int frequencyBefore = psCpuTicker::knownFreq();
    psTestList tests;
    tests.setStartTime(0);
    const Aside info(g_pLibInfo);
    const psReportTitle without(tests);
    psRegLibInfo("lib, 1, Jan 1");
    psRegLibInfo("other, 2, Jan 2");
    const psReportTitle title(tests);
    EXPECT_EQ(psCpuTicker::knownFreq(), frequencyBefore);
    EXPECT_STREQ(without.items().find("Library")->c_str(), "none");

    std::string log = thick, table, summary;
    for (const psDataItem& item : title.items()) {
        const std::string name = item.name.c_str(), value = item.value.c_str();
        const std::string piece = " " + name + std::string(9 - name.length(), ' ') + ": " + value;
        log += piece + "\n";
        table += name + "|" + value + "\n";
        summary += (summary.empty() ? "" : "|") + piece;
    }
    EXPECT_EQ(logText(title), log + thick);
    // Commas of the values become blanks, those between the cells stay.
    const auto asCells = [](std::string text) {
        for (char& c : text) {
            c = c == ',' ? ' ' : c == '|' ? ',' : c;
        }
        return text;
    };
    EXPECT_EQ(tableText([&](psCStream& out) { out << title; }), asCells(table));
    EXPECT_EQ(tableText([&](psCStream& out) { psTitleToSummary(out, title); }),
              asCells(summary) + "\n");
    EXPECT_EQ(table.substr(0, 10), "Processor|");
    EXPECT_NE(table.find("\nOS|"), std::string::npos);
    EXPECT_NE(table.find("\nComputer|"), std::string::npos);
    EXPECT_NE(table.find("\nLibrary|lib, 1, Jan 1; other, 2, Jan 2\nStart|Thu Jan  1 "),
              std::string::npos);
}

TEST(Reports, TestTitleIsShort) {
    const PlainTest test("ntksName", "Class/about it/MACRO", "dir/p_file.cpp");
    const std::string start = psReportFormat::getDateStr(test.startTime()).c_str();
    const psReportTestTitle title(test);
    EXPECT_EQ(logText(title), thin +
                                  " Function : ntksName\n"
                                  " Test     : Class\n"
                                  " Source   : p_file.cpp\n"
                                  " Description: about it\n"
                                  " Start    : " +
                                  start + "\n");
    EXPECT_EQ(tableText([&](psCStream& out) { out << title; }), "");
    EXPECT_EQ(psReportTestTitle(PlainTest("a", "b")).items().find("Description"), nullptr);
}

TEST(Reports, ClassesHaveNoNamespaces) {
    const struct {
        const char *type, *name;
    } cases[] = {
        {"TimdcLZ4", "TimdcLZ4"},
        {"a::b::TimdcLZ4", "TimdcLZ4"},
        {"(anonymous namespace)::Test", "Test"},
        {"a::Test<b::c, d<e::f> >", "Test<b::c, d<e::f> >"},
        {"a::Test<b::c>::Inner", "Inner"},
        {"f(a::b)::Local", "Local"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(psWithoutNamespaces(c.type).c_str(), c.name);
    }
}

TEST(Reports, TestResultIsOneRecord) {
    EXPECT_EQ(tableText([](psCStream& out) { out << psReportTestResult(); }),
              "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),SrcName,"
              "Result,ExeName\n");
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
    const psString path = psSession::m_exePath;
    psSession::m_exePath = "bin/ntk,perf";
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
    psSession::m_exePath = path;
}

TEST(Reports, SummaryCounts) {
    const struct {
        const char* results; // of the tests of a run, a hexadecimal digit each
        const char* counts;  // in the order of labels
    } cases[] = {
        {"", "0 0 0 0 0 0 0 0 0 0"},
        {"111", "3 3 0 0 0 0 0 0 0 0"},
        {"3", "1 0 1 0 0 0 1 0 1 0"},
        {"6", "1 0 0 0 0 0 0 0 0 1"},
        {"b", "1 0 0 0 0 0 0 0 0 1"},
        {"123456789ab", "11 1 8 4 3 1 4 3 1 2"},
        {"1123389aaa", "10 2 8 5 2 3 3 1 2 0"},
    };
    const char* const labels[] = {".Number of tests", ".Successes      ", ".Failures       ",
                                  "...Fails        ", ".....-FAIL      ", ".....-EXCPTFAIL ",
                                  "...Notes        ", ".....-NOTE      ", ".....-BADSTSWRN ",
                                  "...Undefined    "};
    for (const auto& c : cases) {
        psTestList tests;
        for (const char* digit = c.results; *digit; ++digit) {
            const int result =
                static_cast<int>(strtol(std::string(1, *digit).c_str(), nullptr, 16));
            tests.append((new PlainTest("f"))->giving(static_cast<psResult>(result)));
        }
        {
            const Captured output;
            tests.runTests({});
        }
        tests.setStartTime(1000);
        tests.setEndTime(1000 + 3725);
        std::string log = thick + " PS Summary\n" + thin, table = "PS Summary\n";
        psStringList counts;
        psString(c.counts).parse(counts, " ");
        const char* const* label = labels;
        for (const psString& count : counts) {
            log += std::string(" ") + *label + ": " + count.c_str() + "\n";
            table += std::string(*label) + "," + count.c_str() + "\n";
            ++label;
        }
        const psReportEnd end(tests);
        EXPECT_EQ(logText(end),
                  log + " .Total time     : 01:02:05\n .-F not reached : NULL\n" + thick);
        EXPECT_EQ(tableText([&](psCStream& out) { out << end; }),
                  table + ".Total time     ,01:02:05\n.-F not reached ,NULL\nEND_DATA\n");
    }
    psTestList::m_startFunc = "nowhere";
    EXPECT_STREQ(psReportEnd(psTestList()).items().back().value.c_str(), "nowhere");
    psTestList::m_startFunc = "";
}

TEST(Reports, ListOfTestsAndFunctions) {
    psTestList tests;
    tests.append(new PlainTest("ntksEncode_8u", "Encode", "p_a.cpp"));
    tests.append(nullptr);
    tests.append(new PlainTest("ntksEncode_8u", "Other", "p_b.cpp"));
    tests.append(new PlainTest("ntksCRC", "", "p_b.cpp"));
    psConditions encode, none;
    encode.append(psMakeCondition("Encode", PS_BY_FUNCTION));
    none.append(psMakeCondition("none", PS_BY_FUNCTION));
    const Aside functions(g_pLibFunctions);
    EXPECT_STREQ(psReportList(tests, none, 1).lines().back().c_str(),
                 "-- No library functions have been registered");
    for (const char* name : {"ntksCRC", "ntksEncode_8u", "ntksEncodeInit_8u", "ntksMTF"}) {
        psRegLibFunction(name);
    }
    const char* const header = "   #  Function       Test    Source\n";
    const struct {
        const psConditions& conditions;
        int mode;
        std::string log, table;
    } cases[] = {
        {encode, 0,
         header + std::string("   1  ntksEncode_8u  Encode  p_a.cpp\n"
                              "   2  ntksEncode_8u  Other   p_b.cpp\n"),
         "   #,Function,Test,Source\n1,ntksEncode_8u,Encode,p_a.cpp\n"
         "2,ntksEncode_8u,Other,p_b.cpp\n"},
        {none, 0, "   #  Function  Test  Source\n-- No test meets the conditions\n",
         "   #,Function,Test,Source\n"},
        {none, -1, "-- No test meets the conditions\n", ""},
        {{}, -1, "ntksEncode_8u\nntksCRC\n", "ntksEncode_8u\nntksCRC\n"},
        {encode, 1, // what covers a function need not be selected
         header + std::string("   1  ntksEncode_8u  Encode  p_a.cpp\n"
                              "   2  ntksEncode_8u  Other   p_b.cpp\n"
                              "\n"
                              "   #  Function       Exist\n"
                              "   1  ntksCRC        +\n"
                              "   2  ntksEncode_8u  +\n"
                              "   3  ntksMTF\n"),
         "   #,Function,Test,Source\n1,ntksEncode_8u,Encode,p_a.cpp\n"
         "2,ntksEncode_8u,Other,p_b.cpp\n"
         "   #,Function,Exist\n1,ntksCRC,+\n2,ntksEncode_8u,+\n3,ntksMTF,-\n"},
    };
    for (const auto& c : cases) {
        const psReportList list(tests, c.conditions, c.mode);
        EXPECT_EQ(logText(list), c.log);
        EXPECT_EQ(tableText([&](psCStream& out) { out << list; }), c.table);
    }
}

TEST(Reports, ServicesAreNoFunctionsToMeasure) {
    const psString functions = "xEncode xGet_8u xSet_8u xGetGet_8u xfree xget xSet_Get_8u";
    const psString services = " xInit xClose xAlloc xMalloc xFree xPutVal xRotateCenter xDrawText"
                              " xResizeShift xGetSize xSetDict_8u xGetSet_8u xGet_SetSize";
    psStringList names;
    (functions + services).parse(names, " ");
    EXPECT_STREQ(psJoined(createFuncList(names), " ").c_str(), functions.c_str());
}
