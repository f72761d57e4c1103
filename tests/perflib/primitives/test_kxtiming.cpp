// The generated timing functions against a clock that a script advances.

#include <gtest/gtest.h>

#include <climits>

#include "captured.h"
#include "kxtiming.h"
#include "pslibrary.h"

namespace {
unsigned long long g_now;
int g_inits, g_calls, g_status;
int g_badCall;        // the call that returns g_status
int g_longInitClocks; // 0: init bodies are short; else of every third, the others are disturbed

unsigned long long readClock() {
    return g_now += 10; // what reading costs
}
int init() {
    g_inits++;
    g_now += g_longInitClocks ? g_longInitClocks * (g_inits % 3 ? 3 : 1) : 3;
    return 0;
}
// The fifth call is the quickest.
int call() {
    g_calls++;
    g_now += g_calls == 5 ? 400 : 500;
    return g_calls == g_badCall ? g_status : 0;
}

class TimingTest : public testing::Test {
protected:
    void SetUp() override {
        g_now = 0;
        g_batches.clear();
        g_inits = g_calls = g_status = g_badCall = g_longInitClocks = 0;
        m_start = ntk_StartCpuClocks;
        m_stop = ntk_StopCpuClocks;
        ntk_StartCpuClocks = ntk_StopCpuClocks = readClock;
        setNtkEnvironment();
        ntk_StartCpuClocks = ntk_StopCpuClocks = readClock;
    }
    void TearDown() override {
        ntk_StartCpuClocks = m_start;
        ntk_StopCpuClocks = m_stop;
    }
    using Timing = kxTiming<call, init>;
    using Uninitialised = kxTiming<call, nullptr>;
    long long clocks = 0;

private:
    psClockReader m_start, m_stop;
};
} // namespace

TEST_F(TimingTest, LoopKeepsTheQuickestCallAlone) {
    EXPECT_EQ(Timing::loop(9, &clocks, "f"), PS_OK);
    EXPECT_EQ(clocks, 410); // the call and the stop reading, no init body
    EXPECT_EQ(g_batches.count(), 9);
    EXPECT_DOUBLE_EQ(g_batches.spread(), 100.0 / 410);
    EXPECT_EQ(g_calls, 10);
    EXPECT_EQ(g_inits, 10);
}

TEST_F(TimingTest, LoopOfNoneGivesTheCostOfTwoReadings) {
    EXPECT_EQ(Timing::loop(0, &clocks, "f"), PS_OK);
    EXPECT_EQ(clocks, 10);
    EXPECT_EQ(g_calls, 1);
}

TEST_F(TimingTest, StatGoesOnUntilCallsAndClocksAreReached) {
    int count = 3;
    clocks = 2000;
    EXPECT_EQ(Timing::stat(&count, &clocks, 1, "f"), PS_OK);
    EXPECT_EQ(count, 4); // 513 clocks each
    EXPECT_EQ(clocks, 513 - 3);
    EXPECT_EQ(g_batches.count(), 4); // of one call each
    EXPECT_EQ(g_inits, kxProbes + kxRounds * kxInitsPerRound + 4);
    EXPECT_EQ(g_calls, 5); // and one, untimed, for what a call leaves behind
    g_calls = 0;
    count = 7;
    clocks = 0;
    Timing::stat(&count, &clocks, 0, "f");
    EXPECT_EQ(count, 7);
    EXPECT_EQ(clocks, 413 - 3);
}

// A round of a hundred long bodies is never undisturbed: the quickest body counts, as the quickest
// batch does.
TEST_F(TimingTest, StatSubtractsTheQuickestOfLongInitBodies) {
    g_longInitClocks = 1'000'000;
    int count = 8;
    clocks = 0;
    EXPECT_EQ(Timing::stat(&count, &clocks, 1, "f"), PS_OK);
    EXPECT_GE(clocks, 400);
    EXPECT_LE(clocks, 500);
    EXPECT_LT(g_inits, 100); // within the budget
}

TEST_F(TimingTest, StatWithBatchesDividesTheQuickestBatch) {
    int count = 1;
    clocks = 1;
    EXPECT_EQ(Uninitialised::stat(&count, &clocks, 100, "f"), PS_OK);
    EXPECT_EQ(count, 100);
    EXPECT_EQ(clocks, (99 * 500 + 400 + 10) / 100); // the calibrated overhead is 10 / 100 = 0
    EXPECT_EQ(g_calls, 100);
}

TEST_F(TimingTest, StatusOfTheCalls) {
    const struct {
        int badCall, status, count, calls; // calls: the untimed one included
        psResult result;
        const char* log;
    } cases[] = {
        {3, -6, 2, 3, PS_FUNC_FAIL, "--NTK FAIL. status = -6 in f: Fail\n"},
        {3, 2, 10, 11, PS_FUNC_NOTE, "--NTK NOTE. status = 2 in f: Note\n"},
    };
    for (const auto& c : cases) {
        const Captured log;
        g_calls = 0;
        g_badCall = c.badCall;
        g_status = c.status;
        int count = 10;
        clocks = 0;
        ntk_GetStatusString = [](NtkStatus status) { return status < 0 ? "Fail" : "Note"; };
        EXPECT_EQ(Timing::stat(&count, &clocks, 1, "f"), c.result);
        EXPECT_EQ(count, c.count);
        EXPECT_EQ(g_calls, c.calls);
        EXPECT_EQ(log.text(), c.log);
    }
    EXPECT_EQ(kxClocksPerCall(1000, 10, 100), 100); // not above the overhead: as it is
    EXPECT_EQ(kxClocksPerCall(1010, 10, 100), 1);
}
