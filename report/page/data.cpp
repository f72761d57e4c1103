#include "data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>

#include <nlohmann/json.hpp>

#include "keys.h"

namespace report {

namespace {

using Json = nlohmann::ordered_json;

Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}
Json number(const std::optional<double>& value) {
    return value ? number(*value) : Json(nullptr);
}

Json librariesJson(const Facts& facts) {
    Json list = Json::array();
    for (const LibraryFacts& library : facts.libraries) {
        list.push_back({{"name", library.name},
                        {"version", library.version},
                        {"date", library.date},
                        {"files", library.files}});
    }
    return list;
}

Json corpusJson(const Facts& facts) {
    Json list = Json::array();
    for (const CorpusFile& file : facts.corpus) {
        list.push_back({{"name", file.name}, {"bytes", file.bytes}, {"checksum", file.checksum}});
    }
    return list;
}

Json runJson(const Run& run, const std::set<std::string>& parameters) {
    const Facts& facts = run.facts;
    return {{"file", run.file},
            {"started", facts.started},
            {"exact", run.isExact},
            {"complete", run.isComplete},
            {"processor", facts.processor},
            {"processors", facts.processors},
            {"ticksMHz", number(facts.ticksMHz)},
            {"system", facts.system},
            {"computer", facts.computer},
            {"libraries", librariesJson(facts)},
            {"keys", facts.keys},
            {"decisiveKeys", decisiveKeys(run, parameters)},
            {"corpus", corpusJson(facts)},
            {"measurements", run.measurements.size()}};
}

const char* kindName(Case::Kind kind) {
    switch (kind) {
    case Case::Kind::encoder: return "encoder";
    case Case::Kind::decoder: return "decoder";
    case Case::Kind::other: break;
    }
    return "other";
}

Json samplesJson(const Case& measured) {
    Json list = Json::array();
    for (const Sample& sample : measured.samples) {
        list.push_back({sample.run, number(sample.clocksPerUnit)});
    }
    return list;
}

const Json caseColumns = {"group",   "function",     "types",   "family",   "kind",
                          "variant", "file",         "length",  "ratio",    "plainRatio",
                          "unit",    "bytesPerUnit", "samples", "smallest", "median",
                          "largest", "spread",       "result",  "comment"};

Json caseRow(std::size_t group, const Case& measured) {
    const bool hasClocks = !measured.samples.empty();
    const auto clocks = [&](double value) { return hasClocks ? number(value) : Json(nullptr); };
    return Json::array(
        {group, measured.function, measured.types, measured.family, kindName(measured.kind),
         variantText(measured), measured.file, number(measured.length), number(measured.ratio),
         number(plainRatio(measured)), measured.unit, number(measured.bytesPerUnit),
         samplesJson(measured), clocks(measured.smallest), clocks(measured.median),
         clocks(measured.largest), number(measured.spread), measured.result, measured.comment});
}

Json groupsJson(const Report& report) {
    Json list = Json::array();
    for (const Group& group : report.groups) {
        list.push_back({{"label", group.label}, {"runs", group.runs}});
    }
    return list;
}

Json casesJson(const Report& report) {
    Json rows = Json::array();
    for (std::size_t group = 0; group < report.groups.size(); ++group) {
        for (const Case& measured : report.groups[group].cases) {
            rows.push_back(caseRow(group, measured));
        }
    }
    return {{"columns", caseColumns}, {"rows", std::move(rows)}};
}

Json comparedJson(const Comparison& comparison) {
    Json rows = Json::array();
    for (const ComparedCase& compared : comparison.cases) {
        rows.push_back({compared.function, compared.parameters, compared.verdict,
                        compared.isBeyondTolerance, number(compared.ratio), number(compared.low),
                        number(compared.high), number(compared.baseClocksPerUnit),
                        number(compared.newClocksPerUnit), compared.failure});
    }
    return {{"columns",
             {"function", "parameters", "verdict", "isBeyondTolerance", "ratio", "low", "high",
              "base", "changed", "failure"}},
            {"rows", std::move(rows)}};
}

Json comparisonsJson(const Report& report) {
    Json list = Json::array();
    for (const Comparison& comparison : report.comparisons) {
        list.push_back({{"file", comparison.file},
                        {"started", comparison.started},
                        {"machine", comparison.machine},
                        {"base", comparison.base},
                        {"changed", comparison.changed},
                        {"tolerance", number(comparison.tolerance)},
                        {"confidence", number(comparison.confidence)},
                        {"medianHalfWidth", number(comparison.medianHalfWidth)},
                        {"complete", comparison.isComplete},
                        {"cases", comparedJson(comparison)}});
    }
    return list;
}

void appendWord(std::string& words, const std::string& word) {
    if (!words.empty()) {
        words += ' ';
    }
    words += word;
}

Json failureJson(std::size_t run, const std::string& function, const std::string& what,
                 const std::string& result, const std::string& message) {
    return {{"run", run},
            {"function", function},
            {"what", what},
            {"result", result},
            {"message", message}};
}

using Failed = std::vector<const Measurement*>;

Failed failedIn(const Run& run, const std::string& function) {
    Failed failed;
    for (const Measurement& measured : run.measurements) {
        if (measured.result != "OK" && measured.function == function) {
            failed.push_back(&measured);
        }
    }
    return failed;
}

// Of many failed measurements of a test the first: the others mostly are like them.
std::string whatFailed(const TestResult& test, const Failed& failed) {
    static constexpr std::size_t told = 3;
    std::string what = test.test;
    for (std::size_t i = 0; i < std::min(told, failed.size()); ++i) {
        what += '\n' + common::parametersText(failed[i]->parameters);
    }
    return failed.size() > told ? what + "\nand " + std::to_string(failed.size() - told) + " more"
                                : what;
}

// Tests say why in the log's words, and what they had to say though all went well. A table has
// lines only, and knows of no tests.
void addFailures(Json& list, const Run& run, std::size_t index) {
    std::set<std::string> tested;
    for (const TestResult& test : run.tests) {
        if (test.result != "OK" || !test.message.empty()) {
            list.push_back(failureJson(index, test.function,
                                       whatFailed(test, failedIn(run, test.function)), test.result,
                                       test.message));
            tested.insert(test.function);
        }
    }
    for (const Measurement& measured : run.measurements) {
        if (measured.result != "OK" && !tested.contains(measured.function)) {
            list.push_back(failureJson(index, measured.function,
                                       common::parametersText(measured.parameters), measured.result,
                                       measured.comment));
        }
    }
}

Json failuresJson(const Report& report) {
    Json list = Json::array();
    for (std::size_t run = 0; run < report.runs.size(); ++run) {
        addFailures(list, report.runs[run], run);
    }
    return list;
}

Json runsJson(const Report& report) {
    Json list = Json::array();
    const std::set<std::string> parameters = caseParameters(report.runs);
    for (const Run& run : report.runs) {
        list.push_back(runJson(run, parameters));
    }
    return list;
}

// In JSON a '<' stands inside strings only, and may be written as its code.
std::string withoutMarkup(const std::string& json) {
    std::string safe;
    safe.reserve(json.size());
    for (const char c : json) {
        if (c == '<') {
            safe += "\\u003c";
        } else {
            safe += c;
        }
    }
    return safe;
}

// Some names begin with a blank in tables.
std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? ""
                                      : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

} // namespace

