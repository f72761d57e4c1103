#include "tally.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <tuple>

namespace {

double median(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

std::string text(const char* format, auto... values) {
    char line[160];
    std::snprintf(line, sizeof line, format, values...);
    return line;
}

double share(int part, int whole) {
    return whole > 0 ? static_cast<double>(part) / whole : 0;
}

const char* neighbourText(bool hasNeighbour) {
    return hasNeighbour ? "with the neighbour" : "quiet";
}

struct Demand {
    double added;
    double atLeastCalled; // slower
    const char* what;
};
constexpr Demand demands[] = {{0.005, 0.80, "0.5% added, 10 s a case: called slower, at least 80%"},
                              {0.01, 0.95, "1% added: called slower, at least 95%"},
                              {0.02, 0.99, "2% added: called slower, at least 99%"}};
constexpr double mostFalse = 0.01;
constexpr int neededCases = 500;
constexpr double neededCoverage = 0.95;
constexpr double mostSeconds = 1.01; // the turn at the end of the second is taken whole
constexpr double neededTurnShare = 0.9;
constexpr double longTimeLevel = 0.005; // whose cases are given more time

std::string of(int part, int whole) {
    return text("%d of %d (%.1f%%)", part, whole, 100 * share(part, whole));
}

void judgeGroup(const Group& group, const Tally& tally, std::vector<Target>& targets) {
    const std::string where = std::string(", ") + neighbourText(group.hasNeighbour);
    if (group.added == 0) {
        const int called = tally.slower + tally.faster;
        targets.push_back(
            {"nothing added" + where +
                 text(": called slower or faster, at most 1%%, in at least %d", neededCases),
             of(called, tally.cases),
             share(called, tally.cases) <= mostFalse && tally.cases >= neededCases});
    }
    for (const Demand& demand : demands) {
        if (group.added == demand.added) {
            targets.push_back({demand.what + where, of(tally.slower, tally.cases),
                               share(tally.slower, tally.cases) >= demand.atLeastCalled});
        }
    }
    targets.push_back({text("%.1f%% added", 100 * group.added) + where +
                           ": the interval holds the true value, at least 95%",
                       of(tally.covered, tally.withInterval),
                       share(tally.covered, tally.withInterval) >= neededCoverage});
    if (group.added != longTimeLevel) {
        targets.push_back({text("%.1f%% added", 100 * group.added) + where +
                               ": measured time a case, at most 1 s in the median",
                           text("%.2f s", tally.medianSeconds),
                           tally.medianSeconds <= mostSeconds});
    }
}

} // namespace

bool isOf(const Group& group, const Reading& reading) {
    return reading.method == group.method && reading.added == group.added &&
           reading.hasNeighbour == group.hasNeighbour;
}

std::vector<Group> groupsOf(const std::vector<Reading>& readings) {
    std::vector<std::string> methods;
    std::vector<Group> groups;
    for (const Reading& reading : readings) {
        if (std::find(methods.begin(), methods.end(), reading.method) == methods.end()) {
            methods.push_back(reading.method);
        }
        const bool isKnown = std::any_of(groups.begin(), groups.end(),
                                         [&](const Group& group) { return isOf(group, reading); });
        if (!isKnown) {
            groups.push_back({reading.method, reading.added, reading.hasNeighbour});
        }
    }
    std::stable_sort(groups.begin(), groups.end(), [&](const Group& a, const Group& b) {
        const auto place = [&](const Group& group) {
            return std::find(methods.begin(), methods.end(), group.method);
        };
        return std::make_tuple(place(a), a.added, a.hasNeighbour) <
               std::make_tuple(place(b), b.added, b.hasNeighbour);
    });
    return groups;
}

Tally tallyOf(const std::vector<Reading>& readings, const Group& group) {
    Tally tally;
    std::vector<double> halfWidths, seconds, errors, estimates;
    for (const Reading& reading : readings) {
        if (!isOf(group, reading)) {
            continue;
        }
        ++tally.cases;
        tally.slower += reading.called == Called::slower;
        tally.faster += reading.called == Called::faster;
        if (reading.hasInterval()) {
            ++tally.withInterval;
            tally.covered += *reading.low <= reading.truth && reading.truth <= *reading.high;
            halfWidths.push_back((*reading.high - *reading.low) / 2);
        }
        seconds.push_back(reading.seconds);
        errors.push_back(std::abs(reading.estimate / reading.truth - 1));
        estimates.push_back(reading.estimate);
    }
    tally.medianHalfWidth = median(halfWidths);
    tally.medianSeconds = median(seconds);
    tally.medianError = median(errors);
    if (tally.cases > 0) {
        tally.largestError = *std::max_element(errors.begin(), errors.end());
        tally.lowestEstimate = *std::min_element(estimates.begin(), estimates.end());
        tally.highestEstimate = *std::max_element(estimates.begin(), estimates.end());
    }
    return tally;
}

std::vector<Target> targetsOf(const Results& results) {
    std::vector<Target> targets;
    for (const Group& group : groupsOf(results.readings)) {
        if (group.method == "ntkcompare") {
            judgeGroup(group, tallyOf(results.readings, group), targets);
        }
    }
    for (const TurnShare& run : results.shares) {
        const double inside = run.wall > 0 ? run.inTurns / run.wall : 0;
        targets.push_back({std::string("a run of long cases, ") + neighbourText(run.hasNeighbour) +
                               ": wall time inside turns, at least 90%",
                           text("%.1f%% of %.1f s", 100 * inside, run.wall),
                           inside >= neededTurnShare});
    }
    return targets;
}
