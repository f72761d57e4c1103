// The timing engine against functions that report scripted clocks instead of taking time.

#include <gtest/gtest.h>

#include <vector>

#include "captured.h"
#include "psbatches.h"
#include "psctrl87.h"
#include "pstool.h"

namespace {
struct Script {
    std::vector<long long> clocks; // of the runs to come; the last one repeats
    psResult result = PS_OK;
    int status = 0;
    std::vector<int> loops; // asked for, run by run
    std::vector<long long> budgets;
    int inits = 0;
    int calls = 0;
    size_t runs = 0;
    size_t failingRun = 0;  // counted from 1: the library fails in this and all later runs
    size_t raisingRuns = 0; // the runs from the second to this one divide by zero
} g_script;

long long nextClocks() {
    const size_t last = g_script.clocks.size() - 1;
    return g_script.clocks[std::min(g_script.runs++, last)];
}

psResult loopFunc(int numLoops, long long* clocks) {
    g_script.loops.push_back(numLoops);
    *clocks = nextClocks();
    if (g_script.runs >= 2 && g_script.runs <= g_script.raisingRuns) {
        volatile double zero = 0;
        volatile double infinite = 1 / zero;
        (void)infinite;
    }
    const bool fails = g_script.failingRun && g_script.runs >= g_script.failingRun;
    return fails ? PS_FUNC_FAIL : g_script.result;
}

psResult statFunc(int* nCalls, long long* clocks, int numIntLoops) {
    g_script.loops.push_back(*nCalls);
    g_script.budgets.push_back(*clocks);
    g_script.inits = numIntLoops;
    *nCalls = 20;
    *clocks = nextClocks();
    return g_script.result;
}

int callFunc() {
    return ++g_script.calls == 3 ? g_script.status : 0;
}

int initFunc() {
    return ++g_script.inits, 0;
}

class ToolTest : public testing::Test {
protected:
    void SetUp() override { g_script = {}; }
    psTool tool;
};
} // namespace

TEST_F(ToolTest, WorseResultsReplaceBetterOnes) {
    tool.updateResult(PS_FUNC_NOTE);
    tool.updateResult(PS_ACCUR_WARN);
    EXPECT_EQ(tool.result, PS_FUNC_NOTE);
    EXPECT_STREQ(tool.note.c_str(), "lib function note");
}

TEST_F(ToolTest, NothingToCallIsAnInternalProblem) {
    const Captured log;
    EXPECT_EQ(tool.timing(nullptr, nullptr, nullptr, nullptr), PS_FAIL);
    EXPECT_EQ(log.text(), " Internal test problem: The test cannot execute standard timing.\n"
                          " No one of funcLoop, funcStat or funcCall is registered in the test.\n");
}

TEST_F(ToolTest, UnknownMethodIsAnInternalFail) {
    const Captured log;
    tool.method = 4;
    EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_FAIL);
    EXPECT_EQ(log.text(), "PS internal fail: file perflib/src/pstool, line 864\n");
}

TEST_F(ToolTest, LoopMethodReportsTheClocksOfTheTestUndivided) {
    g_script.clocks = {5000};
    tool.setMethodLoop(25);
    EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_OK);
    EXPECT_EQ(g_script.loops, std::vector<int>{25});
    EXPECT_DOUBLE_EQ(tool.funcClocks, 5000);
    EXPECT_DOUBLE_EQ(tool.accuracy, 0);
    EXPECT_STREQ(tool.methodInfo.c_str(), "nLps=25");
}

TEST_F(ToolTest, ARunWithoutClocksIsRepeatedOnce) {
    g_script.clocks = {0, 700};
    tool.setMethodLoop(2);
    tool.timing(loopFunc, nullptr, nullptr, nullptr);
    EXPECT_EQ(g_script.loops.size(), 2u);
    EXPECT_DOUBLE_EQ(tool.funcClocks, 700);
}

TEST_F(ToolTest, StatisticFunctionsGiveTheClocksOfOneCall) {
    g_script.clocks = {3000};
    tool.setMethodStat(12, 10000);
    EXPECT_EQ(tool.timing(nullptr, statFunc, nullptr, nullptr), PS_OK);
    EXPECT_EQ(g_script.loops, std::vector<int>{12});
    EXPECT_EQ(g_script.budgets, std::vector<long long>{10000});
    EXPECT_DOUBLE_EQ(tool.funcClocks, 3000);
    EXPECT_STREQ(tool.methodInfo.c_str(), "nCalls=20");
}

// The tool's own loops sum their calls up: here each takes 50 clocks, with the tests' functions
// passed over or without them.
TEST_F(ToolTest, OwnLoopsAreDividedByTheirCalls) {
    static unsigned long long now;
    const psClockReader start = ntk_StartCpuClocks;
    const psClockReader stop = ntk_StopCpuClocks;
    ntk_StartCpuClocks = ntk_StopCpuClocks = [] { return now; };
    const psCallFunc call = [] { return now += 50, 0; };
    for (const bool harnessCalls : {false, true}) {
        tool.harnessCalls = harnessCalls;
        for (const bool statistic : {false, true}) {
            tool.setMethodLoop(12);
            if (statistic) {
                tool.setMethodStat(12, 0);
            }
            EXPECT_EQ(tool.timing(harnessCalls ? loopFunc : nullptr,
                                  harnessCalls ? statFunc : nullptr, call, nullptr),
                      PS_OK);
            EXPECT_DOUBLE_EQ(tool.funcClocks, 50) << harnessCalls << statistic;
        }
    }
    ntk_StartCpuClocks = start;
    ntk_StopCpuClocks = stop;
}