std::string variantText(const Case& measured) {
    std::string joined;
    for (const NamedValue& parameter : measured.parameters) {
        static constexpr std::array shownAlready = {"CodeLength", "Length", "CodeFile"};
        const std::string value = trimmed(common::valueText(parameter.value));
        if (value.empty() || value == "-" || std::ranges::count(shownAlready, parameter.name)) {
            continue;
        }
        const bool isTableCell = parameter.name == "Variant";
        appendWord(joined, isTableCell ? value : parameter.name + "=" + value);
    }
    return joined;
}

std::optional<double> plainRatio(const Case& measured) {
    const auto isCalled = [&](const char* part) {
        return measured.function.find(part) != std::string::npos;
    };
    const std::string variant = variantText(measured);
    const bool isWhole = variant == "N" || variant == "dict=N";
    return isCalled("LZ4Dict") || (isCalled("LZ4HC") && !isWhole) ? std::nullopt : measured.ratio;
}

std::string pageData(const Report& report) {
    const Json data = {{"runs", runsJson(report)},         {"groups", groupsJson(report)},
                       {"cases", casesJson(report)},       {"comparisons", comparisonsJson(report)},
                       {"failures", failuresJson(report)}, {"remarks", report.remarks}};
    return withoutMarkup(data.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace report
