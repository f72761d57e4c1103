#include "repeats.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <set>

namespace report {

namespace {

// "of Sun Nov 22 03:44:26 2026".
std::string nameOf(const Run& run) {
    return run.facts.started.empty() ? "" : " of " + run.facts.started;
}

bool areSameFigures(const Run& one, const Run& other) {
    return std::equal(one.measurements.begin(), one.measurements.end(), other.measurements.begin(),
                      other.measurements.end(), [](const Measurement& a, const Measurement& b) {
                          return a.function == b.function && a.clocksPerUnit == b.clocksPerUnit &&
                                 a.result == b.result && a.spread == b.spread;
                      });
}

bool isSameMachine(const Facts& one, const Facts& other) {
    return one.processor == other.processor && one.computer == other.computer;
}

bool isRepeated(const Run& run, const Run& earlier) {
    return run.isExact == earlier.isExact && isSameMachine(run.facts, earlier.facts) &&
           run.facts.kind == earlier.facts.kind && run.facts.build == earlier.facts.build &&
           areSameFigures(run, earlier);
}

bool isRepeated(const Comparison& one, const Comparison& earlier) {
    return one.started == earlier.started && one.machine == earlier.machine &&
           one.base == earlier.base && one.changed == earlier.changed &&
           std::equal(one.cases.begin(), one.cases.end(), earlier.cases.begin(),
                      earlier.cases.end(), [](const ComparedCase& a, const ComparedCase& b) {
                          return a.function == b.function && a.ratio == b.ratio;
                      });
}

// The clock on the wall as a run began: tables have "Sun Nov 22 03:44:26 2026", records
// "2026-11-22T03:44:26+00:00". Seconds since some day.
std::optional<long long> wallClock(const std::string& started) {
    std::tm time = {};
    for (const char* form : {"%Y-%m-%dT%H:%M:%S", "%a %b %d %H:%M:%S %Y"}) {
        if (strptime(started.c_str(), form, &time)) {
            return timegm(&time);
        }
    }
    return std::nullopt;
}

std::set<std::string> functionsOf(const Run& run) {
    std::set<std::string> functions;
    for (const Measurement& row : run.measurements) {
        functions.insert(row.function);
    }
    return functions;
}

// The two writers may look at the clock one after the other.
bool isTableOf(const Run& table, const Run& records) {
    constexpr long long mostSeconds = 2;
    const auto one = wallClock(table.facts.started);
    const auto other = wallClock(records.facts.started);
    if (table.isExact || !records.isExact || !one || !other ||
        std::llabs(*one - *other) > mostSeconds || !isSameMachine(table.facts, records.facts)) {
        return false;
    }
    const std::set<std::string> known = functionsOf(records), its = functionsOf(table);
    return std::includes(known.begin(), known.end(), its.begin(), its.end());
}

// Of runs at these places.
void remove(std::vector<Run>& runs, const std::set<std::size_t>& places) {
    std::vector<Run> left;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (!places.contains(i)) {
            left.push_back(std::move(runs[i]));
        }
    }
    runs = std::move(left);
}

} // namespace

std::vector<std::string> leaveOutRepeats(std::vector<Run>& runs) {
    std::map<std::string, std::vector<std::size_t>> kept; // by their start
    std::vector<std::string> sentences;
    std::set<std::size_t> repeated;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        std::vector<std::size_t>& candidates = kept[runs[i].facts.started];
        const auto earlier =
            std::find_if(candidates.begin(), candidates.end(),
                         [&](std::size_t other) { return isRepeated(runs[i], runs[other]); });
        if (earlier == candidates.end()) {
            candidates.push_back(i);
            continue;
        }
        repeated.insert(i);
        sentences.push_back("the run" + nameOf(runs[i]) + " in " + runs[i].file + " is also in " +
                            runs[*earlier].file + "; it counts once");
    }
    remove(runs, repeated);
    return sentences;
}

std::vector<std::string> leaveOutRepeats(std::vector<Comparison>& comparisons) {
    std::vector<Comparison> left;
    std::vector<std::string> sentences;
    for (Comparison& comparison : comparisons) {
        const auto earlier = std::find_if(left.begin(), left.end(), [&](const Comparison& other) {
            return isRepeated(comparison, other);
        });
        if (earlier == left.end()) {
            left.push_back(std::move(comparison));
            continue;
        }
        sentences.push_back("the comparison of " + comparison.started + " in " + comparison.file +
                            " is also in " + earlier->file + "; it counts once");
    }
    comparisons = std::move(left);
    return sentences;
}

std::vector<std::string> leaveOutTablesOfRecords(std::vector<Run>& runs) {
    std::vector<std::string> sentences;
    std::set<std::size_t> told;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const auto records = std::find_if(runs.begin(), runs.end(), [&](const Run& candidate) {
            return isTableOf(runs[i], candidate);
        });
        if (records != runs.end()) {
            told.insert(i);
            sentences.push_back("the table" + nameOf(runs[i]) + " in " + runs[i].file +
                                " is left out: " + records->file +
                                " has the records of the same run");
        }
    }
    remove(runs, told);
    return sentences;
}

} // namespace report
