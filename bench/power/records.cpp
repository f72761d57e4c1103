#include "records.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "utest.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr double significance = 0.05; // of the U test, its users' habit
constexpr double visibly = 0.01;      // what two plain minima must differ by to be believed

// Throws what nlohmann throws, or std::runtime_error.
std::string subjectOf(const Json& one) {
    std::string subject = one.at("function").get<std::string>();
    for (const auto& [name, value] : one.at("parameters").items()) {
        subject += " " + name + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
    }
    return subject;
}

const char* nameOf(Called called) {
    return called == Called::slower ? "slower" : called == Called::faster ? "faster" : "neither";
}
Called calledOf(const std::string& name) {
    return name == "slower" ? Called::slower : name == "faster" ? Called::faster : Called::neither;
}

std::optional<double> optionalOf(const Json& value) {
    return value.is_null() ? std::nullopt : std::optional<double>(value.get<double>());
}
Json jsonOf(const std::optional<double>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Reading readingOf(const Json& line) {
    return {line.at("method"),
            line.at("subject"),
            line.at("added"),
            line.at("neighbour"),
            line.at("truth"),
            line.at("estimate"),
            optionalOf(line.at("low")),
            optionalOf(line.at("high")),
            calledOf(line.at("called")),
            line.at("seconds")};
}

std::vector<Json> linesOf(const std::string& text) {
    std::vector<Json> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(Json::parse(line));
    }
    return lines;
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

// With what is true of a subject whose call takes so many clocks.
Reading startReading(const std::string& method, const std::string& subject, const Known& known,
                     const RunFacts& run, double callClocks) {
    Reading reading;
    reading.method = method;
    reading.subject = subject;
    reading.added = run.added;
    reading.hasNeighbour = run.hasNeighbour;
    if (run.added > 0) {
        const Known::Level* const level = known.find(run.added);
        if (!level) {
            throw std::runtime_error("nothing is known of this level of " + subject);
        }
        reading.truth = 1 + level->chainClocks / callClocks;
    }
    return reading;
}

const Known& find(const KnownSubjects& known, const std::string& subject) {
    const auto found = known.find(subject);
    if (found == known.end()) {
        throw std::runtime_error("nothing is known of " + subject);
    }
    return found->second;
}

double middleBaseClocks(const Json& one) {
    std::vector<double> clocks;
    for (const Json& start : one.at("starts")) {
        for (const Json& turn : start.at("base").at("clocks")) {
            clocks.push_back(turn);
        }
    }
    return medianOf(clocks);
}

Called calledBy(bool isDifferent, double ratio) {
    return !isDifferent ? Called::neither : ratio > 1 ? Called::slower : Called::faster;
}

} // namespace

std::string lineOf(const Reading& reading) {
    return Json{{"method", reading.method},         {"subject", reading.subject},
                {"added", reading.added},           {"neighbour", reading.hasNeighbour},
                {"truth", reading.truth},           {"estimate", reading.estimate},
                {"low", jsonOf(reading.low)},       {"high", jsonOf(reading.high)},
                {"called", nameOf(reading.called)}, {"seconds", reading.seconds}}
        .dump();
}

std::string lineOf(const TurnShare& share) {
    return Json{
        {"neighbour", share.hasNeighbour}, {"in_turns", share.inTurns}, {"wall", share.wall}}
        .dump();
}

std::string lineOfRemark(const std::string& remark) {
    return Json{{"remark", remark}}.dump();
}

void addLine(const std::string& line, Results& results) {
    try {
        const Json json = Json::parse(line);
        if (json.contains("remark")) {
            results.remarks.push_back(json.at("remark"));
        } else if (json.contains("wall")) {
            results.shares.push_back({json.at("neighbour"), json.at("in_turns"), json.at("wall")});
        } else {
            results.readings.push_back(readingOf(json));
        }
    } catch (const Json::exception& error) {
        throw std::runtime_error("not a line of results: " + line + " (" + error.what() + ")");
    }
}

