#include "ranks.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace compare {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

// The chance of each sum of the ranks of the positive values, when each sign is a fair coin. Each
// rank halves the chances: half stay at their sum, half move up by it.
std::vector<double> chancesOfSums(std::span<const int> ranks) {
    std::vector<double> chances{1};
    for (const int rank : ranks) {
        const std::vector<double> before = chances;
        chances.resize(before.size() + rank, 0);
        for (double& chance : chances) {
            chance /= 2;
        }
        for (size_t sum = 0; sum < before.size(); ++sum) {
            chances[sum + rank] += before[sum] / 2;
        }
    }
    return chances;
}

// Twice the rank of each size in rising order, so that the mean rank of equal ones is whole.
std::vector<int> doubledRanks(std::span<const double> risingBySize) {
    const auto count = static_cast<int>(risingBySize.size());
    std::vector<int> ranks(count);
    for (int first = 0, behind = 0; first < count; first = behind) {
        while (behind < count && std::abs(risingBySize[behind]) == std::abs(risingBySize[first])) {
            ++behind;
        }
        std::fill(ranks.begin() + first, ranks.begin() + behind, first + 1 + behind);
    }
    return ranks;
}

// The means of all pairs (Walsh averages), in rising order.
std::vector<double> pairMeans(std::span<const double> values) {
    std::vector<double> means;
    means.reserve(values.size() * (values.size() + 1) / 2);
    for (size_t i = 0; i < values.size(); ++i) {
        for (size_t j = i; j < values.size(); ++j) {
            means.push_back((values[i] + values[j]) / 2);
        }
    }
    std::sort(means.begin(), means.end());
    return means;
}

// How many pair means may be left out at either end: as many as there are rank sums whose chance,
// at both ends together, is within the chance of error.
size_t pairMeansBeyond(size_t values, double error) {
    std::vector<int> ranks(values);
    for (size_t i = 0; i < values; ++i) {
        ranks[i] = static_cast<int>(i) + 1;
    }
    size_t sums = 0;
    double chance = 0;
    for (const double ofSum : chancesOfSums(ranks)) {
        chance += ofSum;
        if (2 * chance > error) {
            break;
        }
        ++sums;
    }
    return sums;
}

} // namespace

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1) {
        return *middle;
    }
    return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

double signedRankPValue(std::span<const double> values) {
    std::vector<double> sorted(values.begin(), values.end());
    std::erase(sorted, 0.0);
    std::sort(sorted.begin(), sorted.end(),
              [](double a, double b) { return std::abs(a) < std::abs(b); });
    const std::vector<int> ranks = doubledRanks(sorted);

    int ofPositive = 0;
    int ofAll = 0;
    for (size_t i = 0; i < ranks.size(); ++i) {
        ofPositive += sorted[i] > 0 ? ranks[i] : 0;
        ofAll += ranks[i];
    }
    const std::vector<double> chances = chancesOfSums(ranks);
    double asFar = 0;
    for (int sum = 0; sum <= ofAll; ++sum) {
        if (std::abs(2 * sum - ofAll) >= std::abs(2 * ofPositive - ofAll)) {
            asFar += chances[sum];
        }
    }
    return std::min(asFar, 1.0);
}

double Interval::halfWidth() const {
    return std::max(high - estimate, estimate - low);
}

Interval signedRankInterval(std::span<const double> values, double confidence) {
    Interval interval{0, -infinite, infinite};
    if (values.empty()) {
        return interval;
    }
    const std::vector<double> means = pairMeans(values);
    interval.estimate = median(means);
    const size_t beyond = pairMeansBeyond(values.size(), 1 - confidence);
    if (beyond > 0) {
        interval.low = means[beyond - 1];
        interval.high = means[means.size() - beyond];
    }
    return interval;
}

} // namespace compare
