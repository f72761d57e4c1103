// Go's benchmark format, a line a run and case: benchstat takes lines of one name for repetitions
// and tests their difference. It compares only lines whose file keys agree, so those are few: the
// processor, since clocks of two are never compared, and the group where there are several. What
// may differ between the sides of a comparison is in lines that it ignores, those with "#".
#include <algorithm>
#include <set>

#include "casename.h"
#include "exchange.h"
#include "figures.h"

namespace report {

namespace {

std::string factsText(const Report& report, const Group& group) {
    std::string text;
    for (const int run : group.runs) {
        const Run& of = report.runs[run];
        text += "# " + onOneLine(of.file);
        for (const LibraryFacts& library : of.facts.libraries) {
            text += ", " + onOneLine(library.name + " " + library.version);
        }
        text += of.facts.started.empty() ? "\n" : ", " + onOneLine(of.facts.started) + "\n";
    }
    return text;
}

// Without a value it ends that of the group before.
std::string keyText(const std::string& key, const std::string& value) {
    return key + (value.empty() ? ":" : ": ") + value + '\n';
}

std::string keysText(const Report& report, const Group& group) {
    const std::string processor =
        group.runs.empty() ? "" : report.runs[group.runs.front()].facts.processor;
    return keyText("cpu", onOneLine(processor)) + keyText("group", onOneLine(group.label));
}

std::string lineOf(const Report& report, const Case& tried, const Sample& sample,
                   std::optional<double> mhz) {
    const Cost cost = costOf(tried, sample.clocksPerUnit);
    const long long calls = std::max(measurementOf(report, sample).calls, 1LL);
    std::string line = goName(tried) + ' ' + std::to_string(calls) + ' ' +
                       plainNumber(cost.clocks) + ' ' + cost.unit;
    if (tried.ratio && isFigure(*tried.ratio)) {
        line += ' ' + plainNumber(*tried.ratio) + " ratio";
    }
    if (const auto speed = bytesPerSecond(tried, sample.clocksPerUnit, mhz)) {
        line += ' ' + plainNumber(*speed / 1e6) + " MB/s";
    }
    return line + '\n';
}

// A ratio is the same in each run: benchstat need not doubt it.
std::string unitsText(const Report& report) {
    std::set<std::string> costs;
    for (const Group& group : report.groups) {
        for (const Case& tried : group.cases) {
            costs.insert(costOf(tried, 1).unit);
        }
    }
    std::string text;
    for (const std::string& unit : costs) {
        text += "Unit " + unit + " better=lower\n";
    }
    return text + "Unit ratio better=higher assume=exact\nUnit MB/s better=higher\n";
}

} // namespace

std::string benchstatText(const Report& report) {
    std::string text = unitsText(report);
    for (const Group& group : report.groups) {
        text += "\n" + factsText(report, group) + keysText(report, group);
        const std::optional<double> mhz = ticksMHz(report, group);
        for (const Case& tried : group.cases) {
            for (const Sample& sample : tried.samples) {
                if (isFigure(sample.clocksPerUnit)) {
                    text += lineOf(report, tried, sample, mhz);
                }
            }
        }
    }
    return text;
}

} // namespace report
