#include <algorithm>
#include <array>
#include <cmath>

#include "findings.h"
#include "format.h"
#include "report.h"

namespace compare {

namespace {

constexpr std::size_t columns = 7;
using Line = std::array<std::string, columns>;
constexpr std::size_t parameters = 1; // the column that gives way on a narrow terminal
constexpr int leastParameters = 12;
constexpr std::array<bool, columns> isNumber = {false, false, true, true, false, false, false};

struct Row {
    Line cells;
    std::vector<std::string> remarks;
};

// The parts of an interval below each other, so that they can be compared by eye.
struct IntervalColumns {
    int estimate = 0, low = 0, high = 0;

    void fit(const Interval& interval) {
        estimate = std::max(estimate, columnsOf(percentText(interval.estimate)));
        low = std::max(low, columnsOf(percentText(interval.low)));
        high = std::max(high, columnsOf(percentText(interval.high)));
    }
    std::string text(const Interval& interval) const {
        return padded(percentText(interval.estimate), estimate, true) + "  [" +
               padded(percentText(interval.low), low, true) + ", " +
               padded(percentText(interval.high), high, true) + "]";
    }
};

IntervalColumns columnsFor(const std::vector<Finding>& rows, const Judgement& judgement) {
    IntervalColumns fitted;
    for (const Finding& row : rows) {
        if (row.isMeasured) {
            fitted.fit(row.effect->interval);
        }
    }
    for (const auto& [name, summary] : judgement.functions) {
        fitted.fit(summary.interval);
    }
    fitted.fit(judgement.all.interval);
    return fitted;
}

Row rowOf(const Finding& finding, const Settings& settings, const IntervalColumns& intervals) {
    Row row;
    row.cells[0] = finding.tried->function;
    row.cells[parameters] = printable(parametersText(finding.tried->parameters));
    if (finding.isMeasured) {
        row.cells[2] = clocksText(finding.effect->clocksPerUnit.base);
        row.cells[3] = clocksText(finding.effect->clocksPerUnit.changed);
        row.cells[4] = finding.tried->outcome.base.unit;
        row.cells[5] = intervals.text(finding.effect->interval);
    }
    // Capitals and a mark are seen in a long table, where a word like the others is not.
    row.cells[6] = finding.isMeasured ? verdictText(finding) : "FAILED";
    row.cells[6] += finding.difference.empty() ? "" : " (!)";
    const std::string aside = asideText(finding, settings);
    row.cells[6] += aside.empty() ? "" : " (" + aside + ")";
    row.remarks = remarksOf(finding);
    return row;
}

// A line below the cases: a mean over several.
Row summaryRow(const std::string& name, const Summary& summary, const IntervalColumns& intervals) {
    Row row;
    row.cells[0] = name;
    row.cells[parameters] = "mean of " + countText(summary.cases, "case");
    row.cells[5] = intervals.text(summary.interval);
    return row;
}

std::array<int, columns> widthsOf(const std::vector<Row>& rows, int width) {
    std::array<int, columns> widths = {};
    int all = 2 * (columns - 1);
    for (std::size_t i = 0; i < columns; ++i) {
        for (const Row& row : rows) {
            widths[i] = std::max(widths[i], columnsOf(row.cells[i]));
        }
        all += widths[i];
    }
    if (width > 0 && all > width) {
        const int room = widths[parameters] - (all - width);
        widths[parameters] = std::min(widths[parameters], std::max(leastParameters, room));
    }
    return widths;
}

std::string lineOf(const Line& cells, const std::array<int, columns>& widths) {
    std::string line;
    for (std::size_t i = 0; i < columns; ++i) {
        const std::string cell = i == parameters ? shortened(cells[i], widths[i]) : cells[i];
        line += (i ? "  " : "") + padded(cell, widths[i], isNumber[i]);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

void append(std::string& text, const std::string& line) {
    text += line.empty() ? "" : line + "\n";
}

std::string tableOf(const Comparison& comparison, const Judgement& judgement,
                    const std::vector<Finding>& findings, int width) {
    const std::vector<Finding> shown = rowsOf(findings);
    const IntervalColumns intervals = columnsFor(shown, judgement);
    std::vector<Row> rows = {
        {{"Function", "Parameters", "Base", "New", "Unit", "Difference", "Verdict"}, {}}};
    for (const Finding& finding : shown) {
        rows.push_back(rowOf(finding, comparison.settings, intervals));
    }
    const std::size_t cases = rows.size();
    for (const auto& [name, summary] : functionsOf(judgement)) {
        rows.push_back(summaryRow(name, summary, intervals));
    }
    if (judgement.all.cases > 0) {
        rows.push_back(summaryRow("all", judgement.all, intervals));
    }
    const auto widths = widthsOf(rows, width);
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        text += i == cases && i > 1 ? "\n" : "";
        text += lineOf(rows[i].cells, widths);
        for (const std::string& remark : rows[i].remarks) {
            text += "    " + remark + "\n";
        }
    }
    return text;
}

} // namespace

std::string tableText(const Comparison& comparison, const Judgement& judgement, int width) {
    const std::vector<Finding> findings = findingsOf(comparison, judgement);
    const Counts counts = countsOf(findings);
    std::string text = "Base: " + sideText(comparison, Side::base) +
                       "\nNew:  " + sideText(comparison, Side::changed) + "\n";
    const std::string keys = commonKeysText(comparison);
    append(text, keys.empty() ? "" : "Keys: " + keys);
    append(text, "On:   " + machineText(comparison) + "\n");
    if (counts.measured + counts.failed > 0) {
        text += tableOf(comparison, judgement, findings, width) + "\n";
    }
    append(text, incompleteText(comparison));
    for (const std::string& line : unpairedLines(comparison)) {
        append(text, line);
    }
    for (const std::string& line : passedOverLines(comparison)) {
        append(text, line);
    }
    if (counts.measured > 0) {
        append(text, "Verdicts:    " + countsText(counts, comparison.settings));
        append(text, "Confidence:  " + promiseText(comparison));
        append(text, "Noise floor: " + noiseText(counts, judgement));
    }
    append(text, answerText(counts, comparison));
    return text;
}

} // namespace compare
