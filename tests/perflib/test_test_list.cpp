#include "pstestlist.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

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

TEST(TestList, CountsResults) {
    for (int result = 0; result <= psResultCount; ++result) {
        psTestList list;
        list.plus(static_cast<psResult>(result));
        EXPECT_EQ(list.tests(), 1);
        EXPECT_EQ(list.notes(), result >= 2 && result <= 5 ? 1 : 0) << result;
        EXPECT_EQ(list.fails(), result >= 7 && result <= 10 ? 1 : 0) << result;
        for (int other = 0; other < psResultCount; ++other) {
            EXPECT_EQ(list.count(static_cast<psResult>(other)), other == result) << result;
        }
    }
}

TEST(TestList, RunsTheSelectedTests) {
    const Captured console;
    psTestList list;
    PlainTest* const a = new PlainTest("oneLZ4");
    PlainTest* const b = new PlainTest("otherCRC");
    PlainTest* const c = new PlainTest("twoLZ4");
    for (psTest* test : {static_cast<psTest*>(a), static_cast<psTest*>(nullptr),
                         static_cast<psTest*>(b), static_cast<psTest*>(c)}) {
        list.append(test);
    }
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
    EXPECT_EQ(b->runs, 0);
    EXPECT_EQ(psTestList::m_pCurrentTest, nullptr);

    // Refused by the settings file: not even counted.
    psTest::m_pressing = true;
    EXPECT_FALSE(list.runTests(onlyLZ4));
    psTest::m_pressing = false;
    EXPECT_EQ(list.tests(), 0);
}

TEST(TestList, BeginsWithTheStartFunction) {
    const Captured console;
    const struct {
        const char *start, *ran, *left;
    } cases[] = {
        {"", "abc", ""},
        {"y", "bc", ""},
        {"second", "bc", ""},
        {"none", "", "none"},
    };
    for (const auto& c : cases) {
        LetteredList tests("x ysecond x");
        psTestList::m_startFunc = c.start;
        tests.list.runTests({});
        std::string ran;
        for (const psTest* test : tests.list) {
            ran += static_cast<const PlainTest*>(test)->runs ? test->info().name.c_str() : "";
        }
        EXPECT_EQ(ran, c.ran) << c.start;
        EXPECT_STREQ(psTestList::m_startFunc.c_str(), c.left);
    }
    psTestList::m_startFunc = "";
}

namespace {
// Registers up to two parameters, the first one for the cache iteration.
class ParmTest : public PlainTest {
public:
    ParmTest(const char* function, psIterator<int>* cached, psParameter* plain)
        : PlainTest(function), m_cached(cached), m_plain(plain) {}
    bool canStart() override {
        ++starts;
        if (m_cached) {
            regCacheParm(*m_cached);
        }
        if (m_plain) {
            regParm(*m_plain);
        }
        return true;
    }
    int starts = 0;

private:
    psIterator<int>* m_cached;
    psParameter* m_plain;
};
} // namespace

TEST(TestList, CommonParametersAreNarrowed) {
    psIterator<int> length(1, "Len");
    psDefault<int> level(1, "Level"), hint(1, "Hint");
    const struct {
        const char *pattern, *kept;
        int starts[3]; // of the tests
    } cases[] = {
        {"none", "", {0, 0, 0}},
        {"x", "Len ", {1, 0, 0}},
        {"y", "Level ", {0, 1, 0}},
        {"y,z", "Len Level ", {0, 1, 1}},
        {"", "Len Level Hint ", {1, 1, 1}}, // none is left to look for when it comes to the last
    };
    for (const bool cache : {false, true}) {
        psTest::m_cache = cache;
        for (const auto& c : cases) {
            psTestList list;
            ParmTest* const tests[] = {new ParmTest("x", &length, nullptr),
                                       new ParmTest("y", nullptr, &level),
                                       new ParmTest("z", &length, *c.pattern ? nullptr : &hint)};
            for (psTest* test : tests) {
                list.append(test);
            }
            list.append(new ParmTest("x z y", &length, nullptr));
            psConditions conditions;
            psStringList patterns;
            psString(c.pattern).parse(patterns, ",");
            for (const psString& pattern : patterns) {
                conditions.append(psMakeCondition("=" + pattern, PS_BY_FUNCTION));
            }
            psList<psParameter*> parms;
            parms.append(&length);
            parms.append(&level);
            parms.append(&hint);
            list.selectCommonParms(conditions, parms);
            std::string kept;
            for (const psParameter* parm : parms) {
                EXPECT_TRUE(parm->isInUse());
                kept += parm->name().c_str() + std::string(" ");
            }
            EXPECT_EQ(kept, c.kept) << c.pattern << cache;
            EXPECT_EQ(hint.isInUse(), kept.find("Hint") != std::string::npos);
            for (int i = 0; i < 3; ++i) {
                EXPECT_EQ(tests[i]->starts, c.starts[i]) << c.pattern << i;
                EXPECT_TRUE(tests[i]->parms().empty());
            }
            EXPECT_EQ(static_cast<ParmTest*>(list.back())->starts, 0);
        }
    }
    psTest::m_cache = false;
}

