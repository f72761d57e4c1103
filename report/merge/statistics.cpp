#include "statistics.h"

#include <algorithm>
#include <cmath>

namespace report {

double quantile(const std::vector<double>& sorted, double part) {
    const double place = part * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(std::floor(place));
    const std::size_t above = std::min(below + 1, sorted.size() - 1);
    return sorted[below] + (place - std::floor(place)) * (sorted[above] - sorted[below]);
}

} // namespace report
