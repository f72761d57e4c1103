// The U test of two samples (Mann and Whitney, 1947).
#pragma once

#include <span>

// The chance of samples that lie at least this far apart, in either direction, when both are drawn
// from one distribution. Exact where no two values are equal; else by the normal approximation,
// with its corrections for equal values and for continuity. 1 when a sample is empty.
double uTestPValue(std::span<const double> a, std::span<const double> b);
