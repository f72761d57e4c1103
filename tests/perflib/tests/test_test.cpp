// The life of a test: order of its steps, results, messages, table lines.

#include <gtest/gtest.h>

#include <functional>

#include "captured.h"
#include "psalloc.h"
#include "pscputick_gcc.h"
#include "psinit.h"
#include "psistream.h"
#include "psobject.h"
#include "pstable.h"
#include "pstest.h"

namespace {
std::function<psResult()> g_measure;

psResult loop(int, long long* clocks) {
    *clocks = 1000;
    return g_measure ? g_measure() : PS_OK;
}

// Iterates over what it is given and writes down what happens to it.
class Probe : public psTest {
public:
    Probe() : psTest(loop, nullptr, "ntksProbe_8u", "some/where/probe.cpp", "Probe/x/PS_REG") {}
    bool canStart() override {
        if (starting) {
            starting();
        }
        for (psParameter* parm : toRegister) {
            regParm(*parm);
        }
        return start;
    }
    bool initData() override {
        steps += "i";
        return init ? init() : true;
    }
    void flushData() override {
        steps += "f";
        if (flush) {
            flush();
        }
    }
    void flushStart() override { steps += "F"; }
    void parmsToOstrm() override {
        if (print) {
            print();
        }
        psTest::parmsToOstrm();
    }
    double getDivisor() override { return 100; }
    psString getUnit() override { return "e"; }

    std::vector<psParameter*> toRegister;
    bool start = true;
    std::function<void()> starting;
    std::function<bool()> init;
    std::function<void()> flush;
    std::function<void()> print;
    std::string steps;
};

// Puts back what a test of the lifecycle changes for the whole process.
class LifeTest : public testing::Test {
protected:
    void SetUp() override {
        g_tool.setMethodLoop(1);
        g_measure = nullptr;
        psSetTableColumns();
    }
    void TearDown() override { g_tool.setMethodAuto(); }

    // Runs the test; the log without the title block and the closing text.
    std::string logOf(psTest& test, int outLevel = PS_OUT_PERF) {
        const Captured log(outLevel);
        result = test.run();
        return log.text();
    }
    Probe probe;
    psResult result = PS_UNDEFINED;
};

// An object with a block that names it.
struct Held : psObject {
    bool create() { return psMalloc(9, 0, 0, this) != nullptr; }
};

void segfault() {
    asm volatile("movl $0, 0" ::: "memory");
}
} // namespace

TEST_F(LifeTest, TheRegistrationTextIsCutAtSlashes) {
    const struct {
        const char *text, *name, *second, *macro;
    } cases[] = {{"TimdcX//KX_REG_I", "TimdcX", "", "KX_REG_I"},
                 {"whole", "whole", "", ""},
                 {"a/b", "a", "b", ""},
                 {"a/b/c/d", "a", "b", "c/d"}};
    for (const auto& c : cases) {
        const psTestInfo info(c.text);
        EXPECT_STREQ(info.name.c_str(), c.name);
        EXPECT_STREQ(info.second.c_str(), c.second);
        EXPECT_STREQ(info.macro.c_str(), c.macro);
    }
    EXPECT_STREQ(probe.sourceName().c_str(), "probe.cpp");
}

TEST_F(LifeTest, WithoutParametersOneCombinationIsMeasured) {
    const std::string log = logOf(probe);
    EXPECT_EQ(result, PS_OK);
    EXPECT_EQ(probe.steps, "ifF");
    EXPECT_TRUE(has(log, "ntksProbe_8u: \n-- performance:\n e        perf=      10 clocks\n"));
}

TEST_F(LifeTest, TheLastParameterVariesFastest) {
    psIterator<int> outer(1, "outer");
    psIterator<int> inner(1, "inner");
    outer.add(1);
    outer.add(2);
    inner.add(7);
    inner.add(8);
    inner.add(9);
    probe.toRegister = {&outer, &inner};
    psString seen;
    probe.init = [&] {
        seen += psText(outer.value()) + psText(inner.value()) + " ";
        return inner.value() != 8; // passed over, the others go on
    };
    logOf(probe);
    EXPECT_STREQ(seen.c_str(), "17 18 19 27 28 29 ");
    EXPECT_EQ(probe.steps, "ififififififF");
    EXPECT_EQ(result, PS_OK);
    logOf(probe); // a second run begins anew
    EXPECT_STREQ(seen.c_str(), "17 18 19 27 28 29 17 18 19 27 28 29 ");
}

