// The generated timing functions against a clock that a script advances.

#include <gtest/gtest.h>

#include <xmmintrin.h>

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

// The harness tells flags that the calls leave behind: its own arithmetic around them leaves none.
TEST_F(TimingTest, StatLeavesNoFloatingPointFlags) {
    constexpr unsigned flags = 0x3F;
    _mm_setcsr(_mm_getcsr() & ~flags);
    int count = 3;
    clocks = 0;
    Timing::stat(&count, &clocks, 2, "f");
    EXPECT_EQ(_mm_getcsr() & flags, 0u);
}

// Spans of 1 + 7 bodies: what the quickest call (400) and the others (500) cost, with the reading.
TEST_F(TimingTest, ATurnIsTheQuickestSpanInFullPrecision) {
    g_initClocks.keep();
    const psTurns turns(
        [](int* count, long long* stored, int n) { return Timing::stat(count, stored, n, "f"); },
        call, init);
    const psTurn turn = turns.take(7, 3);
    EXPECT_EQ(turn.result, PS_OK);
    EXPECT_EQ(turn.calls, 21);
    EXPECT_DOUBLE_EQ(turn.clocksPerCall, (6 * 500 + 400 + 7 * 3 + 10) / 7.0 - (3 + 0.1));
    EXPECT_EQ(g_inits, 1 + kxProbes + kxRounds * kxInitsPerRound + 21);

    g_inits = 0;
    EXPECT_EQ(turns.take(1, 1).calls, 1);
    EXPECT_EQ(g_inits, 2); // before the first call and after it: the body's clocks are kept
    g_initClocks.keep();   // until the next combination
    EXPECT_DOUBLE_EQ(turns.take(0, 0).clocksPerCall, 500 + 3 + 10 - (3 + 0.1));
    EXPECT_GT(g_inits, kxProbes);
    g_initClocks.keepNone();

    g_inits = g_calls = 0;
    EXPECT_EQ(turns.callOnce(), 0);
    EXPECT_EQ(g_inits, 1);
    EXPECT_EQ(g_calls, 1);
}

// Where the clocks of a long body are kept, measuring them lasts no longer than a few turns.
TEST_F(TimingTest, KeptClocksOfALongInitBodyCostLess) {
    g_longInitClocks = 500'000;
    const auto initsOf = [] {
        g_inits = 0;
        int count = 1;
        long long none = 0;
        Timing::stat(&count, &none, 1, "f");
        return g_inits;
    };
    const int inits = initsOf();
    g_initClocks.keep();
    const int keptInits = initsOf();
    g_initClocks.keepNone();
    EXPECT_LE(keptInits, kxProbes + 10 + 1);
    EXPECT_GT(inits, 3 * keptInits / 2);
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
