#include "terminal.h"

#include <algorithm>

#include "columns.h"
#include "numbers.h"
#include "words.h"

namespace report {

namespace {

constexpr std::size_t mostBars = 16;
constexpr std::size_t mostFailures = 10;
constexpr std::size_t mostChanges = 20;

std::string paragraph(const std::vector<std::string>& lines, const TerminalStyle& style) {
    std::string text;
    for (const std::string& line : lines) {
        if (!line.empty()) {
            text += common::wrapped(common::printable(line), style.columns, "  ") + "\n";
        }
    }
    return text;
}

// As many as there is room for, the first and the last among them.
std::vector<double> heights(const FunctionOverview& function) {
    const std::size_t all = function.byLength.size();
    const std::size_t shown = std::min(all, mostBars);
    std::vector<double> clocks;
    for (std::size_t i = 0; i < shown; ++i) {
        clocks.push_back(function.byLength[shown < 2 ? 0 : i * (all - 1) / (shown - 1)].second);
    }
    return clocks;
}

std::string lengthsText(const FunctionOverview& function) {
    if (function.byLength.empty()) {
        return "";
    }
    const std::string first = lengthText(function.byLength.front().first);
    const std::string last = lengthText(function.byLength.back().first);
    return first == last ? first : first + "-" + last;
}

Colour colourOfSpread(const std::optional<double>& spread) {
    return spread && *spread > ordinarySpread ? Colour::yellow : Colour::none;
}

GridRow rowOf(const FunctionOverview& function, const TerminalStyle& style) {
    const bool isMeasured = function.measured > 0;
    const std::string unit = function.isPerByte ? "" : "*";
    const auto clocks = [&](double number) { return isMeasured ? shortText(number) : "-"; };
    return {{common::printable(function.function) + unit},
            {std::to_string(function.measured)},
            {function.failed > 0 ? std::to_string(function.failed) : "", Colour::red},
            {clocks(function.median), Colour::bold},
            {clocks(function.lowest)},
            {clocks(function.highest)},
            {bars(heights(function), style)},
            {lengthsText(function), Colour::dim},
            {shortText(function.ratio)},
            {shortText(function.megabytesPerSecond)},
            {function.spread ? common::widthText(*function.spread) : "",
             colourOfSpread(function.spread)}};
}

std::string functionsText(const std::vector<FunctionOverview>& functions,
                          const TerminalStyle& style) {
    const auto has = [&](auto member) {
        return std::any_of(functions.begin(), functions.end(), member);
    };
    std::vector<GridColumn> columns = {
        {"Function", false, 0}, {"Cases", true, 6},   {"Failed", true, 0},     {"Clocks", true, 0},
        {"lowest", true, 7},    {"highest", true, 7}, {"by length", false, 1}, {"", false, 5},
        {"Ratio", true, 3},     {"MB/s", true, 4},    {"Spread", true, 2}};
    std::vector<GridRow> rows;
    for (const FunctionOverview& function : functions) {
        rows.push_back(rowOf(function, style));
    }
    if (!has([](const FunctionOverview& function) { return function.failed > 0; })) {
        columns.erase(columns.begin() + 2);
        for (GridRow& row : rows) {
            row.erase(row.begin() + 2);
        }
    }
    std::string text = gridText(columns, rows, style);
    const bool isAllPerByte =
        !has([](const FunctionOverview& function) { return !function.isPerByte; });
    text += common::wrapped("Clocks: per byte of uncompressed data, the median of the cases; bars "
                            "by length, each function's own scale",
                            style.columns, "  ") +
            "\n";
    return text + (isAllPerByte ? ""
                                : "* per unit of the function: how many bytes that is, is not "
                                  "known\n");
}

std::string listText(const std::string& title, const std::vector<std::string>& lines,
                     const TerminalStyle& style) {
    if (lines.empty()) {
        return "";
    }
    std::string text = "\n";
    text += coloured(title, Colour::red, style) + "\n";
    for (std::size_t i = 0; i < std::min(lines.size(), mostFailures); ++i) {
        text += common::wrapped("  " + common::printable(lines[i]), style.columns, "    ") + "\n";
    }
    return text + (lines.size() > mostFailures
                       ? "  ... and " + std::to_string(lines.size() - mostFailures) + " more\n"
                       : "");
}

std::string groupText(const Report& report, const Group& group, const TerminalStyle& style) {
    const std::vector<FunctionOverview> functions = overviewOf(report, group);
    std::string text = group.label.empty()
                           ? ""
                           : coloured(common::printable(group.label), Colour::bold, style) + "\n";
    text += paragraph(factsOf(report, group), style) + "\n";
    text += functionsText(functions, style);
    text += paragraph({spreadText(functions)}, style);
    return text + listText("Failed:", failuresOf(report, group), style);
}

Colour colourOf(const ComparedCase& one) {
    return one.verdict == "faster" ? Colour::green : Colour::red;
}

std::string changesText(const Comparison& comparison, const TerminalStyle& style) {
    const std::vector<const ComparedCase*> changes = changesOf(comparison);
    std::vector<GridRow> rows;
    for (std::size_t i = 0; i < std::min(changes.size(), mostChanges); ++i) {
        const ComparedCase& one = *changes[i];
        const auto clocks = [](const std::optional<double>& number) {
            return number ? common::clocksText(*number) : "";
        };
        rows.push_back({{common::printable(one.function)},
                        {common::printable(one.parameters)},
                        {clocks(one.baseClocksPerUnit)},
                        {clocks(one.newClocksPerUnit)},
                        {differenceText(one.ratio, one.low, one.high)},
                        {common::printable(one.verdict), colourOf(one)}});
    }
    if (rows.empty()) {
        return "";
    }
    std::string text = "\n";
    text += gridText({{"Function", false, 0},
                      {"Parameters", false, 1},
                      {"Base", true, 2},
                      {"New", true, 2},
                      {"Difference", false, 0},
                      {"Verdict", false, 0}},
                     rows, style);
    return text + (changes.size() > mostChanges
                       ? "... and " + std::to_string(changes.size() - mostChanges) + " more\n"
                       : "");
}

std::string comparisonText(const Comparison& comparison, const TerminalStyle& style) {
    std::string text = paragraph(factsOf(comparison), style);
    text += coloured(countsText(comparison), Colour::bold, style) + "\n";
    text += changesText(comparison, style);
    std::vector<std::string> failures;
    for (const ComparedCase& one : comparison.cases) {
        if (one.verdict == "failed") {
            failures.push_back(common::joined({one.function, one.parameters}, " ") + ": " +
                               one.failure);
        }
    }
    return text + listText("Failed:", failures, style);
}

} // namespace

std::string terminalText(const Report& report, const TerminalStyle& style) {
    std::string text;
    for (const Group* group : shownGroups(report)) {
        text += text.empty() ? "" : "\n";
        text += groupText(report, *group, style);
    }
    text += paragraph({hiddenText(report)}, style);
    for (const Comparison& comparison : report.comparisons) {
        text += text.empty() ? "" : "\n";
        text += comparisonText(comparison, style);
    }
    return text;
}

} // namespace report
