#include "pscputick_gcc.h"

#include <time.h>

#include <cstdlib>

#include <ntkcore.h>

#include "psfreqcache.h"

constinit psClockReader ntk_StartCpuClocks = ntkStartTsc;
constinit psClockReader ntk_StopCpuClocks = ntkStopTsc;

int psCpuTicker::m_freqMHz = 0;
bool psCpuTicker::m_empty = true;

namespace {

constexpr int nominalMHz[] = {60,   66,   75,   90,   100,  120,  133,  150,  166,  185,
                              200,  220,  240,  266,  300,  333,  400,  450,  500,  530,
                              550,  600,  800,  1000, 1400, 1700, 1800, 1900, 2000, 2200,
                              2260, 2400, 2500, 2530, 2600, 2660, 2800, 3060};

constexpr int largestDifferenceMHz = 1000;
constexpr double nominalTolerance = 0.03;

// Sleeps through most of the current second. What is left is for waiting in a loop: time() moves
// with the timer interrupt, up to 10 ms late, and a sleep ends later still.
void sleepTowardsNextSecond() {
    constexpr long loopNanoseconds = 20'000'000;
    constexpr long second = 1'000'000'000;
    timespec now;
    if (clock_gettime(CLOCK_REALTIME, &now) == 0 && now.tv_nsec < second - loopNanoseconds) {
        const timespec span = {0, second - loopNanoseconds - now.tv_nsec};
        nanosleep(&span, nullptr); // woken early: the loop waits longer
    }
}

// Waits until time() has moved on by a second and returns the clocks at that moment.
long long clocksAtNextSecond() {
    const time_t start = time(nullptr);
    sleepTowardsNextSecond();
    while (difftime(time(nullptr), start) < 1.0) {
    }
    return static_cast<long long>(ntkGetCpuClocks());
}

int measureMHz() {
    const long long begin = clocksAtNextSecond(); // the rest of a second that has begun
    const long long middle = clocksAtNextSecond();
    const long long end = clocksAtNextSecond();
    return psNominalMHz(psMeasuredMHz(middle - begin, end - middle));
}

} // namespace

int psMeasuredMHz(long long firstClocks, long long secondClocks) {
    const float sum = static_cast<float>(firstClocks) + static_cast<float>(secondClocks);
    return static_cast<int>(sum * 5e-07); // half of a millionth
}

int psNominalMHz(int mhz) {
    int nearest = mhz;
    int smallest = largestDifferenceMHz;
    for (const int nominal : nominalMHz) {
        const int difference = std::abs(nominal - mhz);
        if (difference < smallest) {
            smallest = difference;
            nearest = nominal;
        }
    }
    return mhz > 0 && static_cast<double>(smallest) / mhz < nominalTolerance ? nearest : mhz;
}

int psCpuTicker::knownFreq() {
    if (m_empty) {
        static const int keptMHz = psReadFrequency(psFrequencyCachePath(), psFrequencyCacheKey());
        m_freqMHz = keptMHz;
        m_empty = keptMHz == 0;
    }
    return m_freqMHz;
}

double psCpuTicker::knownSeconds(long long clocks) {
    constexpr double clocksPerMHz = 1e6;
    const int mhz = knownFreq();
    return mhz > 0 ? static_cast<double>(clocks) / mhz / clocksPerMHz : 0;
}

int psCpuTicker::getFreq() {
    if (knownFreq() == 0) {
        m_freqMHz = measureMHz();
        m_empty = false;
        psWriteFrequency(psFrequencyCachePath(), psFrequencyCacheKey(), m_freqMHz);
    }
    return m_freqMHz;
}