const Known::Level* Known::find(double added) const {
    for (const Level& level : levels) {
        if (level.added == added) {
            return &level;
        }
    }
    return nullptr;
}

KnownSubjects knownOf(const std::string& lines) {
    KnownSubjects known;
    for (const Json& line : linesOf(lines)) {
        Known& one = known[subjectOf(line)];
        one.function = line.at("function");
        one.clocks = line.at("clocks");
        for (const Json& level : line.at("levels")) {
            one.levels.push_back({level.at("added"), level.at("links"), level.at("chain_clocks"),
                                  level.at("measured"), level.at("expected")});
        }
    }
    return known;
}

std::vector<Reading> readingsOfCompare(const std::string& json, const KnownSubjects& known,
                                       const RunFacts& run) {
    std::vector<Reading> readings;
    const Json document = Json::parse(json);
    for (const Json& one : document.at("cases")) {
        const std::string subject = subjectOf(one);
        if (!one.at("measured").get<bool>()) {
            throw std::runtime_error("ntkcompare did not measure " + subject + ": " +
                                     one.at("failures").dump() + one.at("passed_over").dump());
        }
        Reading reading =
            startReading("ntkcompare", subject, find(known, subject), run, middleBaseClocks(one));
        const Json& effect = one.at("effect");
        reading.estimate = effect.at("ratio");
        reading.low = optionalOf(effect.at("low"));
        reading.high = optionalOf(effect.at("high"));
        reading.called = calledOf(one.at("verdict"));
        reading.seconds = one.at("seconds");
        readings.push_back(reading);
    }
    return readings;
}

TurnShare turnShareOf(const std::string& json, bool hasNeighbour) {
    const Json document = Json::parse(json);
    TurnShare share{hasNeighbour, 0, document.at("wall_seconds")};
    for (const Json& one : document.at("cases")) {
        share.inTurns += one.at("seconds").get<double>();
    }
    return share;
}

std::vector<Reading> readingsOfPlain(const std::string& base, const std::string& changed,
                                     const KnownSubjects& known, const RunFacts& run) {
    const std::vector<Json> both[] = {linesOf(base), linesOf(changed)};
    if (both[0].size() != both[1].size()) {
        throw std::runtime_error("the two sides measured different numbers of cases");
    }
    std::vector<Reading> readings;
    for (std::size_t i = 0; i < both[0].size(); ++i) {
        const Json& a = both[0][i];
        const Json& b = both[1][i];
        const std::string subject = subjectOf(a);
        const Known& one = find(known, subject);
        Reading tested = startReading("Google Benchmark, U test", subject, one, run, one.clocks);
        const std::vector<double> as = a.at("benchmark"), bs = b.at("benchmark");
        tested.estimate = medianOf(bs) / medianOf(as);
        tested.called = calledBy(uTestPValue(as, bs) < significance, tested.estimate);
        tested.seconds =
            a.at("benchmark_seconds").get<double>() + b.at("benchmark_seconds").get<double>();
        readings.push_back(tested);

        Reading minima = startReading("two minima, 1% apart", subject, one, run, one.clocks);
        minima.estimate = b.at("quickest").get<double>() / a.at("quickest").get<double>();
        minima.called = calledBy(minima.estimate > 1 + visibly || minima.estimate < 1 - visibly,
                                 minima.estimate);
        minima.seconds =
            a.at("quickest_seconds").get<double>() + b.at("quickest_seconds").get<double>();
        readings.push_back(minima);
    }
    return readings;
}

std::string remarkOnControl(const KnownSubjects& known) {
    std::vector<double> differences;
    for (const auto& [subject, one] : known) {
        for (const Known::Level& level : one.levels) {
            differences.push_back(std::abs(level.measured - level.expected));
        }
    }
    if (differences.empty()) {
        return "";
    }
    char text[200];
    std::snprintf(text, sizeof text,
                  "Control of the true values: chains switched on and off in one process differ "
                  "from them by %.3f%% in the median, by %.2f%% at most.",
                  100 * medianOf(differences),
                  100 * *std::max_element(differences.begin(), differences.end()));
    return text;
}
