#include <algorithm>
#include <map>

#include "delimited.h"
#include "findings.h"
#include "format.h"
#include "report.h"

// What one pastes into a review: the answer, what changed, and the rest behind a fold.
namespace compare {

namespace {

// A review takes some 60,000 characters; what is longer belongs into the other files.
constexpr std::size_t mostRows = 30;
constexpr std::size_t mostNotes = 4;

std::string caseRow(const Finding& finding, const Settings& settings) {
    std::vector<std::string> notes = {markdownCell(asideText(finding, settings))};
    for (const std::string& line : remarksOf(finding)) {
        if (notes.size() < mostNotes) {
            notes.push_back(markdownCell(line));
        }
    }
    const bool isMeasured = finding.isMeasured;
    const Effect& effect = *finding.effect;
    return markdownRow(
        {markdownCell(finding.tried->function),
         markdownCell(parametersText(finding.tried->parameters, ParameterForm::table)),
         isMeasured ? clocksText(effect.clocksPerUnit.base) : "",
         isMeasured ? clocksText(effect.clocksPerUnit.changed) : "",
         isMeasured ? intervalText(effect.interval) : "",
         finding.hasFailed() || finding.isBeyondTolerance ? "**" + verdictText(finding) + "**"
                                                          : verdictText(finding),
         joined(notes, "<br>")});
}

// "clocks per element"; per "unit" where the rows have several.
std::string clocksOf(const std::vector<Finding>& rows) {
    std::string unit;
    for (const Finding& row : rows) {
        const std::string& its = row.tried->outcome.base.unit;
        unit = !row.isMeasured || its == unit ? unit : unit.empty() ? its : "unit";
    }
    return "clocks per " + (unit == "e" ? "element" : unit.empty() ? "unit" : markdownCell(unit));
}

std::string moreText(std::size_t all) {
    return all > mostRows ? "\n... and " + std::to_string(all - mostRows) + " more\n" : "";
}

std::string changesTable(const std::vector<Finding>& rows, const Settings& settings) {
    if (rows.empty()) {
        return "";
    }
    const std::string clocks = clocksOf(rows);
    std::string text = "\n| Function | Parameters | Base, " + clocks + " | New, " + clocks +
                       " | Difference | Verdict | |\n|---|---|---:|---:|---:|---|---|\n";
    for (std::size_t i = 0; i < std::min(rows.size(), mostRows); ++i) {
        text += caseRow(rows[i], settings);
    }
    return text + moreText(rows.size());
}

// How many cases of each function are open.
std::string openTable(const std::vector<Finding>& open) {
    std::map<std::string, int> counts;
    for (const Finding& finding : open) {
        ++counts[finding.tried->function];
    }
    std::string text = open.empty() ? "" : "\n| Open in | Cases |\n|---|---:|\n";
    for (const auto& [name, count] : counts) {
        text += markdownRow({markdownCell(name), std::to_string(count)});
    }
    return text;
}

std::string meansTable(const Judgement& judgement) {
    if (judgement.all.cases < 2) {
        return "";
    }
    std::string text = "\n| Mean of | Cases | Difference |\n|---|---:|---:|\n";
    for (const auto& [name, summary] : functionsOf(judgement)) {
        text += markdownRow(
            {markdownCell(name), std::to_string(summary.cases), intervalText(summary.interval)});
    }
    return text + markdownRow({"all", std::to_string(judgement.all.cases),
                               intervalText(judgement.all.interval)});
}

std::string listText(const std::vector<std::string>& lines) {
    std::string text = "\n";
    for (std::size_t i = 0; i < std::min(lines.size(), mostRows); ++i) {
        text += "- ";
        text += markdownCell(lines[i]) + "\n";
    }
    return text + moreText(lines.size());
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
        for (const std::string& line : {disturbanceText(findings), unitText(findings)}) {
            if (!line.empty()) {
                lines.push_back(line);
            }
        }
    }
    for (const auto& more :
         {idleKeyLines(comparison), unpairedLines(comparison), passedOverLines(comparison)}) {
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
    text += changesTable(changed, comparison.settings);
    return text + "\n<details><summary>How it was measured</summary>\n" +
           factsText(comparison, judgement, findings) + meansTable(judgement) + openTable(open) +
           "\n</details>\n";
}

} // namespace compare
