#include <cmath>

#include "delimited.h"
#include "findings.h"
#include "format.h"
#include "report.h"

// The columns stay as they are; new ones come behind them.
namespace compare {

namespace {

const std::vector<std::string> names = {
    "function",    "parameters",      "new_parameters", "base_clocks", "new_clocks",
    "unit",        "ratio",           "ratio_low",      "ratio_high",  "p",
    "p_adjusted",  "verdict",         "starts",         "rounds",      "seconds",
    "stop",        "disturbed_share", "base_status",    "new_status",  "output_difference",
    "failed_side", "failure",         "complete"};

std::vector<std::string> figuresOf(const Finding& finding) {
    if (!finding.isMeasured) {
        return std::vector<std::string>(8);
    }
    const Effect& effect = *finding.effect;
    return {exactText(effect.clocksPerUnit.base), exactText(effect.clocksPerUnit.changed),
            finding.tried->outcome.base.unit, exactText(std::exp(effect.interval.estimate)),
            // An interval without an end has none, not the ratio 0.
            std::isfinite(effect.interval.low) ? exactText(std::exp(effect.interval.low)) : "",
            std::isfinite(effect.interval.high) ? exactText(std::exp(effect.interval.high)) : "",
            exactText(effect.pValue), exactText(effect.adjusted)};
}

std::vector<std::string> failureOf(const Case& tried) {
    if (tried.failures.empty()) {
        return {"", ""};
    }
    std::vector<std::string> sides, texts;
    for (const Failure& failure : tried.failures) {
        sides.emplace_back(nameOf(failure.side));
        texts.push_back(joined({failure.what, failure.detail}, "\n"));
    }
    return {joined(sides, " "), joined(texts, "\n")};
}

std::vector<std::string> cellsOf(const Finding& finding, bool isComplete) {
    const Case& tried = *finding.tried;
    const std::string base = parametersText(tried.parameters.base);
    const std::string changed = parametersText(tried.parameters.changed);
    std::size_t rounds = 0;
    for (const Start& start : tried.starts) {
        rounds += start.rounds.size();
    }
    std::vector<std::string> cells = {tried.function, base, changed == base ? "" : changed};
    const auto add = [&](const std::vector<std::string>& more) {
        cells.insert(cells.end(), more.begin(), more.end());
    };
    add(figuresOf(finding));
    add({verdictText(finding), std::to_string(tried.starts.size()), std::to_string(rounds),
         exactText(tried.seconds), nameOf(tried.stop)});
    if (finding.isMeasured) {
        add({exactText(finding.effect->disturbedShare), std::to_string(tried.outcome.base.status),
             std::to_string(tried.outcome.changed.status), finding.difference});
    } else {
        add(std::vector<std::string>(4));
    }
    add(failureOf(tried));
    cells.emplace_back(isComplete ? "yes" : "no"); // the run: a table has no head to say it
    return cells;
}

} // namespace

std::string csvText(const Comparison& comparison, const Judgement& judgement) {
    std::string text = csvLine(names);
    for (const Finding& finding : findingsOf(comparison, judgement)) {
        text += csvLine(cellsOf(finding, comparison.isComplete));
    }
    return text;
}

} // namespace compare
