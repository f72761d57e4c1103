#include "pstimingmath.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>

namespace {
constexpr int defaultMaxLoops = 2048;
}

psString clockStr(long long clocks) {
    if (clocks <= INT_MAX) {
        return psText(clocks);
    }
    psString zeros;
    double shortened = static_cast<double>(clocks);
    while (shortened > 2147483647.0) {
        shortened /= 10;
        zeros += '0';
    }
    return psText(static_cast<int>(shortened)) + zeros;
}

psString psAccuracyText(double accuracy) {
    if (!std::isfinite(accuracy)) { // of runs without a clock
        return "-";
    }
    const double percent = accuracy * 100;
    const psString text = psFormat(percent < 0.1 ? "%.2f%c" : "%.1f%c", percent, '%');
    return text.length() > 17 ? text.substr(0, 17) : text;
}

double psRelativeSpread(double a, double b) {
    return 2 * std::fabs(a - b) / (a + b);
}

double psMeanSpread(const double* values, int n) {
    if (n < 1) {
        return 0;
    }
    double sum = 0;
    for (int i = 0; i < n; i++) {
        sum += values[i];
    }
    const double mean = sum / n;
    double spread = 0;
    for (int i = 0; i < n; i++) {
        spread = std::max(spread, std::fabs(values[i] - mean) / mean);
    }
    return spread;
}

double psSmallest(const double* values, int n) {
    return *std::min_element(values, values + n);
}

psResult psJudgePriorRun(double clocksPerCall, int loops, long long minClocks) {
    if (clocksPerCall <= 0) {
        return PS_ACCUR_FAIL;
    }
    return static_cast<double>(minClocks) > clocksPerCall * loops ? PS_ACCUR_WARN : PS_OK;
}

long long psShortRunFactor(long long minClocks, long long numClocks) {
    const long long factor = 2 * minClocks / numClocks;
    if (factor < 1 || factor > (1LL << 30)) {
        return factor;
    }
    return static_cast<long long>(std::bit_ceil(static_cast<unsigned long long>(factor)));
}

int psTimesLoops(int loops, long long factor) {
    long long product = 0;
    if (__builtin_mul_overflow(static_cast<long long>(loops), factor, &product)) {
        return (loops < 0) == (factor < 0) ? INT_MAX : INT_MIN;
    }
    return static_cast<int>(std::clamp<long long>(product, INT_MIN, INT_MAX));
}

int psInnerLoops(int timerResolutionClocks, double clocksPerCall) {
    return timerResolutionClocks * 100 / clocksPerCall < 2 ? 1 : 100;
}

double psStatBudgetClocks(int freqMHz, int milliseconds) {
    return freqMHz * 100.0 * milliseconds;
}

psLoopRange psLoopRangeOfFactor(int factor) {
    if (factor == 0) {
        return {0, 0};
    }
    if (factor > 0) {
        return {1 >> (factor & 31), defaultMaxLoops >> (factor & 31)};
    }
    const unsigned shift = -static_cast<unsigned>(factor) & 31u;
    return {static_cast<int>(1u << shift), static_cast<int>(unsigned{defaultMaxLoops} << shift)};
}
