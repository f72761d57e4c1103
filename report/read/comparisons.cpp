#include "comparisons.h"

#include "columns.h"
#include "jsonvalues.h"
#include "lines.h"

namespace report {

namespace {

constexpr long long knownVersion = 1;

// "12.0.1 (-TSSE42)".
std::string sideText(const Json& comparison, const char* name) {
    const Json* const side = partOf(comparison, name);
    if (!side) {
        return "";
    }
    const std::string directory = textOf(*side, "directory");
    const std::string keys = common::keysText(textsOf(*side, "keys"));
    return common::joined({textOf(*side, "version"),
                           directory.empty() || directory == "own" ? "" : "in " + directory,
                           keys.empty() ? "" : "(" + keys + ")"},
                          " ");
}

std::string failureText(const Json& compared) {
    std::vector<std::string> texts;
    const Json* const list = partOf(compared, "failures");
    for (const Json& failure : list ? *list : Json::array()) {
        texts.push_back(textOf(failure, "side") + ": " +
                        common::joined({textOf(failure, "what"), textOf(failure, "detail")}, "\n"));
    }
    texts.push_back(textOf(compared, "passed_over"));
    return common::joined(texts, "\n");
}

ComparedCase caseOf(const Json& compared) {
    ComparedCase one;
    one.function = textOf(compared, "function");
    one.parameters = common::parametersText(valuesOf(compared, "parameters"));
    if (const NamedValues changed = valuesOf(compared, "new_parameters"); !changed.empty()) {
        one.parameters += " -> " + common::parametersText(changed);
    }
    one.verdict = textOf(compared, "verdict");
    one.isBeyondTolerance = flagOf(compared, "beyond_tolerance");
    one.failure = failureText(compared);
    if (const Json* const effect = partOf(compared, "effect")) {
        one.ratio = realOf(*effect, "ratio");
        one.low = realOf(*effect, "low");
        one.high = realOf(*effect, "high");
        one.baseClocksPerUnit = realOf(*effect, "base_clocks_per_unit");
        one.newClocksPerUnit = realOf(*effect, "new_clocks_per_unit");
    }
    return one;
}

// Without the rounds, which are nearly all of the file and which nothing here needs.
Json withoutRounds(const std::string& text) {
    const auto keeps = [](int, Json::parse_event_t event, Json& parsed) {
        return event != Json::parse_event_t::key || parsed != "starts";
    };
    return Json::parse(text, keeps, false);
}

} // namespace

Comparison comparisonOf(const std::string& file, const std::string& text) {
    const Json whole = withoutRounds(text);
    if (whole.is_discarded()) {
        throw Unreadable(file + " begins as JSON but is none: it is broken, or was not written to "
                                "its end");
    }
    if (textOf(whole, "format") != "ntkcompare") {
        throw Unreadable(file + " is JSON, but neither records of ntkperf (-x) nor a comparison of "
                                "ntkcompare (--json)");
    }
    if (const long long version = wholeOf(whole, "version"); version > knownVersion) {
        throw Unreadable(file + " is of version " + std::to_string(version) +
                         " of the format, this program reads up to " +
                         std::to_string(knownVersion) + "; read it with a newer ntkreport");
    }
    Comparison comparison;
    comparison.file = file;
    comparison.started = textOf(whole, "started");
    comparison.machine = textOf(whole, "machine");
    comparison.base = sideText(whole, "base");
    comparison.changed = sideText(whole, "new");
    comparison.isComplete = flagOf(whole, "complete", true);
    if (const Json* const settings = partOf(whole, "settings")) {
        comparison.tolerance = realOf(*settings, "tolerance").value_or(0);
        comparison.confidence = realOf(*settings, "confidence").value_or(0.95);
    }
    if (const Json* const summary = partOf(whole, "summary")) {
        comparison.medianHalfWidth = realOf(*summary, "median_half_width");
        if (const Json* const all = partOf(*summary, "all")) {
            comparison.ratio = realOf(*all, "ratio");
            comparison.low = realOf(*all, "low");
            comparison.high = realOf(*all, "high");
        }
    }
    const Json* const cases = partOf(whole, "cases");
    for (const Json& compared : cases ? *cases : Json::array()) {
        comparison.cases.push_back(caseOf(compared));
    }
    return comparison;
}

} // namespace report
