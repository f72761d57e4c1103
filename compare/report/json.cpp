// The file for programs: all that was measured, so that any other arithmetic can be tried on it.
//
//   format, version     "ntkcompare", 1; the version rises when a reader of the old one would err
//   started, wall_seconds, complete, seed
//   settings            as given; times in seconds, precision and tolerance as ratios (0.01: 1%)
//   machine, cpu        processor, and the number of the one that both sides ran on
//   base, new           directory, keys, version and files of the library
//   passes, looks       pairs of processes, and after how many of them was looked
//   summary             counts of verdicts, half widths (null: no case has an interval), exit
//                       status; means of "all" and "functions"
//   without_effect      keys and settings of a side that had no effect, in the harness's words
//   unpaired            what one side alone announced
//   cases               one a line; each with
//     function, parameters, new_parameters (null: the same), outcome of each side
//     measured, verdict, stop, seconds, passed_over
//     effect            ratios new/base: estimate, low, high (null: no such end); p, p_adjusted;
//                       clocks per unit; disturbed_share
//     failures          side, what, detail
//     starts            pass, and its rounds as columns: base_first, base and new with clocks (of
//                       the quickest span, a call) and calls; disturbed names the turns with
//                       switches, migrations or page faults, rounds counted from 0
//
// A number that is none (an interval without an end) is null.
#include <cmath>

#include <nlohmann/json.hpp>

#include "findings.h"
#include "report.h"

