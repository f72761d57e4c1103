#include "utest.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// U of the first sample: how many of the pairs it wins; an equal pair is half won.
double wonPairs(std::span<const double> a, std::span<const double> b) {
    double won = 0;
    for (const double x : a) {
        for (const double y : b) {
            won += x > y ? 1 : x == y ? 0.5 : 0;
        }
    }
    return won;
}

// The number of orders of the two samples in which the first wins so many pairs, for each number
// from 0 on. The largest of all values belongs to the first sample, and wins against all of the
// second, or to the second.
std::vector<double> ordersByWonPairs(std::size_t a, std::size_t b) {
    std::vector<std::vector<double>> counts(b + 1, {1.0}); // of an empty first sample
    for (std::size_t i = 1; i <= a; ++i) {
        std::vector<std::vector<double>> next(b + 1);
        next[0] = {1.0};
        for (std::size_t j = 1; j <= b; ++j) {
            next[j].assign(i * j + 1, 0.0);
            for (std::size_t u = 0; u < counts[j].size(); ++u) {
                next[j][u + j] += counts[j][u];
            }
            for (std::size_t u = 0; u < next[j - 1].size(); ++u) {
                next[j][u] += next[j - 1][u];
            }
        }
        counts = next;
    }
    return counts[b];
}

double exactPValue(double won, std::size_t a, std::size_t b) {
    const std::vector<double> orders = ordersByWonPairs(a, b);
    const double fewer = std::min(won, static_cast<double>(a * b) - won);
    double all = 0, asFar = 0;
    for (std::size_t u = 0; u < orders.size(); ++u) {
        all += orders[u];
        asFar += static_cast<double>(u) <= fewer ? orders[u] : 0;
    }
    return std::min(1.0, 2 * asFar / all);
}

// The sum of t^3 - t over the groups of t equal values.
double tieTerm(const std::vector<double>& sorted) {
    double term = 0;
    for (std::size_t i = 0; i < sorted.size();) {
        std::size_t end = i;
        while (end < sorted.size() && sorted[end] == sorted[i]) {
            ++end;
        }
        const auto equal = static_cast<double>(end - i);
        term += equal * equal * equal - equal;
        i = end;
    }
    return term;
}

double normalPValue(double won, double a, double b, double ties) {
    const double n = a + b;
    const double variance = a * b / 12 * (n + 1 - ties / (n * (n - 1)));
    if (variance <= 0) { // all values are equal
        return 1;
    }
    constexpr double continuity = 0.5;
    const double distance = std::max(std::abs(won - a * b / 2) - continuity, 0.0);
    return std::erfc(distance / std::sqrt(2 * variance));
}

} // namespace

double uTestPValue(std::span<const double> a, std::span<const double> b) {
    if (a.empty() || b.empty()) {
        return 1;
    }
    std::vector<double> sorted(a.begin(), a.end());
    sorted.insert(sorted.end(), b.begin(), b.end());
    std::sort(sorted.begin(), sorted.end());
    const double ties = tieTerm(sorted);
    const double won = wonPairs(a, b);
    if (ties == 0) {
        return exactPValue(won, a.size(), b.size());
    }
    return normalPValue(won, static_cast<double>(a.size()), static_cast<double>(b.size()), ties);
}
