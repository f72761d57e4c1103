#include "psreport.h"

#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"
#include "plain_test.h"
#include "psbase.h"
#include "pscond.h"
#include "pscputick_gcc.h"
#include "psreportformat.h"
#include "report_text.h"

namespace {

const std::string thick = std::string(79, '=') + "\n";
const std::string thin = std::string(79, '-') + "\n";
} // namespace

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
