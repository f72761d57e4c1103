#pragma once

#include <span>
#include <vector>

// The signed-rank statistics of a small sample of numbers that are independent and, where there is
// no effect, as likely above as below it. Exact: by counting all assignments of signs, no normal
// approximation (Wilcoxon 1945; the interval by Hodges and Lehmann 1963).
namespace compare {

// Of an even number of values the mean of the middle two. Not for none.
double median(std::vector<double> values);

// The chance of a sum of ranks at least this far from its mean, in either direction, when the
// values lie symmetrically about 0. Zeros are left out, equal sizes share their ranks. 1 for no
// values.
double signedRankPValue(std::span<const double> values);

struct Interval {
    double estimate = 0; // the median of the means of all pairs, each value with itself too
    double low = 0;      // infinite when there are too few values for the confidence
    double high = 0;

    double halfWidth() const; // the larger distance of an end from the estimate
    bool contains(double value) const { return low <= value && value <= high; }
};
// Holds the centre with at least the confidence (0.95 ...).
Interval signedRankInterval(std::span<const double> values, double confidence);

} // namespace compare
