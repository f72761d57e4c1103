#pragma once

#include "psresult.h"

// The arithmetic of the timing engine, apart from any clock.

// Clocks as text. From 2^31 on the value is divided by 10 until it fits 31 bits and each division
// leaves a "0" at the end, so large values lose their last digits.
psString clockStr(long long clocks);

// 100 x accuracy with a percent sign: two decimals below 0.1%, else one. At most 17 characters.
psString psAccuracyText(double accuracy);

// Relative distance of two clocks-per-call values: 2|a - b| / (a + b).
double psRelativeSpread(double a, double b);

// Largest distance of an element from the mean, relative to the mean; 0 for n < 1.
double psMeanSpread(const double* values, int n);
double psSmallest(const double* values, int n);

// Result of the first, short run: too short a run is 2, a run without clocks 7.
psResult psJudgePriorRun(double clocksPerCall, int loops, long long minClocks);

// By how much the loop count grows after a run that took numClocks (at least 1) of the wanted
// minClocks: twice what is missing, up to the next power of two so that counts stay round.
long long psShortRunFactor(long long minClocks, long long numClocks);

// Loop counts are ints; a product beyond them stays at the largest or smallest.
int psTimesLoops(int loops, long long factor);

// Inner repetitions of one timed batch: 100 when 100 timer ticks are not small against a call.
int psInnerLoops(int timerResolutionClocks, double clocksPerCall);

// Clock budget of the statistic run: freqMHz x 100 clocks for each of milliseconds, that is a
// tenth of the time; the shortest that gave stable minima.
double psStatBudgetClocks(int freqMHz, int milliseconds);

// Loop range of the auto method for a loop factor: 0 stands for the default.
struct psLoopRange {
    int minLoops, maxLoops;
};
psLoopRange psLoopRangeOfFactor(int factor);
