#pragma once

#include "psmeasurement.h"

// The texts of a test's result, apart from any test.

// Clocks for the table: fixed-point with the decimals that the size leaves significant, "%.3e"
// outside 0.0001 to 10000000; empty for 0 and below.
psString psFormatClocks(double clocks);

// Text padded with blanks to |width|: in front when width is positive, behind when negative. A
// longer text stays whole.
psString sFormat(const psString& text, int width);
psString sFormat(double number, int width);

// By how much the middle timed span was longer than the smallest, in percent ("12.3"); empty when
// the measurement failed or has a single span.
psString psSpreadText(const psMeasurement& record);
// The line of the log for a measurement with a large spread; else empty.
psString psDisturbanceText(const psMeasurement& record);

// How many measurements of a run gave figures, which of them were disturbed by what, and the clocks
// of their timed spans.
struct psRunFigures {
    int measured = 0, spread = 0, switchedOut = 0;
    long long clocksInCalls = 0;
    void count(const psMeasurement& record);
};
// The closing note, with what helps; empty when nothing was disturbed.
psString psDisturbanceSummary(const psRunFigures& of);
// The closing line for how much of a run was spent in measured calls; empty when none was, or when
// that is not known (0).
psString psTimeInCallsText(double secondsInCalls, double seconds);