TEST_F(LifeTest, FailuresAndTheirMessages) {
    psIterator<int> empty;
    const struct {
        const char* what;
        std::function<void()> prepare;
        psResult result;
        const char* message;
        const char* steps;
    } cases[] = {
        {"cannot start", [&] { probe.start = false; }, PS_DATA_FAIL, "-- Can't start timing\n",
         "F"},
        {"no value", [&] { probe.toRegister = {&empty}; }, PS_DATA_FAIL,
         "-- One of argument list for timing is empty\n", "F"},
        {"no data", [&] { probe.init = [] { return false; }; }, PS_DATA_FAIL,
         "-- Fail while initialization of function data\n", "ifF"},
        {"undefined", [&] { g_measure = [] { return PS_UNDEFINED; }; }, PS_FAIL,
         "-- Internal test problem: runTiming() function returns undefined result\n", "ifF"},
        {"exception", [&] { g_measure = []() -> psResult { throw psException(psString("x")); }; },
         PS_EXCEPTION, "--NTK. Exception: x in ntkFunctionCalls\n", "if"},
        {"something else thrown", [&] { g_measure = []() -> psResult { throw 1; }; }, PS_EXCEPTION,
         "--NTK. Exception: unknown in ntkFunctionCalls\n", "if"},
        {"fault beside an object of its frame",
         [&] { probe.init = [] { return Held().create() && (segfault(), true); }; }, PS_EXCEPTION,
         "--NTK. Signal: Illegal storage access. in initData\n", "if"},
        {"fault", [&] { g_measure = [] { return segfault(), PS_OK; }; }, PS_EXCEPTION,
         "--NTK. Signal: Illegal storage access. in ntkFunctionCalls\n", "if"},
        {"fault in flush", [&] { probe.flush = segfault; }, PS_EXCEPTION,
         "--NTK. Signal: Illegal storage access. in flushData\n", "iff"},
        {"exception in the middle of a message",
         [&] { probe.print = [] { throw psException("y"); }; }, PS_EXCEPTION,
         "--NTK. Signal: y in parmsToOstrm\n", "if"},
        {"library error", [&] { g_measure = [] { return PS_FUNC_FAIL; }; }, PS_FUNC_FAIL,
         "-- lib function fail on test parameters:\nntksProbe_8u: \n", "ifF"},
    };
    for (const auto& c : cases) {
        probe.toRegister = {};
        probe.start = true;
        probe.init = nullptr;
        probe.flush = nullptr;
        probe.print = nullptr;
        probe.steps = "";
        g_measure = nullptr;
        c.prepare();
        for (int run = 0; run < 2; run++) { // the object stays usable, also after a fault
            const std::string log = logOf(probe);
            EXPECT_EQ(result, c.result) << c.what;
            EXPECT_TRUE(has(log, c.message)) << c.what;
        }
        EXPECT_EQ(probe.steps, std::string(c.steps) + c.steps) << c.what;
        EXPECT_EQ(g_ostrm.levelDepth(), 0) << c.what;
    }
}

TEST_F(LifeTest, AFaultLeavesNoBlockBehind) {
    void* const before = psMalloc(64);
    probe.init = [] { return psMalloc(1000) != nullptr; };
    g_measure = [] { return segfault(), PS_OK; };
    logOf(probe);
    EXPECT_EQ(psSumOfBlocks(), 64);
    probe.starting = [] { psMalloc(1000), segfault(); };
    {
        const Captured log;
        probe.startAndStop();
        EXPECT_EQ(log.text(),
                  "--NTK. Signal: Illegal storage access. in startAndStop of Probe test\n");
    }
    EXPECT_EQ(psSumOfBlocks(), 64);
    psFree(before);
}

static psResult divideByZero() {
    volatile double zero = 0;
    volatile double infinite = 1 / zero;
    (void)infinite;
    return PS_OK;
}

// The flags of a division by zero in the SIMD unit, without its trap.
TEST_F(LifeTest, FloatingPointFlagsOfTheCallsAreAWarning) {
    g_measure = divideByZero;
    const std::string log = logOf(probe);
    EXPECT_EQ(result, PS_STATUS_WARN);
    EXPECT_TRUE(has(log, "-- Status    SSX: ?Zerodivide \n"));
    EXPECT_TRUE(has(log, "-- modified control status on test parameters:\n"));
}

