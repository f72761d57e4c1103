#include "pscputick_gcc.h"

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>
#include <x86intrin.h>

#include <ntkcore.h>

#include <gtest/gtest.h>

#include "variable.h"

namespace {

constexpr long long second = 1'000'000'000;

// The time of the system and of the processor while a test scripts it: it moves by what is slept,
// and by a millisecond whenever the second is asked for.
struct Script {
    long long nanoseconds = 300'000'000;
    long long slept = 0;
};
Script* g_script = nullptr; // none: the time of the machine

} // namespace

// In place of the functions of the C library and of the measured one.
extern "C" {

int clock_gettime(clockid_t clock_id, timespec* tp) noexcept {
    if (!g_script) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock_id, tp));
    }
    *tp = {g_script->nanoseconds / second, g_script->nanoseconds % second};
    return 0;
}

time_t time(time_t* timer) noexcept {
    if (g_script) {
        g_script->nanoseconds += 1'000'000;
    }
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    if (timer) {
        *timer = now.tv_sec;
    }
    return now.tv_sec;
}

int nanosleep(const timespec* requested_time, timespec* remaining) {
    if (!g_script) {
        return static_cast<int>(syscall(SYS_nanosleep, requested_time, remaining));
    }
    const long long nanoseconds = requested_time->tv_sec * second + requested_time->tv_nsec;
    g_script->nanoseconds += nanoseconds;
    g_script->slept += nanoseconds;
    return 0;
}

Ntk64u ntkGetCpuClocks(void) {
    return g_script ? static_cast<Ntk64u>(g_script->nanoseconds) * 7 / 2 : __rdtsc();
}

} // extern "C"

TEST(Frequency, MeasuredFromTwoSpansOfASecond) {
    const struct {
        long long first, second;
        int mhz;
    } cases[] = {{2395700000, 2395700000, 2395},
                 {2000000000, 2400500000, 2200},
                 {1999000, 0, 0},
                 {100, 2001000, 1},
                 {5000000000, 5001000000, 5000},
                 {0, 0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(psMeasuredMHz(c.first, c.second), c.mhz) << c.first;
}

TEST(Frequency, SnapsToANominalOneWithinThreePercent) {
    const std::pair<int, int> cases[] = {
        {2395, 2400}, {3500, 3500}, {3060, 3060}, {3154, 3060}, {3155, 3155}, {2450, 2400},
        {2465, 2500}, {2515, 2500}, {2516, 2530}, {67, 66},     {63, 63},     {540, 530},
        {900, 900},   {4100, 4100}, {0, 0},       {1, 1},       {1200, 1200}, {1030, 1000}};
    for (const auto& [measured, mhz] : cases)
        EXPECT_EQ(psNominalMHz(measured), mhz) << measured;
}

TEST(Frequency, IsMeasuredOnceAndMostlyAsleep) {
    // No cache: the scripted frequency is not to be kept, nor a kept one to be read.
    const Variable cache("XDG_CACHE_HOME", nullptr);
    const Variable home("HOME", nullptr);
    if (psCpuTicker::knownFreq() != 0) {
        GTEST_SKIP() << "another test of this process has measured it";
    }
    Script script;
    g_script = &script;
    EXPECT_EQ(psCpuTicker::getFreq(), 3500);
    EXPECT_EQ(script.nanoseconds, 3 * second); // a rest of a second, and two whole ones
    EXPECT_GT(script.slept, 25 * second / 10);
    EXPECT_EQ(psCpuTicker::getFreq(), 3500);
    EXPECT_EQ(psCpuTicker::knownFreq(), 3500);
    EXPECT_EQ(script.nanoseconds, 3 * second);
    g_script = nullptr;
}

// Initialised before any static initialiser.
static const unsigned long long s_clocksAtStart = ntk_StartCpuClocks ? ntk_StartCpuClocks() : 0;

TEST(ClockReaders, RunFromTheStart) {
    EXPECT_GT(s_clocksAtStart, 0u);
    const unsigned long long start = ntk_StartCpuClocks();
    EXPECT_GT(start, s_clocksAtStart);
    EXPECT_GT(ntk_StopCpuClocks(), start);
    EXPECT_EQ(psCpuTicker::getClockFactor(), 1);
}
