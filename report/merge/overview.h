#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model.h"

// What one line can say of a function.
namespace report {

// The median of a case for each byte of uncompressed data; nothing when that is not known.
std::optional<double> clocksPerByte(const Case& one);

// The ratio up to which a spread is ordinary; above it something else was running.
constexpr double ordinarySpread = 0.05;

struct FunctionOverview {
    std::string function, family;
    std::vector<const Case*> cases;
    int measured = 0; // cases with clocks
    int failed = 0;
    // Over the measured cases, clocks per byte; per unit where one of them does not tell its bytes.
    bool isPerByte = true;
    double median = 0, lowest = 0, highest = 0; // 0 without measured cases
    std::optional<double> ratio, spread;        // medians
    std::optional<double> largestSpread;
    // Millions of bytes of uncompressed data a second, by the median.
    std::optional<double> megabytesPerSecond;
    // The median at each length, ascending; without lengths that few cases have, such as those of
    // files that are shorter than what was asked for.
    std::vector<std::pair<double, double>> byLength;
};

// Of a group of the report: by families, in the order in which these come.
std::vector<FunctionOverview> overviewOf(const Report& report, const Group& group);

// Of these cases the lengths that many have: at least a quarter of the cases of the most frequent.
std::vector<double> commonLengths(const std::vector<const Case*>& cases);

} // namespace report
