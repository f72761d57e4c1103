#include "pstestlist.h"

#include <string>

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"
#include "plain_test.h"
#include "psbase.h"
#include "pscond.h"

// A list of tests with these functions, separated by blanks; "0" stands for a null entry. The
// letter of a test tells where it stood.
class LetteredList {
public:
    explicit LetteredList(const char* functions) {
        psStringList words;
        psString(functions).parse(words, " ");
        for (const psString& word : words) {
            const psString letter(static_cast<char>('a' + list.count()));
            list.append(word == "0" ? nullptr : new PlainTest(word, letter));
        }
    }
    std::string order() const {
        std::string text;
        for (const psTest* test : list) {
            text += test ? test->info().name.c_str() : "-";
        }
        return text;
    }

    psTestList list;
};

TEST(TestList, OrderOfTests) {
    const struct {
        const char *functions, *sorted, *informationFirst;
    } cases[] = {
        {"", "", ""},
        {"z y x", "cba", "abc"},
        {"x y x z x", "acebd", "abcde"},   // equal names keep their order
        {"B a A", "cab", "abc"},           // by bytes
        {"y 0 x 0", "ca--", "a-c-"},       // null entries never come before another
        {"x _b y _a z", "dbace", "bdace"}, // "_" is before small letters
        {"_b X _a Y", "bdca", "acbd"},     // and behind capitals
        {"_b _a", "ba", "ab"},
        {"0 x _a", "cb-", "c-b"},
    };
    for (const auto& c : cases) {
        LetteredList sorted(c.functions);
        sorted.list.sortFunc();
        EXPECT_EQ(sorted.order(), c.sorted) << c.functions;
        LetteredList moved(c.functions);
        moved.list.startWithCpuTest();
        EXPECT_EQ(moved.order(), c.informationFirst) << c.functions;
    }
}

TEST(TestList, RunsTheSelectedTests) {
    const Captured console;
    LetteredList lettered("oneLZ4 0 otherCRC twoLZ4");
    psTestList& list = lettered.list;
    PlainTest* const c = static_cast<PlainTest*>(list.back());
    psConditions onlyLZ4;
    onlyLZ4.append(psMakeCondition("LZ4", PS_BY_FUNCTION));

    c->outcome = PS_FUNC_FAIL;
    EXPECT_TRUE(list.runTests(onlyLZ4));
    EXPECT_EQ(list.tests(), 2);
    EXPECT_EQ(list.fails(), 1);
    c->outcome = PS_FAIL; // counts as no failure
    EXPECT_FALSE(list.runTests(onlyLZ4));
    EXPECT_EQ(list.tests(), 2); // anew
    EXPECT_EQ(list.count(PS_FAIL), 1);
    EXPECT_EQ(psTestList::m_pCurrentTest, nullptr);
}

TEST(TestList, TheStartFunctionAndTheHotListChoose) {
    const Captured console;
    const Aside asideHotList(g_pHotList);
    const struct {
        const char* start;
        int hot;
        const char *ran, *left;
    } cases[] = {
        {"", 0, "abc", ""},      {"y", 0, "bc", ""}, {"second", 0, "bc", ""},
        {"none", 0, "", "none"}, {"", 1, "abc", ""}, // marks only
        {"", 2, "ac", ""},       {"y", 2, "", "y"},  // not hot, and so never reached
    };
    psRegHotFunction("x");
    psRegHotFunction("yse"); // a part of a name is no name
    for (const auto& c : cases) {
        LetteredList tests("x ysecond x");
        psTest::m_hot = c.hot;
        psTestList::m_startFunc = c.start;
        tests.list.runTests({});
        std::string ran;
        for (const psTest* test : tests.list) {
            ran += static_cast<const PlainTest*>(test)->runs ? test->info().name.c_str() : "";
        }
        EXPECT_EQ(ran, c.ran) << c.start << c.hot;
        EXPECT_STREQ(psTestList::m_startFunc.c_str(), c.left);
    }
    psTest::m_hot = 0;
    psTestList::m_startFunc = "";
}

namespace {
// Registers one parameter, for the cache iteration where it is wanted.
class ParmTest : public PlainTest {
public:
    ParmTest(const char* function, psIterator<int>& parm) : PlainTest(function), m_parm(parm) {}
    bool canStart() override {
        ++starts;
        regCacheParm(m_parm);
        return true;
    }
    int starts = 0;

private:
    psIterator<int>& m_parm;
};
} // namespace

TEST(TestList, CommonParametersAreNarrowed) {
    psIterator<int> length(1, "Len"), level(1, "Level");
    const struct {
        const char* pattern;
        bool cache;
        std::string kept;
        int starts[4]; // of the tests
    } cases[] = {
        {"none", false, "", {0, 0, 0, 0}},
        {"y", false, "Level ", {0, 1, 0, 0}},
        {"x", true, "Len ", {1, 0, 1, 1}},
        {"", true, "Len Level ", {1, 1, 1, 0}}, // the first one too many ends the search
    };
    for (const auto& c : cases) {
        psTest::m_cache = c.cache;
        psTestList list;
        ParmTest* const tests[] = {new ParmTest("x", length), new ParmTest("y", level),
                                   new ParmTest("x", length), new ParmTest("x", length)};
        for (psTest* test : tests) {
            list.append(test);
        }
        psConditions conditions;
        conditions.append(psMakeCondition(*c.pattern ? c.pattern : "-none", PS_BY_FUNCTION));
        psList<psParameter*> parms;
        parms.append(&length);
        parms.append(&level);
        list.selectCommonParms(conditions, parms);
        std::string kept;
        for (const psParameter* parm : parms) {
            kept += parm->name().c_str() + std::string(" ");
        }
        EXPECT_EQ(kept, c.kept) << c.pattern;
        EXPECT_EQ(length.isInUse(), c.kept.find("Len") != std::string::npos);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(tests[i]->starts, c.starts[i]) << c.pattern << i;
            EXPECT_TRUE(tests[i]->parms().empty());
        }
    }
    psTest::m_cache = false;
}

TEST(Registration, KeepsTheOrderOfTheCalls) {
    const Aside asideTests(pTestList);
    const Aside asideCmdLine(pCmdLine);
    const Aside asideInfo(g_pLibInfo);
    const Aside asideFunctions(g_pLibFunctions);
    const Aside asideColumns(g_pParmColumns);
    for (const char* text : {"b", "a", "b"}) {
        psRegTest(new PlainTest(text));
        psRegCmdLine(text);
        psRegLibInfo(text);
        psRegLibFunction(text);
        psRegParmColumn(text);
    }
    EXPECT_EQ(pTestList->count(), 3);
    EXPECT_STREQ(pTestList->front()->functionName().c_str(), "b");
    EXPECT_STREQ(pCmdLine->c_str(), " b a b");
    EXPECT_STREQ(psJoined(*g_pLibInfo, " ").c_str(), "b a"); // equal ones are kept once
    EXPECT_STREQ(psJoined(*g_pLibFunctions, " ").c_str(), "b a");
    EXPECT_STREQ(psJoined(*g_pParmColumns, " ").c_str(), "b a b");
}
