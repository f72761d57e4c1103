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
// What disturbed a measurement, as a line of the log; empty when nothing did.
psString psDisturbanceText(const psMeasurement& record);
// The closing line on disturbed measurements, with what helps; empty when there was none.
psString psDisturbanceSummary(int disturbed, int measured);