namespace {
// Takes a process-wide list or entry point aside while it lives.
template <class T> class Aside {
public:
    explicit Aside(T& object) : m_object(object), m_saved(object) { object = T{}; }
    ~Aside() { m_object = m_saved; }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

private:
    T& m_object;
    const T m_saved;
};

// What a file registers before main; the lists of the other files stay as they are.
struct EarlyLists {
    EarlyLists() {
        const Aside asideTests(pTestList);
        const Aside asideCmdLine(pCmdLine);
        const Aside asideParms(g_pParmList);
        const Aside asideInfo(g_pLibInfo);
        const Aside asideFunctions(g_pLibFunctions);
        const Aside asideColumns(g_pParmColumns);
        static psDefault<int> first(1, "first"), second(2, "second");
        psRegTest(new PlainTest("z"));
        psRegTest(new PlainTest("a"));
        psRegCmdLine("-B");
        psRegCmdLine("-fx");
        psRegParm(second);
        psRegParm(first);
        for (const char* text : {"b", "a", "b"}) {
            psRegLibInfo(text);
            psRegLibFunction(text);
            psRegParmColumn(text);
        }
        tests.reset(pTestList);
        cmdLine.reset(pCmdLine);
        parms.reset(g_pParmList);
        info.reset(g_pLibInfo);
        functions.reset(g_pLibFunctions);
        columns.reset(g_pParmColumns);
    }

    std::unique_ptr<psTestList> tests;
    std::unique_ptr<psString> cmdLine;
    std::unique_ptr<psList<psParameter*>> parms;
    std::unique_ptr<psStringList> info, functions, columns;
};
EarlyLists g_early;
} // namespace

TEST(Registration, KeepsTheOrderOfTheCalls) {
    EXPECT_STREQ(g_early.tests->front()->functionName().c_str(), "z");
    EXPECT_EQ(g_early.tests->count(), 2);
    EXPECT_STREQ(g_early.cmdLine->c_str(), " -B -fx");
    EXPECT_STREQ(g_early.parms->front()->name().c_str(), "second");
    EXPECT_STREQ(psJoined(*g_early.info, "; ").c_str(), "b; a");
    EXPECT_STREQ(psJoined(*g_early.functions, "; ").c_str(), "b; a");
    EXPECT_STREQ(psJoined(*g_early.columns, "; ").c_str(), "b; a; b");
}

TEST(Registration, EntryPointsGetStandBys) {
    const Aside hook(ntkEnvironment);
    const Aside a(ntk_GetCpuFeatures);
    const Aside b(ntk_GetEnabledCpuFeatures);
    const Aside c(ntk_GetMaxCacheSizeB);
    const Aside d(ntk_GetStatusString);
    const Aside e(ntk_Init);
    const Aside f(ntk_SetCpuFeatures);
    const Aside g(ntk_SetNumThreads);
    const Aside h(ntk_GetNumThreads);
    EXPECT_TRUE(psRegNtkEnvironment([] { ntk_SetNumThreads = [](int n) { return 100 + n; }; }));
    const Captured console;
    setNtkEnvironment();
    const std::string printed = console.text();
    EXPECT_EQ(printed, "\nBrask NTK Core library functions have been integrated into PS\n");
    EXPECT_EQ(ntk_SetNumThreads(1), 101); // the hook's stays
    int number = 0;
    Ntk64u features = 0;
    EXPECT_EQ(ntk_GetNumThreads(&number), -2);
    EXPECT_EQ(ntk_GetCpuFeatures(&features, nullptr), -2);
    EXPECT_EQ(ntk_GetEnabledCpuFeatures(), 0u);
    EXPECT_EQ(ntk_Init(), -2);
    EXPECT_EQ(ntk_SetCpuFeatures(1), -2);
    EXPECT_EQ(ntk_GetMaxCacheSizeB, ntkGetMaxCacheSizeB);
    EXPECT_STREQ(ntk_GetStatusString(0), "OK");
    EXPECT_STREQ(ntk_GetStatusString(1), "Note");
    EXPECT_STREQ(ntk_GetStatusString(-1), "Fail");
    ntk_SetNumThreads = nullptr;
    ntkEnvironment = nullptr;
    setNtkEnvironment();
    EXPECT_EQ(ntk_SetNumThreads(1), -2);
    EXPECT_EQ(console.text().length(), printed.length()); // nothing more to tell
}
