// github-action-benchmark's customSmallerIsBetter: an array of name, unit, value, and as texts
// range and extra. The unit is free, so this tracks clocks; a case is one point of a history, so
// it has the median of the runs. The range is a number behind "±", or its comparison ignores it.
#include <algorithm>

#include "casename.h"
#include "exchange.h"
#include "figures.h"
#include "json.h"

namespace report {

namespace {

// How far the runs are from the median.
double rangeOf(const Case& tried) {
    return std::max(tried.largest - tried.median, tried.median - tried.smallest);
}

std::string extraOf(const Case& tried) {
    const auto runs = tried.samples.size();
    std::string text = std::to_string(runs) + (runs == 1 ? " run" : " runs");
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
    if (tried.samples.size() > 1) {
        entry["range"] = "± " + plainNumber(costOf(tried, rangeOf(tried)).clocks);
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
