#include "groups.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "cases.h"
#include "columns.h"
#include "keys.h"
#include "numbers.h"

namespace report {

namespace {

// What tells runs of different groups apart; of a group's label those that differ.
struct Traits {
    std::string machine, build, version, date, place, keys, kind, columns;
    bool operator==(const Traits&) const = default;
};

// Computers of one kind and processor are one machine: each of them has measured a part.
std::string machineOf(const Facts& facts) {
    const std::string count = std::to_string(facts.processors);
    return common::joined({facts.kind.empty() ? facts.computer : facts.kind, facts.processor,
                           facts.processors > 0 ? "x" + count : ""},
                          " ");
}

Traits traitsOf(const Run& run, const std::set<std::string>& parameters) {
    Traits traits;
    traits.machine = machineOf(run.facts);
    traits.build = run.facts.build;
    std::vector<std::string> versions, dates, places;
    for (const LibraryFacts& library : run.facts.libraries) {
        versions.push_back(common::joined({library.name, library.version}, " "));
        dates.push_back(library.date);
        places.push_back(common::joined(library.files, " "));
    }
    traits.version = common::joined(versions, ", ");
    traits.date = common::joined(dates, ", ");
    traits.place = common::joined(places, " ");
    traits.keys = common::keysText(decisiveKeys(run, parameters));
    traits.kind = run.isExact ? "records" : "table";
    traits.columns = common::joined(run.columns, ", ");
    return traits;
}

bool differ(const std::vector<Traits>& all, std::string Traits::*which) {
    return std::any_of(all.begin(), all.end(),
                       [&](const Traits& traits) { return traits.*which != all.front().*which; });
}

// "/usr/lib/libntkdc.so.12 ..." is told by its folder.
std::string folderOf(const std::string& place) {
    const std::filesystem::path first = place.substr(0, place.find(' '));
    return first.lexically_normal().parent_path().string();
}

std::string labelOf(const Traits& traits, const std::vector<Traits>& all) {
    const auto ifDifferent = [&](std::string Traits::*which, const std::string& text) {
        return differ(all, which) ? text : "";
    };
    // The user's name of a build says more than where it lies.
    const std::string place = traits.build.empty() ? folderOf(traits.place) : "";
    const std::string build = common::joined(
        {ifDifferent(&Traits::build, traits.build), ifDifferent(&Traits::version, traits.version),
         ifDifferent(&Traits::date, traits.date), ifDifferent(&Traits::place, place)},
        ", ");
    return common::joined(
        {build,
         ifDifferent(&Traits::keys, traits.keys.empty() ? "(plain)" : "(" + traits.keys + ")"),
         ifDifferent(&Traits::kind, traits.kind),
         ifDifferent(&Traits::columns, "by " + traits.columns),
         ifDifferent(&Traits::machine, "on " + traits.machine)},
        " ");
}

// Labels that are equal all the same get a number.
void setLabels(const std::vector<Traits>& all, std::vector<Group>& groups) {
    std::set<std::string> used;
    for (std::size_t i = 0; i < groups.size() && groups.size() > 1; ++i) {
        const std::string label = labelOf(all[i], all);
        groups[i].label = label;
        for (int number = 2; !used.insert(groups[i].label).second; ++number) {
            groups[i].label = common::joined({label, std::to_string(number)}, " #");
        }
    }
}

// Tables of the same kind of run whose rows cannot be matched.
std::vector<std::string> columnProblems(const std::vector<Traits>& all,
                                        const std::vector<Group>& groups,
                                        const std::vector<Run>& runs) {
    std::vector<std::string> problems;
    for (std::size_t i = 0; i < all.size(); ++i) {
        Traits plain = all[i];
        for (std::size_t other = 0; other < i; ++other) {
            plain.columns = all[other].columns;
            if (plain == all[other] && all[i].columns != all[other].columns) {
                problems.push_back(runs[static_cast<std::size_t>(groups[i].runs.front())].file +
                                   " has the columns " + all[i].columns + ", " +
                                   runs[static_cast<std::size_t>(groups[other].runs.front())].file +
                                   " has " + all[other].columns + "; they are shown apart");
                break;
            }
        }
    }
    return problems;
}

// A history goes on over builds, and from tables to records.
void setSeries(const std::vector<Traits>& all, std::vector<Group>& groups) {
    const auto isOfSeries = [](const Traits& one, const Traits& other) {
        return one.machine == other.machine && one.keys == other.keys;
    };
    int count = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        std::size_t first = 0;
        while (!isOfSeries(all[i], all[first])) {
            ++first;
        }
        groups[i].series = first == i ? count++ : groups[first].series;
    }
}

} // namespace

Groups groupsOf(const std::vector<Run>& runs) {
    Groups found;
    std::vector<Traits> all;
    const std::set<std::string> parameters = caseParameters(runs);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const Traits traits = traitsOf(runs[i], parameters);
        const auto place = std::find(all.begin(), all.end(), traits) - all.begin();
        if (place == static_cast<std::ptrdiff_t>(all.size())) {
            all.push_back(traits);
            found.groups.emplace_back();
        }
        found.groups[static_cast<std::size_t>(place)].runs.push_back(static_cast<int>(i));
    }
    for (Group& group : found.groups) {
        group.cases = casesOf(runs, group.runs);
    }
    setLabels(all, found.groups);
    setSeries(all, found.groups);
    found.problems = columnProblems(all, found.groups, runs);
    return found;
}

} // namespace report