TEST_F(ToolTest, AMethodThatTheTestCannotServeIsReplacedForGood) {
    const Captured log;
    g_script.clocks = {3000};
    tool.setMethodLoop(17);
    tool.timing(nullptr, statFunc, nullptr, nullptr);
    EXPECT_EQ(log.text(), " ATTENTION! The test cannot execute Manual loop timing.\n"
                          " Statistic timing will be run instead.\n");
    EXPECT_EQ(tool.method, PS_STATISTIC);
    EXPECT_EQ(g_script.loops, std::vector<int>{17});
    EXPECT_EQ(g_script.budgets, std::vector<long long>{0});

    g_script.loops.clear();
    tool.setMethodStat(0, 5);
    tool.timing(loopFunc, nullptr, nullptr, nullptr);
    EXPECT_EQ(tool.method, PS_MANUAL);
    EXPECT_EQ(g_script.loops, std::vector<int>{1});
}

// 300 clocks are too few: 128 loops; those give 12800 of 10000; then 512 and 1024 loops agree
// within 1%, which needs no confirming runs.
TEST_F(ToolTest, AutoMethodGrowsUntilTwoRunsAgree) {
    g_script.clocks = {300, 12800, 61440, 102400, 205000};
    EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_OK);
    EXPECT_EQ(g_script.loops, (std::vector<int>{1, 128, 512, 1024, 2048}));
    EXPECT_DOUBLE_EQ(tool.funcClocks, 205000.0 / 2048);
    EXPECT_LT(tool.accuracy, 0.01);
    EXPECT_STREQ(tool.methodInfo.c_str(), "nLps=2048");
}

// The confirming runs mix the known clocks per call with totals, so their spread is large and
// more loops follow until the ceiling; the smallest element, the known one, is the answer.
TEST_F(ToolTest, ConfirmingRunsMixPerCallClocksWithTotals) {
    g_script.clocks = {20000, 4 * 10300};
    tool.setMethodBest(1, 8, 100);
    EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_ACCUR_WARN);
    EXPECT_EQ(g_script.loops, (std::vector<int>{1, 4, 8, 8, 8}));
    EXPECT_DOUBLE_EQ(tool.funcClocks, 41200.0 / 8);
    EXPECT_STREQ(tool.note.c_str(), "actual accuracy = 82.4%");
    EXPECT_STREQ(tool.methodInfo.c_str(), "nLps=8 acc=82.4%");
}

// 8 loops agree with 4 within 3%, which confirming runs judge: agreeing ones end the method, others
// are followed by four times the loops, as long as these are below the ceiling of 64.
TEST_F(ToolTest, ConfirmingRunsThatAgreeEndTheIterativeMethod) {
    const struct {
        std::vector<long long> clocks; // of 1, 4 and 8 loops, of the confirming runs, of the rest
        std::vector<int> loops;
        double funcClocks;
    } cases[] = {
        {{20000, 41200, 84800, 10600, 10600, 1}, {1, 4, 8, 8, 8}, 10600},
        {{20000, 41200, 84800, 84800, 84800, 339200}, {1, 4, 8, 8, 8, 32}, 10600},
        {{20000, 41200, 84800, 10600, 12600, 339200}, {1, 4, 8, 8, 8, 32}, 10600},
    };
    for (const auto& c : cases) {
        g_script = {};
        g_script.clocks = c.clocks;
        tool.setMethodBest(1, 64, 100);
        EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_OK);
        EXPECT_EQ(g_script.loops, c.loops);
        EXPECT_DOUBLE_EQ(tool.funcClocks, c.funcClocks);
    }
}

TEST_F(ToolTest, AFailedRunEndsTheAutoMethodAndShowsItsHistory) {
    const Captured log;
    g_script.clocks = {0};
    EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_ACCUR_FAIL);
    EXPECT_EQ(g_script.loops, (std::vector<int>{1, 1, 10, 10}));
    EXPECT_TRUE(has(log.text(), "        numLoops   = 10\n        numClocks  = 0\n"));
    g_script = {};
    g_script.clocks = {50000};
    g_script.result = PS_FUNC_FAIL;
    EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_FUNC_FAIL);
    EXPECT_EQ(g_script.loops, std::vector<int>{1});
    EXPECT_STREQ(tool.note.c_str(), "lib function fail");
}

