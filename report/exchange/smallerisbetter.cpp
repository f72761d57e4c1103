// github-action-benchmark's customSmallerIsBetter: an array of name, unit, value, and as texts
// range and extra. The unit is free, so this tracks clocks; a case is one point of a history, so
// it has the median of the runs. The range is a number behind "±", or its comparison ignores it.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "casename.h"
#include "exchange.h"
#include "figures.h"
#include "json.h"
#include "numbers.h"

namespace report {

namespace {

// How far the runs are from the median. Three digits, at least one of them behind the point: a
// lone digit is not recognised.
std::string rangeOf(const Case& tried) {
    const double furthest = std::max(tried.largest - tried.median, tried.median - tried.smallest);
    const double clocks = costOf(tried, furthest).clocks;
    const int decimals =
        isFigure(clocks) ? std::max(1, 2 - static_cast<int>(std::floor(std::log10(clocks)))) : 1;
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "± %.*f", decimals, clocks);
    return text.data();
}

std::string extraOf(const Case& tried) {
    std::string text = common::countText(static_cast<long long>(tried.samples.size()), "run");
    if (tried.ratio && isFigure(*tried.ratio)) {
        text += "\nratio: " + plainNumber(*tried.ratio);
    }
    if (tried.result != "OK") {
        text += "\n" + resultText(tried.result, tried.comment);
    }
    return text;
}

std::string entryOf(const Group& group, const Case& tried) {
    const Cost cost = costOf(tried, tried.median);
    Json entry = {{"name", caseName(group, tried)}, {"unit", cost.unit}, {"value", cost.clocks}};
    if (hasRange(tried)) {
        entry["range"] = rangeOf(tried);
    }
    entry["extra"] = extraOf(tried);
    return compact(entry);
}

} // namespace

std::string smallerIsBetterText(const Report& report) {
    std::vector<std::string> entries;
    for (const Group& group : report.groups) {
        for (const Case& tried : group.cases) {
            if (!tried.samples.empty() && isFigure(tried.median)) {
                entries.push_back(entryOf(group, tried));
            }
        }
    }
    return "[" + lines(entries) + "]\n";
}

} // namespace report
