#pragma once

#include <vector>

namespace report {

// Of values in ascending order, at least one: that which so large a part of them lies below, in
// between two of them proportionally. 0.5: the median.
double quantile(const std::vector<double>& sorted, double part);

} // namespace report
