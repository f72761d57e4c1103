#include "listing.h"

#include <map>

#include <nlohmann/json.hpp>

namespace compare {

namespace {

using Name = std::pair<std::string, std::string>; // function, and what it is paired by within it
using Counts = std::map<std::string, int>;        // cases of each function

Counts countsOf(const std::vector<Announced>& announced) {
    Counts counts;
    for (const Announced& one : announced) {
        ++counts[one.function];
    }
    return counts;
}

std::string textOf(const NamedValues& parameters) {
    std::string text;
    for (const NamedValue& parameter : parameters) {
        text += parameter.name + "=";
        std::visit([&](const auto& value) { text += nlohmann::json(value).dump() + " "; },
                   parameter.value);
    }
    return text;
}

// In the order of the announcements. A function with as many cases on both sides is paired by the
// places of its cases: their parameters may differ on purpose. Where one side has other cases,
// those with equal parameters are.
std::vector<Name> namesOf(const std::vector<Announced>& announced, const Counts& others) {
    std::vector<Name> names;
    const Counts all = countsOf(announced);
    Counts places;
    for (const Announced& one : announced) {
        const auto other = others.find(one.function);
        const bool isByPlace = other != others.end() && other->second == all.at(one.function);
        const int place = places[one.function]++;
        names.emplace_back(one.function,
                           isByPlace ? std::to_string(place) : textOf(one.parameters));
    }
    return names;
}

std::vector<Announced> announcements(Worker& worker) {
    std::vector<Announced> all;
    while (const std::optional<Announced> one = worker.announcement()) {
        all.push_back(*one);
        worker.skip();
    }
    return all;
}

std::string keysOf(const Plan& plan, Side side) {
    std::string text;
    for (const std::string& key : plan.keys[side]) {
        text += " " + key;
    }
    return text.empty() ? " (none)" : text;
}

const char* nameOf(Side side) {
    return side == Side::base ? "base" : "new";
}

CannotMeasure cannotStart(const Plan& plan, const Failure& failure) {
    const std::string& directory = plan.directories[failure.side];
    const bool isOwn = isOwnBuild(directory);
    const std::string build = isOwn ? "the own build" : "the build in " + directory;
    std::string text = std::string("the ") + nameOf(failure.side) + " side (" + build +
                       ") cannot be measured, its worker was lost: " + failure.what;
    if (!failure.detail.empty()) {
        text += ":\n" + failure.detail;
    }
    if (!isOwn) {
        text += "\ncheck that the folder holds whole libraries for this system";
    }
    return CannotMeasure(text);
}

CannotMeasure nothingCommon(const Plan& plan, const Both<std::vector<Announced>>& announced,
                            const Both<std::vector<std::string>>& remarks) {
    std::string text = "no case is selected on both sides: choose other keys";
    for (const Side side : sides) {
        text += std::string("\n") + nameOf(side) + ": " + std::to_string(announced[side].size()) +
                " cases with the keys" + keysOf(plan, side);
    }
    for (const Side side : sides) { // once when both say the same
        if (side == Side::base || remarks.base != remarks.changed) {
            for (const std::string& remark : remarks[side]) {
                text += "\n" + remark;
            }
        }
    }
    return CannotMeasure(text);
}

} // namespace

Listing pairUp(const Both<std::vector<Announced>>& announced) {
    Listing listing;
    const std::vector<Name> changedNames = namesOf(announced.changed, countsOf(announced.base));
    std::map<Name, int> changedPlaces;
    for (const Name& name : changedNames) {
        changedPlaces.emplace(name, changedPlaces.size());
    }

    int next = 0; // place of the changed side that is not passed yet
    const auto leaveUnpaired = [&](Side side, const Announced& one) {
        listing.unpaired.push_back({side, one.function, one.parameters});
    };
    const auto leaveUnpairedUntil = [&](int place) {
        for (; next < place; ++next) {
            leaveUnpaired(Side::changed, announced.changed[static_cast<size_t>(next)]);
        }
    };
    int place = 0; // of the base side
    for (const Name& name : namesOf(announced.base, countsOf(announced.changed))) {
        const Announced& base = announced.base[static_cast<size_t>(place)];
        const auto found = changedPlaces.find(name);
        if (found != changedPlaces.end() && found->second >= next) {
            leaveUnpairedUntil(found->second);
            const Announced& changed = announced.changed[static_cast<size_t>(next)];
            Case paired;
            paired.function = base.function;
            paired.parameters = {base.parameters, changed.parameters};
            listing.cases.push_back(paired);
            listing.places.push_back({place, next++});
        } else {
            leaveUnpaired(Side::base, base);
        }
        ++place;
    }
    leaveUnpairedUntil(static_cast<int>(announced.changed.size()));
    return listing;
}

Listing listCases(const Plan& plan, int cpu) {
    Pair pair(plan, cpu);
    Both<Hello> hello;
    Both<std::vector<Announced>> announced;
    Both<std::vector<std::string>> remarks;
    try {
        for (const Side side : sides) {
            hello[side] = pair[side].greet();
            announced[side] = announcements(pair[side]);
            remarks[side] = pair[side].remarks();
        }
    } catch (const WorkerLost& lost) {
        throw cannotStart(plan, lost.failure);
    } catch (const WorkerLeft&) {
        throw CannotMeasure("nothing was measured: interrupted before the cases were known");
    }
    pair.quit();
    Listing listing = pairUp(announced);
    if (listing.cases.empty()) {
        throw nothingCommon(plan, announced, remarks);
    }
    listing.hello = hello;
    listing.remarks = remarks;
    return listing;
}

} // namespace compare
