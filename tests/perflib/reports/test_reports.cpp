#include "psreport.h"

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
    EXPECT_TRUE(has(table, "\nLibrary|lib, 1, Jan 1; other, 2, Jan 2\nStart|Thu Jan  1 "));
}

// The counts of the results are tested with the program.
TEST(Reports, SummaryEndsWithTimeAndMissedStart) {
    psTestList tests;
    tests.setStartTime(1000);
    tests.setEndTime(1000 + 3725);
    const std::string log = logText(psReportEnd(tests));
    const std::string end = " .Total time     : 01:02:05\n .-F not reached : NULL\n" + thick;
    EXPECT_TRUE(log.ends_with(end)) << log;
    psTestList::m_startFunc = "nowhere";
    EXPECT_STREQ(psReportEnd(tests).items().back().value.c_str(), "nowhere");
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

// In quadratic time this would take hours.
TEST(Reports, VeryManyTestsAreListed) {
    constexpr int many = 200000;
    psTestList tests;
    const Aside functions(g_pLibFunctions);
    for (int i = 0; i < many; ++i) {
        const psString name = "ntksFunction" + psText(i);
        tests.append(new PlainTest(name, "", "p_a.cpp"));
        psRegLibFunction(name);
    }
    EXPECT_EQ(psReportList(tests, {}, -1).lines().count(), many);
    const psReportList list(tests, {}, 1);
    EXPECT_EQ(list.rows().count(), 2 * (many + 1));
    EXPECT_STREQ(list.rows().back().back().c_str(), "+");
}

TEST(Reports, ServicesAreNoFunctionsToMeasure) {
    const psString functions = "xEncode xGet_8u xSet_8u xGetGet_8u xfree xget xSet_Get_8u";
    const psString services = " xInit xClose xAlloc xMalloc xFree xPutVal xRotateCenter xDrawText"
                              " xResizeShift xGetSize xSetDict_8u xGetSet_8u xGet_SetSize";
    psStringList names;
    (functions + services).parse(names, " ");
    EXPECT_STREQ(psJoined(createFuncList(names), " ").c_str(), functions.c_str());
}
