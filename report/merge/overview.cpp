#include "overview.h"

#include <algorithm>
#include <map>

#include "cases.h"
#include "statistics.h"

namespace report {

namespace {

double ticksMHz(const Report& report, const Group& group) {
    for (const int run : group.runs) {
        const double ticks = report.runs[static_cast<std::size_t>(run)].facts.ticksMHz;
        if (ticks > 0) {
            return ticks;
        }
    }
    return 0;
}

double clocksOf(const Case& one, bool isPerByte) {
    return isPerByte ? *clocksPerByte(one) : one.median;
}

std::optional<double> medianOf(std::vector<double> values) {
    if (values.empty()) {
        return std::nullopt;
    }
    std::sort(values.begin(), values.end());
    return quantile(values, 0.5);
}

template <class Member>
std::vector<double> known(const std::vector<const Case*>& cases, Member member) {
    std::vector<double> values;
    for (const Case* one : cases) {
        if (const std::optional<double> value = one->*member) {
            values.push_back(*value);
        }
    }
    return values;
}

std::vector<const Case*> measuredOf(const std::vector<const Case*>& cases) {
    std::vector<const Case*> measured;
    std::copy_if(cases.begin(), cases.end(), std::back_inserter(measured),
                 [](const Case* one) { return !one->samples.empty(); });
    return measured;
}

void addLengths(const std::vector<const Case*>& measured, FunctionOverview& function) {
    std::map<double, std::vector<double>> clocks;
    for (const Case* one : measured) {
        if (one->length) {
            clocks[*one->length].push_back(clocksOf(*one, function.isPerByte));
        }
    }
    for (const double length : commonLengths(measured)) {
        function.byLength.emplace_back(length, *medianOf(clocks[length]));
    }
}

void summarize(double mhz, FunctionOverview& function) {
    const std::vector<const Case*> measured = measuredOf(function.cases);
    function.measured = static_cast<int>(measured.size());
    function.failed =
        static_cast<int>(std::count_if(function.cases.begin(), function.cases.end(),
                                       [](const Case* one) { return isFailure(one->result); }));
    function.isPerByte = std::all_of(measured.begin(), measured.end(),
                                     [](const Case* one) { return clocksPerByte(*one); });
    function.ratio = medianOf(known(measured, &Case::ratio));
    const std::vector<double> spreads = known(measured, &Case::spread);
    function.spread = medianOf(spreads);
    if (measured.empty()) {
        return;
    }
    if (!spreads.empty()) {
        function.largestSpread = *std::max_element(spreads.begin(), spreads.end());
    }
    std::vector<double> clocks;
    for (const Case* one : measured) {
        clocks.push_back(clocksOf(*one, function.isPerByte));
    }
    const auto [lowest, highest] = std::minmax_element(clocks.begin(), clocks.end());
    function.lowest = *lowest;
    function.highest = *highest;
    function.median = *medianOf(clocks);
    if (mhz > 0 && function.isPerByte && function.median > 0) {
        function.megabytesPerSecond = mhz / function.median;
    }
    addLengths(measured, function);
}

} // namespace

std::optional<double> clocksPerByte(const Case& one) {
    const bool isKnown = !one.samples.empty() && one.bytesPerUnit && *one.bytesPerUnit > 0;
    return isKnown ? std::optional(one.median / *one.bytesPerUnit) : std::nullopt;
}

std::vector<double> commonLengths(const std::vector<const Case*>& cases) {
    std::map<double, int> counts;
    int most = 0;
    for (const Case* one : cases) {
        if (one->length) {
            most = std::max(most, ++counts[*one->length]);
        }
    }
    std::vector<double> lengths;
    for (const auto& [length, count] : counts) {
        if (4 * count >= most) {
            lengths.push_back(length);
        }
    }
    return lengths;
}

std::vector<FunctionOverview> overviewOf(const Report& report, const Group& group) {
    std::vector<FunctionOverview> functions;
    std::map<std::string, std::size_t> places;
    std::map<std::string, std::size_t> families; // in the order in which they come
    for (const Case& one : group.cases) {
        families.try_emplace(one.family, families.size());
        const auto [place, isNew] = places.try_emplace(one.function, functions.size());
        if (isNew) {
            functions.emplace_back().function = one.function;
            functions.back().family = one.family;
        }
        functions[place->second].cases.push_back(&one);
    }
    const double mhz = ticksMHz(report, group);
    for (FunctionOverview& function : functions) {
        summarize(mhz, function);
    }
    std::stable_sort(functions.begin(), functions.end(), [&](const auto& one, const auto& other) {
        return families[one.family] < families[other.family];
    });
    return functions;
}

} // namespace report