// Also in the runs that follow the first, and whatever their clocks were.
TEST_F(ToolTest, AFailureInAnyRunEndsTheAutoMethodAtOnce) {
    const Captured log;
    // The run that fails; 3% more per call in 4 loops is followed by confirming runs.
    const std::pair<size_t, std::vector<long long>> cases[] = {
        {2, {20000, 80000}}, {2, {20000, 0}}, {3, {20000, 82400}}};
    for (const auto& [failing, clocks] : cases) {
        g_script = {};
        g_script.clocks = clocks;
        g_script.failingRun = failing;
        EXPECT_EQ(tool.timing(loopFunc, nullptr, nullptr, nullptr), PS_FUNC_FAIL);
        EXPECT_EQ(g_script.loops.size(), failing);
    }
    EXPECT_EQ(log.text(), "");
}

// The flags of a division by zero, without its trap, in the second run: fewer loops are tried.
TEST_F(ToolTest, FlagsOfTheCallsAreAvoidedWhereThatIsAsked) {
    g_script.clocks = {20000, 80000, 20000}; // the best of several calls, as tests give it
    for (const bool again : {false, true}) {
        g_script.loops.clear();
        g_script.runs = 0;
        g_script.raisingRuns = again ? 100 : 2;
        const Captured log;
        tool.checkCtrlStatus = true;
        ps87::instance().init();
        psSSX::instance().init();
        tool.timing(loopFunc, nullptr, nullptr, nullptr);
        EXPECT_EQ(g_script.loops, (std::vector<int>{1, 4, 2, 2, 2, 2, 2}));
        EXPECT_EQ(log.text(), std::string("-- Status    SSX: ?Zerodivide \n"
                                          "-- Attempting to avoid bad control status\n") +
                                  (again ? "-- Attempt fails: Bad control status repeats.\n"
                                         : "-- Attempt is successful\n"));
    }
}

// A prior run has spans of its own kind.
TEST_F(ToolTest, TheSpansOfTheLastRunCount) {
    const auto loop = [](int loops, long long* clocks) {
        g_batches.add(loops);
        *clocks = 1000LL * loops;
        return PS_OK;
    };
    tool.setMethodBest(1, 8, 100);
    tool.timing(loop, nullptr, nullptr, nullptr);
    EXPECT_GT(tool.times().calls, 1); // more than one run
    EXPECT_EQ(tool.times().batches, 1);
}

// All runs of a measurement count as time in calls: by the spans that the test told, else by the
// clocks that it stored; not the budget that a failure leaves.
TEST_F(ToolTest, TheTimeInCallsIsThatOfAllRuns) {
    const auto loop = [](int loops, long long* clocks) {
        g_batches.add(loops);
        g_batches.add(loops);
        *clocks = 1000LL * loops;
        return PS_OK;
    };
    tool.setMethodBest(1, 8, 100);
    for (int again = 0; again < 2; ++again) { // each measurement on its own
        tool.timing(loop, nullptr, nullptr, nullptr);
        EXPECT_EQ(tool.clocksInCalls, 2 * (1 + 4)); // the prior run, and one that agrees with it
    }
    g_script.clocks = {20000, 80000};
    tool.timing(loopFunc, nullptr, nullptr, nullptr);
    EXPECT_EQ(tool.clocksInCalls, 20000 + 80000);
    g_script.clocks = {700};
    tool.setMethodStat(5, 1000000);
    tool.timing(nullptr, statFunc, nullptr, nullptr);
    EXPECT_EQ(tool.clocksInCalls, 700);
    g_script.result = PS_FUNC_FAIL;
    tool.timing(nullptr, statFunc, nullptr, nullptr);
    EXPECT_EQ(tool.clocksInCalls, 0);
}

TEST_F(ToolTest, TheDetailsTellClocksInFull) {
    const Captured log(PS_OUT_INFO);
    g_script.clocks = {12345678901};
    tool.setMethodBest(1, 8, 100000000000);
    tool.timing(loopFunc, nullptr, nullptr, nullptr);
    EXPECT_TRUE(has(log.text(), "        minClocks  = 100000000000\n"));
    EXPECT_TRUE(has(log.text(), "        numClocks  = 12345678901\n"));
}

TEST_F(ToolTest, OwnLoopsCallTwicePerTimedCall) {
    tool.setMethodStat(5, 0);
    EXPECT_EQ(tool.timing(nullptr, nullptr, callFunc, initFunc), PS_OK);
    EXPECT_EQ(g_script.calls, 1 + 5 * 2);
    EXPECT_EQ(g_script.inits, 1 + 5);
    g_script = {};
    tool.setMethodLoop(5);
    EXPECT_EQ(tool.timing(nullptr, nullptr, callFunc, initFunc), PS_OK);
    EXPECT_EQ(g_script.calls, 1 + 5);
    EXPECT_EQ(g_script.inits, 1 + 5);
}

TEST_F(ToolTest, AnErrorStatusEndsTheOwnLoops) {
    g_script.status = -6;
    psTool::m_pCheckStatus = [](int status) { return status < 0 ? PS_FUNC_FAIL : PS_OK; };
    tool.setMethodLoop(50);
    EXPECT_EQ(tool.timing(nullptr, nullptr, callFunc, nullptr), PS_FUNC_FAIL);
    EXPECT_EQ(g_script.calls, 3);
    psTool::m_pCheckStatus = nullptr;
}
