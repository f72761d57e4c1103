#include "cases.h"

#include <algorithm>
#include <unordered_map>

#include "functions.h"
#include "statistics.h"

namespace report {

namespace {

// In order of severity.
constexpr const char* results[] = {"UNDEFINED", "OK",       "ACCURWRN",  "BADSTSWRN",
                                   "DATAWRN",   "FUNCWRN",  "WRN",       "ACCURFAIL",
                                   "DATAFAIL",  "FUNCFAIL", "EXCPTFAIL", "FAIL"};
constexpr auto firstFailure = 7;

long severityOf(const std::string& result) {
    return std::find(std::begin(results), std::end(results), result) - std::begin(results);
}

// The same for the same combination, in whatever order its parameters come.
std::string identityOf(const Measurement& row) {
    std::vector<std::string> words;
    words.reserve(row.parameters.size());
    for (const auto& [name, value] : row.parameters) {
        words.push_back(name + "=" + common::valueText(value));
    }
    std::sort(words.begin(), words.end());
    std::string identity = row.function + "\n" + row.types;
    for (const std::string& word : words) {
        identity += "\n" + word;
    }
    return identity;
}

std::optional<double> numberIn(const NamedValues& values, const char* name) {
    const common::Value* const value = common::findValue(values, name);
    if (!value || std::holds_alternative<std::string>(*value)) {
        return std::nullopt;
    }
    const auto* whole = std::get_if<long long>(value);
    return whole ? static_cast<double>(*whole) : std::get<double>(*value);
}

// What was really measured; else what was asked for.
std::optional<double> lengthOf(const Measurement& row) {
    for (const auto& length : {numberIn(row.values, "Length"), numberIn(row.parameters, "Length"),
                               numberIn(row.parameters, "CodeLength")}) {
        if (length) {
            return length;
        }
    }
    return std::nullopt;
}

std::string fileOf(const Measurement& row) {
    const common::Value* const value = common::findValue(row.parameters, "CodeFile");
    const std::string path = value ? common::valueText(*value) : "";
    return path.substr(path.rfind('/') + 1);
}

Case caseOf(const Measurement& row) {
    Case one;
    one.function = row.function;
    one.types = row.types;
    const FunctionFacts facts = factsOf(row.function);
    one.family = facts.family;
    one.kind = facts.kind;
    one.parameters = row.parameters;
    one.file = fileOf(row);
    one.result = "UNDEFINED";
    return one;
}

void add(const Measurement& row, const Sample& where, Case& one) {
    if (one.unit.empty()) {
        one.unit = row.unit;
    }
    if (!one.length) {
        one.length = lengthOf(row);
    }
    if (!one.ratio) {
        one.ratio = ratioOfCall(one, numberIn(row.values, "Ratio"));
    }
    const bool isWorse = worseResult(one.result, row.result) != one.result;
    if (isWorse || (one.samples.empty() && row.clocksPerUnit && row.result == one.result)) {
        one.result = row.result;
        one.comment = row.comment;
    }
    if (row.clocksPerUnit && !isFailure(row.result)) {
        one.samples.push_back({where.run, where.measurement, *row.clocksPerUnit});
    }
}

void summarize(const std::vector<Run>& runs, Case& one) {
    one.bytesPerUnit = bytesPerUnit(one);
    if (one.samples.empty()) {
        return;
    }
    std::vector<double> clocks;
    clocks.reserve(one.samples.size());
    for (const Sample& sample : one.samples) {
        clocks.push_back(sample.clocksPerUnit);
    }
    std::sort(clocks.begin(), clocks.end());
    one.smallest = clocks.front();
    one.median = quantile(clocks, 0.5);
    one.largest = clocks.back();
    if (clocks.size() == 1) {
        const Sample& only = one.samples.front();
        one.spread = runs[static_cast<std::size_t>(only.run)]
                         .measurements[static_cast<std::size_t>(only.measurement)]
                         .spread;
    } else if (one.median > 0) {
        one.spread = (quantile(clocks, 0.75) - quantile(clocks, 0.25)) / one.median;
    }
}

} // namespace

const std::string& worseResult(const std::string& one, const std::string& other) {
    return severityOf(other) > severityOf(one) ? other : one;
}

bool isFailure(const std::string& result) {
    return severityOf(result) >= firstFailure;
}

std::vector<Case> casesOf(const std::vector<Run>& runs, const std::vector<int>& indices) {
    std::vector<Case> cases;
    std::unordered_map<std::string, std::size_t> places;
    for (const int index : indices) {
        const std::vector<Measurement>& rows = runs[static_cast<std::size_t>(index)].measurements;
        if (cases.empty()) { // the other runs mostly have the same ones
            cases.reserve(rows.size());
            places.reserve(rows.size());
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto [place, isNew] = places.try_emplace(identityOf(rows[i]), cases.size());
            if (isNew) {
                cases.push_back(caseOf(rows[i]));
            }
            add(rows[i], {index, static_cast<int>(i), 0}, cases[place->second]);
        }
    }
    for (Case& one : cases) {
        summarize(runs, one);
    }
    return cases;
}

} // namespace report
