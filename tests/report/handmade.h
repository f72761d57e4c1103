// Reports with known figures.
#pragma once

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "model.h"

namespace report {

// From 4 clocks a unit.
inline ComparedCase comparedCase(const std::string& function, const std::string& parameters,
                                 const std::string& verdict, double ratio, double half) {
    ComparedCase made;
    made.function = function;
    made.parameters = parameters;
    made.verdict = verdict;
    made.ratio = ratio;
    made.low = ratio - half;
    made.high = ratio + half;
    made.baseClocksPerUnit = 4;
    made.newClocksPerUnit = 4 * ratio;
    return made;
}

inline ComparedCase failedCase(const std::string& function, const std::string& failure) {
    ComparedCase made;
    made.function = function;
    made.verdict = "failed";
    made.failure = failure;
    return made;
}

// One group on one machine until more are added; cases go into the last one.
struct Handmade {
    Report report;

    Handmade() { addGroup(""); }

    Group& addGroup(const std::string& label) {
        report.groups.emplace_back().label = label;
        return group();
    }
    Group& group() { return report.groups.back(); }

    // Of the group's runs, which grow as cases need them.
    Run& run(std::size_t number = 0) {
        while (group().runs.size() <= number) {
            group().runs.push_back(static_cast<int>(report.runs.size()));
            Run& added = report.runs.emplace_back();
            added.file = "run" + std::to_string(number + 1) + ".jsonl";
            added.isExact = true;
            added.facts.processor = "A processor";
            added.facts.processors = 2;
            added.facts.ticksMHz = 2000;
            added.facts.computer = "desk";
            added.facts.started = "2026-11-22T01:02:03+00:00";
            added.facts.libraries = {{"ntkDC", "12.0.0", "Nov 22 2026", {"/lib/libntkdc.so.12"}}};
        }
        return report.runs[static_cast<std::size_t>(group().runs[number])];
    }

    // Measured in as many runs, each call of 1000 units. A unit is a byte.
    Case& add(const std::string& function, NamedValues parameters,
              const std::vector<double>& clocks) {
        Case tried;
        tried.function = function;
        tried.parameters = std::move(parameters);
        tried.unit = "e";
        tried.bytesPerUnit = 1;
        for (std::size_t i = 0; i < clocks.size(); ++i) {
            addSample(tried, i, clocks[i]);
        }
        std::vector<double> sorted;
        std::copy_if(clocks.begin(), clocks.end(), std::back_inserter(sorted),
                     [](double number) { return std::isfinite(number); });
        std::sort(sorted.begin(), sorted.end());
        if (!sorted.empty()) {
            tried.smallest = sorted.front();
            tried.median = sorted[sorted.size() / 2];
            tried.largest = sorted.back();
        }
        return group().cases.emplace_back(std::move(tried));
    }

    Case& addFailed(const std::string& function, NamedValues parameters, const std::string& result,
                    const std::string& comment) {
        run();
        Case& failed = add(function, std::move(parameters), {});
        failed.result = result;
        failed.comment = comment;
        return failed;
    }

private:
    void addSample(Case& tried, std::size_t number, double clocks) {
        Run& in = run(number);
        Measurement measurement;
        measurement.function = tried.function;
        measurement.parameters = tried.parameters;
        measurement.clocksPerUnit = clocks;
        measurement.unit = tried.unit;
        measurement.unitsPerCall = 1000;
        measurement.calls = 70;
        in.measurements.push_back(measurement);
        tried.samples.push_back(
            {group().runs[number], static_cast<int>(in.measurements.size()) - 1, clocks});
    }
};

} // namespace report