// Also when the test ends in a fault.
TEST_F(LifeTest, ADefinitionOfItsOwnSectionHoldsForTheTestAlone) {
    const std::string file = writeFile(testPath("own.ini"), "[ntksProbe_8u]\nLen=7\n");
    psStepIterator<int> length;
    length.init(1, 3, 1, PS_STEP_ADD, "Len");
    probe.toRegister = {&length};
    std::string seen;
    probe.init = [&] {
        seen += length.valueString().c_str();
        return true;
    };
    probe.flush = [&] { seen += length.valueString().c_str(); };
    ASSERT_TRUE(g_istrm.setIniFile(file.c_str(), false));
    for (const bool faulty : {false, true}) {
        g_measure = [=] { return faulty ? (segfault(), PS_OK) : PS_OK; };
        logOf(probe);
        EXPECT_EQ(result, faulty ? PS_EXCEPTION : PS_OK);
        EXPECT_STREQ(length.defaultString().c_str(), "1; 3; +1");
    }
    g_istrm.closeIniFile();
    EXPECT_EQ(seen, "7777");
}

TEST_F(LifeTest, EqualParameterCellsAreToldOfTheFirstPair) {
    psIterator<int> hidden(1, "h");
    hidden.add(1);
    hidden.add(2);
    class Blind : public Probe {
        void parmsToCstrm() override {}
    } blind;
    blind.toRegister = {&hidden};
    const std::string path = testPath("same.csv");
    ASSERT_TRUE(g_cstrm.addStream(path.c_str(), false));
    const std::string log = logOf(blind);
    g_cstrm.close();
    EXPECT_TRUE(has(log, "-- Notice: duplicate lines in performance table (csv-file)\n"));
    EXPECT_EQ(result, PS_DATA_NOTE);
    EXPECT_EQ(readFile(path), "ntksProbe_8u,-,-,-,-,-,-,-,-,-,10.0,e,-,OK,nLps=1,-\n"
                              "ntksProbe_8u,-,-,-,-,-,-,-,-,-,10.0,e,-,OK,nLps=1,-\n");
}

TEST_F(LifeTest, FlagsAreAvoidedWhereEveryRunIsInitialised) {
    EXPECT_FALSE((logOf(probe), probe.tool().checkCtrlStatus));
    psTest test(loop, nullptr, "f", "s", "Probe//KX_REG_Ibs");
    EXPECT_TRUE((logOf(test), test.tool().checkCtrlStatus));
}

TEST_F(LifeTest, RegistrationInfoNamesTheMethodThatWillBeCalled) {
    EXPECT_STREQ(probe.regInfo().c_str(),
                 "   Test has been registered by PS_REG macro with loopMethod.\n"
                 "   loopMethod is called for measuring.");
    psTest nothing(psOldFunc{nullptr}, "f", "s", "n");
    EXPECT_STREQ(nothing.regInfo().c_str(),
                 "   Test has been registered without any function to call.\n"
                 " No standard timing method is available");
}

TEST_F(LifeTest, TraceLinesAreLinesOfTheirOwn) {
    const std::string log = logOf(probe, PS_OUT_TRACE);
    EXPECT_TRUE(has(log, " trace into   parmsToOstrm\nntksProbe_8u: \n**"));
}

// Blocks and vectors are what they were before every call of a set-and-use measurement.
TEST_F(LifeTest, SetAndUseRestoresTheDataBeforeEachCall) {
    static char* buffer;
    static std::string seen;
    seen = "";
    class SetAndUse : public psTest {
    public:
        SetAndUse()
            : psTest([] { return seen += *buffer, *buffer = 'z', 0; }, nullptr, nullptr, nullptr,
                     "f", "s", "n") {}
        bool initData() override {
            buffer = static_cast<char*>(allocate(100, 0));
            *buffer = 'a';
            return true;
        }
        void flushData() override { deallocate(buffer); }
    } test;
    g_tool.harnessCalls = true;
    logOf(test);
    g_tool.harnessCalls = false;
    EXPECT_EQ(result, PS_OK);
    EXPECT_EQ(seen, "aa"); // the warm-up and the one timed call
    EXPECT_EQ(psSumOfBlocks(), 0);
}
