#pragma once

#include "psresult.h"

// The texts of a test's result, apart from any test.

// Clocks for the table: fixed-point with the decimals that the size leaves significant, "%.3e"
// outside 0.0001 to 10000000; empty for 0 and below.
psString psFormatClocks(double clocks);

// Text padded with blanks to |width|: in front when width is positive, behind when negative. A
// longer text stays whole.
psString sFormat(const psString& text, int width);
psString sFormat(double number, int width);