namespace compare {

namespace {

using Json = nlohmann::ordered_json;

Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}
Json ratio(double logRatio) {
    return std::isfinite(logRatio) ? number(std::exp(logRatio)) : Json(nullptr);
}

Json valuesJson(const NamedValues& values) {
    Json json = Json::object();
    for (const NamedValue& named : values) {
        std::visit([&](const auto& value) { json[named.name] = value; }, named.value);
    }
    return json;
}

Json outcomeJson(const Outcome& outcome) {
    return {{"status", outcome.status},
            {"unit", outcome.unit},
            {"units_per_call", number(outcome.unitsPerCall)},
            {"values", valuesJson(outcome.values)}};
}

Json intervalJson(const Interval& interval) {
    return {{"ratio", ratio(interval.estimate)},
            {"low", ratio(interval.low)},
            {"high", ratio(interval.high)}};
}

Json summaryJson(const Summary& summary) {
    Json json = {{"cases", summary.cases}};
    json.update(intervalJson(summary.interval));
    return json;
}

Json effectJson(const Effect& effect) {
    Json json = intervalJson(effect.interval);
    json["p"] = number(effect.pValue);
    json["p_adjusted"] = number(effect.adjusted);
    json["base_clocks_per_unit"] = number(effect.clocksPerUnit.base);
    json["new_clocks_per_unit"] = number(effect.clocksPerUnit.changed);
    json["disturbed_share"] = number(effect.disturbedShare);
    return json;
}

// What disturbed a turn, if anything did.
void addDisturbance(Json& list, std::size_t round, Side side, const Turn& turn) {
    if (turn.isDisturbed() || turn.minorFaults) {
        list.push_back({{"round", round},
                        {"side", nameOf(side)},
                        {"involuntary_switches", turn.involuntarySwitches},
                        {"migrations", turn.migrations},
                        {"minor_faults", turn.minorFaults},
                        {"major_faults", turn.majorFaults}});
    }
}

Json turnsJson(const Start& start, Side side) {
    Json clocks = Json::array(), calls = Json::array();
    for (const Round& round : start.rounds) {
        clocks.push_back(number(round.turns[side].clocks));
        calls.push_back(round.turns[side].calls);
    }
    return {{"clocks", clocks}, {"calls", calls}};
}

Json startJson(const Start& start) {
    Json order = Json::array(), disturbed = Json::array();
    for (std::size_t i = 0; i < start.rounds.size(); ++i) {
        order.push_back(start.rounds[i].baseFirst);
        for (const Side side : {Side::base, Side::changed}) {
            addDisturbance(disturbed, i, side, start.rounds[i].turns[side]);
        }
    }
    return {{"pass", start.pass},
            {"base_first", order},
            {"base", turnsJson(start, Side::base)},
            {"new", turnsJson(start, Side::changed)},
            {"disturbed", disturbed}};
}

Json caseJson(const Finding& finding) {
    const Case& tried = *finding.tried;
    Json json = {{"function", tried.function}, {"parameters", valuesJson(tried.parameters.base)}};
    const Json changed = valuesJson(tried.parameters.changed);
    json["new_parameters"] = changed == json["parameters"] ? Json(nullptr) : changed;
    json["outcome"] = {{"base", outcomeJson(tried.outcome.base)},
                       {"new", outcomeJson(tried.outcome.changed)}};
    json["output_difference"] = finding.difference;
    json["measured"] = finding.isMeasured;
    json["verdict"] = verdictText(finding);
    json["beyond_tolerance"] = finding.isBeyondTolerance;
    json["stop"] = nameOf(tried.stop);
    json["seconds"] = number(tried.seconds);
    json["passed_over"] = tried.passedOver;
    json["effect"] = finding.isMeasured ? effectJson(*finding.effect) : Json(nullptr);
    json["failures"] = Json::array();
    for (const Failure& failure : tried.failures) {
        json["failures"].push_back(
            {{"side", nameOf(failure.side)}, {"what", failure.what}, {"detail", failure.detail}});
    }
    json["starts"] = Json::array();
    for (const Start& start : tried.starts) {
        json["starts"].push_back(startJson(start));
    }
    return json;
}

Json settingsJson(const Settings& settings) {
    return {{"precision", number(settings.precision)},
            {"tolerance", number(settings.tolerance)},
            {"time", number(settings.secondsPerCase)},
            {"budget", settings.budgetSeconds > 0 ? number(settings.budgetSeconds) : nullptr},
            {"patience", number(settings.patienceSeconds)},
            {"confidence", number(1 - settings.alpha)},
            {"cpu", settings.cpu < 0 ? Json(nullptr) : Json(settings.cpu)}};
}

Json sideJson(const SideFacts& side) {
    return {{"directory", side.directory},
            {"keys", side.keys},
            {"version", side.version},
            {"files", side.files}};
}

Json totalsJson(const Comparison& comparison, const Judgement& judgement, const Counts& counts) {
    Json functions = Json::object();
    for (const auto& [name, summary] : judgement.functions) {
        functions[name] = summaryJson(summary);
    }
    const bool isKnown = counts.withInterval > 0;
    return {{"measured", counts.measured},
            {"slower", counts.slower},
            {"faster", counts.faster},
            {"same", counts.same},
            {"open", counts.open},
            {"failed", counts.failed},
            {"passed_over", counts.passedOver},
            {"not_reached", counts.notReached},
            {"slower_beyond_tolerance", counts.beyondTolerance},
            {"failed_on_new_only", counts.failedOnNewOnly},
            {"outputs_differ", counts.differing},
            {"median_half_width", isKnown ? number(judgement.medianHalfWidth) : Json(nullptr)},
            {"largest_half_width", isKnown ? number(judgement.largestHalfWidth) : Json(nullptr)},
            {"exit_status", exitStatus(comparison, judgement)},
            {"all", judgement.all.cases ? summaryJson(judgement.all) : Json(nullptr)},
            {"functions", functions}};
}

Json headJson(const Comparison& comparison) {
    Json json = {{"format", "ntkcompare"},
                 {"version", 1},
                 {"started", comparison.started},
                 {"wall_seconds", number(comparison.wallSeconds)},
                 {"complete", comparison.isComplete},
                 {"seed", comparison.settings.seed},
                 {"settings", settingsJson(comparison.settings)},
                 {"machine", comparison.machine},
                 {"cpu", comparison.cpu < 0 ? Json(nullptr) : Json(comparison.cpu)},
                 {"base", sideJson(comparison.sides.base)},
                 {"new", sideJson(comparison.sides.changed)},
                 {"passes", comparison.passes},
                 {"looks", comparison.looks},
                 {"without_effect",
                  {{"base", comparison.remarks.base}, {"new", comparison.remarks.changed}}},
                 {"unpaired", Json::array()}};
    for (const Unpaired& alone : comparison.unpaired) {
        json["unpaired"].push_back({{"side", nameOf(alone.side)},
                                    {"function", alone.function},
                                    {"parameters", valuesJson(alone.parameters)}});
    }
    return json;
}

// Bytes that are no UTF-8, say of a file name, become replacement characters.
std::string compact(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

// A line for each member and for each case: to be searched with line tools, and not a line for
// each of a hundred thousand numbers.
std::string jsonText(const Comparison& comparison, const Judgement& judgement) {
    const std::vector<Finding> findings = findingsOf(comparison, judgement);
    Json head = headJson(comparison);
    head["summary"] = totalsJson(comparison, judgement, countsOf(findings));
    std::string text = "{\n";
    for (const auto& [name, value] : head.items()) {
        text += "\"" + name + "\": " + compact(value) + ",\n";
    }
    text += "\"cases\": [";
    for (std::size_t i = 0; i < findings.size(); ++i) {
        text += (i ? ",\n" : "\n") + compact(caseJson(findings[i]));
    }
    return text + "\n]\n}\n";
}

} // namespace compare
