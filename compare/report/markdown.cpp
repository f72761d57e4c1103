#include <algorithm>

#include "findings.h"
#include "format.h"
#include "report.h"

// What one pastes into a review: the answer, what changed, and the rest behind a fold.
namespace compare {

namespace {

std::string cell(const std::string& text) {
    std::string escaped;
    for (const char c : printable(text)) {
        // A function's name must not become emphasis, nor a file's a tag.
        escaped += std::string("|\\<*_`").find(c) == std::string::npos ? std::string(1, c)
                                                                       : std::string("\\") + c;
    }
    return escaped;
}

std::string rowText(const std::vector<std::string>& cells) {
    return "| " + [&] {
        std::string text;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            text += (i ? " | " : "") + cells[i];
        }
        return text;
    }() + " |\n";
}

std::string caseRow(const Finding& finding, const Settings& settings) {
    std::vector<std::string> notes = {cell(asideText(finding, settings))};
    for (const std::string& line : remarksOf(finding)) {
        notes.push_back(cell(line));
    }
    const bool isMeasured = finding.isMeasured;
    const Effect& effect = *finding.effect;
    return rowText({cell(finding.tried->function), cell(parametersText(finding.tried->parameters)),
                    isMeasured ? clocksText(effect.clocksPerUnit.base) : "",
                    isMeasured ? clocksText(effect.clocksPerUnit.changed) : "",
                    isMeasured ? intervalText(effect.interval) : "",
                    finding.hasFailed() || finding.isBeyondTolerance
                        ? "**" + verdictText(finding) + "**"
                        : verdictText(finding),
                    joined(notes, "<br>")});
}

const char* const caseTitle = "| Function | Parameters | Base | New | Difference | Verdict | |\n"
                              "|---|---|---:|---:|---:|---|---|\n";

std::string casesTable(const std::vector<Finding>& rows, const Settings& settings) {
    std::string text = rows.empty() ? "" : "\n" + std::string(caseTitle);
    for (const Finding& row : rows) {
        text += caseRow(row, settings);
    }
    return text;
}

std::string meansTable(const Judgement& judgement) {
    if (judgement.all.cases == 0) {
        return "";
    }
    std::string text = "\n| Mean of | Cases | Difference |\n|---|---:|---:|\n";
    for (const auto& [name, summary] : functionsOf(judgement)) {
        text +=
            rowText({cell(name), std::to_string(summary.cases), intervalText(summary.interval)});
    }
    return text + rowText({"all", std::to_string(judgement.all.cases),
                           intervalText(judgement.all.interval)});
}

std::string listText(const std::vector<std::string>& lines) {
    std::string text = "\n";
    for (const std::string& line : lines) {
        text += "- ";
        text += cell(line) + "\n";
    }
    return text;
}

std::string factsText(const Comparison& comparison, const Judgement& judgement,
                      const std::vector<Finding>& findings) {
    std::vector<std::string> lines = {
        "base: " + sideText(comparison, Side::base), "new: " + sideText(comparison, Side::changed),
        machineText(comparison),
        "started " + comparison.started + ", seed " + std::to_string(comparison.settings.seed)};
    if (!commonKeysText(comparison).empty()) {
        lines.push_back("keys: " + commonKeysText(comparison));
    }
    if (countsOf(findings).measured > 0) {
        lines.push_back("noise floor: " + noiseText(countsOf(findings), judgement));
        lines.push_back("confidence: " + promiseText(comparison));
    }
    for (const auto& more : {unpairedLines(comparison), passedOverLines(comparison)}) {
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return listText(lines);
}

} // namespace

std::string markdownText(const Comparison& comparison, const Judgement& judgement) {
    const std::vector<Finding> findings = findingsOf(comparison, judgement);
    const Counts counts = countsOf(findings);
    std::vector<Finding> changed, open;
    for (const Finding& row : rowsOf(findings)) {
        if (row.isChange()) {
            changed.push_back(row);
        } else if (row.effect->verdict == Verdict::open) {
            open.push_back(row);
        }
    }
    std::string text = "**" + answerText(counts, comparison) + "**";
    const std::string incomplete = incompleteText(comparison);
    text += incomplete.empty() ? "" : " " + incomplete + ".";
    text += counts.measured ? " Cases: " + countsText(counts, comparison.settings) + ".\n" : "\n";
    text += casesTable(changed, comparison.settings);
    return text + "\n<details><summary>How it was measured</summary>\n" +
           factsText(comparison, judgement, findings) + meansTable(judgement) +
           casesTable(open, comparison.settings) + "\n</details>\n";
}

} // namespace compare
