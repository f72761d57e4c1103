#include "data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>

#include <nlohmann/json.hpp>

#include "cases.h"
#include "keys.h"
#include "variants.h"

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

const Json caseColumns = {"group",    "function", "types",   "family", "kind",         "variant",
                          "file",     "length",   "ratio",   "unit",   "bytesPerUnit", "samples",
                          "smallest", "median",   "largest", "spread", "result",       "comment"};

Json caseRow(std::size_t group, const Case& measured) {
    const bool hasClocks = !measured.samples.empty();
    const auto clocks = [&](double value) { return hasClocks ? number(value) : Json(nullptr); };
    return Json::array(
        {group, measured.function, measured.types, measured.family, kindName(measured.kind),
         variantText(measured), measured.file, number(measured.length), number(measured.ratio),
         measured.unit, number(measured.bytesPerUnit), samplesJson(measured),
         clocks(measured.smallest), clocks(measured.median), clocks(measured.largest),
         number(measured.spread), measured.result, measured.comment});
}

Json groupsJson(const Report& report) {
    Json list = Json::array();
    for (const Group& group : report.groups) {
        list.push_back({{"label", group.label}, {"series", group.series}, {"runs", group.runs}});
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
                        {"ratio", number(comparison.ratio)},
                        {"low", number(comparison.low)},
                        {"high", number(comparison.high)},
                        {"complete", comparison.isComplete},
                        {"cases", comparedJson(comparison)}});
    }
    return list;
}

Json failureJson(std::size_t run, const std::string& function, const std::string& what,
                 const std::string& result, const std::string& message) {
    return {{"run", run},       {"function", function},           {"what", what},
            {"result", result}, {"isFailure", isFailure(result)}, {"message", message}};
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

// What short names of variants stand for: [[function, variant, meaning]].
Json meaningsJson(const Report& report) {
    std::set<std::array<std::string, 3>> meanings;
    for (const Group& group : report.groups) {
        for (const Case& one : group.cases) {
            if (const std::string meaning = variantMeaning(one); !meaning.empty()) {
                meanings.insert({one.function, variantText(one), meaning});
            }
        }
    }
    return meanings;
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

} // namespace

std::string pageData(const Report& report) {
    const Json data = {{"runs", runsJson(report)},         {"groups", groupsJson(report)},
                       {"cases", casesJson(report)},       {"comparisons", comparisonsJson(report)},
                       {"failures", failuresJson(report)}, {"meanings", meaningsJson(report)},
                       {"remarks", report.remarks}};
    return withoutMarkup(data.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace report
