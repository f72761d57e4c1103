#pragma once

#include <algorithm>
#include <climits>

#include "kxtest.h"
#include "psbatches.h"
#include "pscputick_gcc.h"
#include "pstestlist.h"
#include "psturns.h"

// The timing functions of a benchmark, made from its call and its init body.
//
// A timed span holds the call and nothing else (loop method), or a batch of calls each followed by
// the reset of its arguments, whose cost is calibrated and subtracted (statistics method). Call and
// Init are template arguments so that both are compiled into the span: what remains around the
// library's function is the loading of its arguments.

// Calibration: in each of the rounds the init body runs this often.
constexpr int kxInitsPerRound = 100;
constexpr int kxRounds = 100;
// An init body that encodes half a file costs as much as what it prepares for. 10000 of them would
// take minutes per combination, and no hundred of them in a row run undisturbed, while of the
// batches, which hold one each, the quickest does: the difference of the two would be noise. Bodies
// longer than this are therefore timed one by one, as many as fit a budget, which is about that of
// the measurement itself: more would make most of a run of it, and a quickest body of more than the
// quickest batch is chosen from.
constexpr long long kxLongInitClocks = 10'000;
constexpr int kxProbes = 8;
constexpr long long kxMostCalibrationClocks = 25'000'000;
// Where the result is kept for many turns of a few milliseconds, all bodies have no more than one.
constexpr long long kxTurnCalibrationClocks = 10'000'000;

// Clocks of one call of a batch, less the overhead when there is more than that.
constexpr long long kxClocksPerCall(long long batchClocks, int calls, long long overhead) {
    const long long clocks = batchClocks / calls;
    return clocks > overhead ? clocks - overhead : clocks;
}

template <int (*Call)(), int (*Init)()> class kxTiming {
public:
    // The smallest clocks of n calls; with n = 0 those of an empty measurement.
    static psResult loop(int n, long long* clocks, const char* name) {
        init();
        int status = Call();
        const long long t0 = start();
        long long best = LLONG_MAX;
        for (int i = 0; i < n; i++) {
            init();
            const long long from = start();
            status = Call();
            const long long to = stop();
            g_batches.add(to - from);
            best = to - from < best ? to - from : best;
        }
        const long long t1 = stop();
        *clocks = n ? best : t1 - t0;
        return kxTest::checkStatus(status, name);
    }

    // Batches of n calls (at least one) until *count calls and *clocks clocks are reached.
    static psResult stat(int* count, long long* clocks, int n, const char* name) {
        start();
        const long long overhead = g_initClocks.of(calibrate).perBody();
        const int batch = n >= 2 ? n : 1;
        start();
        int calls = 0;
        long long total = 0;
        long long best = LLONG_MAX;
        int status = 0;
        int kept = 0; // the last warning
        while (calls < *count || total * psCpuTicker::getClockFactor() < *clocks) {
            const long long dt = timeBatch(batch, status);
            g_batches.add(dt);
            best = dt < best ? dt : best;
            kept = status != 0 ? status : kept;
            if (status < 0) {
                break;
            }
            total += dt;
            calls += batch;
        }
        *count = calls;
        *clocks = kxClocksPerCall(best, batch, overhead);
        if (status >= 0) {
            leaveAsAfterCall();
        }
        return kxTest::checkStatus(kept, name);
    }

private:
    static void init() {
        if constexpr (hasInit) {
            Init();
        }
    }
    static long long start() { return static_cast<long long>(ntk_StartCpuClocks()); }
    static long long stop() { return static_cast<long long>(ntk_StopCpuClocks()); }

    // A batch ends with a reset, which puts capacities where the call leaves lengths. One more
    // call, untimed, so that divisor and ratio can be taken from what a call leaves.
    static void leaveAsAfterCall() {
        if constexpr (hasInit) {
            Call();
        }
    }

    [[gnu::noinline]] static long long timeBatch(int batch, int& status) {
        const long long from = start();
        for (int i = 0; i < batch; i++) {
            status = Call();
            init();
        }
        return stop() - from;
    }

    static psBodyClocks calibrate() {
        const bool isKept = g_initClocks.isKept();
        if constexpr (hasInit) {
            const long long single = quickestRound(kxProbes, 1, LLONG_MAX);
            if (single > kxLongInitClocks) {
                const long long most = isKept ? kxTurnCalibrationClocks : kxMostCalibrationClocks;
                return {std::min(single, quickestRound(INT_MAX, 1, most)), 1};
            }
        }
        const long long most = isKept ? kxTurnCalibrationClocks : LLONG_MAX;
        return {quickestRound(kxRounds, kxInitsPerRound, most), kxInitsPerRound};
    }

    // The smallest clocks of rounds of n init bodies each; no round begins beyond mostClocks.
    [[gnu::noinline]] static long long quickestRound(int rounds, int n, long long mostClocks) {
        long long best = LLONG_MAX;
        long long spent = 0;
        for (int round = 0; round < rounds && spent < mostClocks; round++) {
            const long long from = start();
            for (int i = 0; i < n; i++) {
                init();
                asm volatile("" ::: "memory"); // without an init body, an empty loop is timed
            }
            const long long clocks = stop() - from;
            best = clocks < best ? clocks : best;
            spent += clocks;
        }
        return best;
    }

    static constexpr bool hasInit = Init != nullptr;
};

// Defines tim_<function>_loop and tim_<function>_stat from tcall_<function> and, with the first
// macro, tinit_<function>. Macros, because names are made.
#define KX_TIMING_I(function) KX_TIMING_OF(function, tinit_##function)
#define KX_TIMING(function) KX_TIMING_OF(function, nullptr)
#define KX_TIMING_OF(function, init)                                                               \
    static psResult tim_##function##_loop(int n, long long* clocks) {                              \
        return kxTiming<tcall_##function, init>::loop(n, clocks, #function);                       \
    }                                                                                              \
    static psResult tim_##function##_stat(int* count, long long* clocks, int n) {                  \
        return kxTiming<tcall_##function, init>::stat(count, clocks, n, #function);                \
    }

// Registers the test of the function, with or without an init function. By "Ibs" in its name the
// last one has the harness watch the floating-point flags, see psTest::beginRun.
#define KX_REGISTER_I(Class, function, source)                                                     \
    KX_REGISTER_AS(Class, function, tinit_##function, source, "KX_REG_I")
#define KX_REGISTER(Class, function, source)                                                       \
    KX_REGISTER_AS(Class, function, nullptr, source, "KX_REG")
#define KX_REGISTER_IBS_X(Class, function, source)                                                 \
    KX_REGISTER_AS(Class, function, tinit_##function, source, "KX_REG_Ibs_X")
#define KX_REGISTER_AS(Class, function, init, source, macro)                                       \
    psRegTest(new Class(tcall_##function, init, tim_##function##_loop, tim_##function##_stat,      \
                        #function, source, #Class "//" macro))
