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
constexpr std::size_t parameters = 1, unit = 4, difference = 5, verdict = 6;
constexpr int leastParameters = 8;
constexpr std::size_t manyRows = 60;
constexpr std::array<bool, columns> isNumber = {false, false, true, true, false, false, false};

struct Row {
    Line cells;
    std::vector<std::string> remarks;
};

// What gives way on a narrow terminal, one after the other; then the parameters are cut.
enum class Fit { whole, withoutNotes, valuesOnly, withoutClocks };
constexpr Fit fits[] = {Fit::whole, Fit::withoutNotes, Fit::valuesOnly, Fit::withoutClocks};

// The parts of an interval below each other, so that they can be compared by eye.
struct IntervalColumns {
    int estimate = 0, low = 0, high = 0;

    void fit(const Interval& interval) {
        estimate = std::max(estimate, columnsOf(percentText(interval.estimate)));
        if (!std::isfinite(interval.halfWidth())) {
            return;
        }
        low = std::max(low, columnsOf(percentText(interval.low)));
        high = std::max(high, columnsOf(percentText(interval.high)));
    }
    std::string text(const Interval& interval) const {
        const std::string middle = padded(percentText(interval.estimate), estimate, true);
        if (!std::isfinite(interval.halfWidth())) {
            return middle + "  no interval yet";
        }
        return middle + "  [" + padded(percentText(interval.low), low, true) + ", " +
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

Row rowOf(const Finding& finding, const Settings& settings, const IntervalColumns& intervals,
          Fit fit) {
    Row row;
    row.cells[0] = finding.tried->function;
    row.cells[parameters] = printable(
        parametersText(finding.tried->parameters,
                       fit >= Fit::valuesOnly ? ParameterForm::values : ParameterForm::table));
    if (finding.isMeasured) {
        if (fit < Fit::withoutClocks) {
            row.cells[2] = clocksText(finding.effect->clocksPerUnit.base);
            row.cells[3] = clocksText(finding.effect->clocksPerUnit.changed);
        }
        row.cells[unit] = fit == Fit::whole ? finding.tried->outcome.base.unit : "";
        row.cells[difference] = intervals.text(finding.effect->interval);
    }
    // Capitals and a mark are seen in a long table, where a word like the others is not.
    row.cells[verdict] = finding.isMeasured ? verdictText(finding) : "FAILED";
    row.cells[verdict] += finding.difference.empty() ? "" : " (!)";
    const std::string aside = fit == Fit::whole ? asideText(finding, settings) : "";
    row.cells[verdict] += aside.empty() ? "" : " (" + aside + ")";
    row.remarks = remarksOf(finding);
    return row;
}

Row titleRow(Fit fit) {
    const bool hasClocks = fit < Fit::withoutClocks;
    return {{"Function", "Parameters", hasClocks ? "Base" : "", hasClocks ? "New" : "",
             fit == Fit::whole ? "Unit" : "", "Difference", "Verdict"},
            {}};
}

// A line below the cases: a mean over several.
Row summaryRow(const std::string& name, const Summary& summary, const IntervalColumns& intervals,
               Fit fit) {
    Row row;
    row.cells[0] = name;
    row.cells[parameters] =
        (fit >= Fit::valuesOnly ? "" : "mean of ") + countText(summary.cases, "case");
    row.cells[difference] = intervals.text(summary.interval);
    return row;
}

using Widths = std::array<int, columns>;

Widths widthsOf(const std::vector<Row>& rows) {
    Widths widths = {};
    for (std::size_t i = 0; i < columns; ++i) {
        for (const Row& row : rows) {
            widths[i] = std::max(widths[i], columnsOf(row.cells[i]));
        }
    }
    return widths;
}

int lengthOf(const Widths& widths) {
    int length = -2;
    for (const int width : widths) {
        length += width ? width + 2 : 0;
    }
    return length;
}

// Takes from a column what the lines are too long, as far as it has more than the least.
void narrow(Widths& widths, std::size_t column, int least, int width) {
    const int room = widths[column] - std::max(0, lengthOf(widths) - width);
    widths[column] = std::min(widths[column], std::max(least, room));
}

std::string lineOf(const Line& cells, const Widths& widths) {
    std::string line;
    for (std::size_t i = 0; i < columns; ++i) {
        const std::string cell = i == parameters ? cut(cells[i], widths[i])
                                 : i == 0        ? shortened(cells[i], widths[i])
                                                 : cells[i];
        line += widths[i] ? (line.empty() ? "" : "  ") + padded(cell, widths[i], isNumber[i]) : "";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

struct Table {
    std::vector<Row> rows; // the first is the title
    std::size_t cases = 0; // the rows behind so many, with the title, are means
};

Table tableFor(const std::vector<Finding>& shown, const Comparison& comparison,
               const Judgement& judgement, Fit fit) {
    const IntervalColumns intervals = columnsFor(shown, judgement);
    Table table = {{titleRow(fit)}, shown.size() + 1};
    for (const Finding& finding : shown) {
        table.rows.push_back(rowOf(finding, comparison.settings, intervals, fit));
    }
    for (const auto& [name, summary] : functionsOf(judgement)) {
        table.rows.push_back(summaryRow(name, summary, intervals, fit));
    }
    if (judgement.all.cases > 1) {
        table.rows.push_back(summaryRow("all", judgement.all, intervals, fit));
    }
    return table;
}

std::string textOf(const Table& table, const Widths& widths, int width) {
    std::string text;
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        text += i == table.cases && i > 1 ? "\n" : "";
        text += lineOf(table.rows[i].cells, widths);
        for (const std::string& remark : table.rows[i].remarks) {
            text += wrapped("    " + remark, width, "      ") + "\n";
        }
    }
    return text;
}

std::string tableOf(const std::vector<Finding>& shown, const Comparison& comparison,
                    const Judgement& judgement, int width) {
    for (const Fit fit : fits) {
        const Table table = tableFor(shown, comparison, judgement, fit);
        Widths widths = widthsOf(table.rows);
        if (width == 0 || lengthOf(widths) <= width) {
            return textOf(table, widths, width);
        }
        if (fit == Fit::withoutClocks) {
            narrow(widths, parameters, leastParameters, width);
            narrow(widths, 0, leastParameters, width);
            return textOf(table, widths, width);
        }
    }
    return "";
}

// Of a case that neither changed nor has an interval to look at.
bool saysLittle(const Finding& finding) {
    const bool isPlain = finding.isMeasured && !finding.isChange();
    return isPlain && (finding.effect->verdict == Verdict::same || !finding.hasInterval());
}

// "43 same and 13 open cases are not shown: --all, --csv".
std::string hiddenText(const std::vector<Finding>& hidden) {
    const Counts counts = countsOf(hidden);
    const std::string which = joined({counts.same ? std::to_string(counts.same) + " same" : "",
                                      counts.open ? std::to_string(counts.open) + " open" : ""},
                                     " and ");
    return which.empty() ? ""
                         : which + (hidden.size() == 1 ? " case is" : " cases are") +
                               " not shown: --all, --csv";
}

// Takes them out of the rows.
std::vector<Finding> hide(std::vector<Finding>& rows) {
    const auto kept = std::stable_partition(
        rows.begin(), rows.end(), [](const Finding& finding) { return !saysLittle(finding); });
    std::vector<Finding> hidden(kept, rows.end());
    rows.erase(kept, rows.end());
    return hidden;
}

// What is to be said of all cases.
std::vector<std::string> closingLines(const Comparison& comparison, const Judgement& judgement,
                                      const std::vector<Finding>& findings) {
    const Counts counts = countsOf(findings);
    std::vector<std::string> lines = {incompleteText(comparison)};
    for (const auto& more :
         {idleKeyLines(comparison), unpairedLines(comparison), passedOverLines(comparison)}) {
        lines.insert(lines.end(), more.begin(), more.end());
    }
    if (counts.measured > 0) {
        lines.push_back("Verdicts:    " + countsText(counts, comparison.settings));
        lines.push_back("Confidence:  " + promiseText(comparison));
        lines.push_back("Noise floor: " + noiseText(counts, judgement));
        lines.push_back(disturbanceText(findings));
    }
    lines.push_back(answerText(counts, comparison));
    return lines;
}

std::string linesText(const std::vector<std::string>& lines, int width) {
    std::string text;
    for (const std::string& line : lines) {
        const bool isNamed = line.starts_with("Verdicts:") || line.starts_with("Confidence:") ||
                             line.starts_with("Noise floor:");
        text +=
            line.empty() ? "" : wrapped(line, width, isNamed ? std::string(13, ' ') : "") + "\n";
    }
    return text;
}

std::string headText(const Comparison& comparison, int width) {
    const std::string keys = commonKeysText(comparison);
    std::string text;
    for (const std::string& line :
         {"Base: " + sideText(comparison, Side::base),
          "New:  " + sideText(comparison, Side::changed), keys.empty() ? "" : "Keys: " + keys,
          "On:   " + machineText(comparison)}) {
        text += line.empty() ? "" : wrapped(line, width, std::string(6, ' ')) + "\n";
    }
    return text + "\n";
}

} // namespace

std::string tableText(const Comparison& comparison, const Judgement& judgement,
                      const TableForm& form) {
    const std::vector<Finding> findings = findingsOf(comparison, judgement);
    std::vector<Finding> shown = rowsOf(findings), hidden;
    if (!form.showsAll && shown.size() > manyRows) {
        hidden = hide(shown);
    }
    std::string text = headText(comparison, form.width);
    if (!shown.empty() || !hidden.empty()) {
        text += tableOf(shown, comparison, judgement, form.width);
        text += linesText({hiddenText(hidden), unitText(findings)}, form.width) + "\n";
    }
    return text + linesText(closingLines(comparison, judgement, findings), form.width);
}

} // namespace compare
