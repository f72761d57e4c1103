#include "markdown.h"

#include <algorithm>
#include <map>

#include "cases.h"
#include "columns.h"
#include "delimited.h"
#include "numbers.h"
#include "words.h"

namespace report {

namespace {

using common::markdownCell;
using common::markdownRow;

// A review takes some 60,000 characters.
constexpr std::size_t mostCharacters = 50000;
constexpr std::size_t mostRows = 30;

std::string moreText(std::size_t all, const std::string& where) {
    return all > mostRows ? "\n... and " + std::to_string(all - mostRows) + " more" + where + "\n"
                          : "";
}

std::string listText(const std::vector<std::string>& lines) {
    std::string text = lines.empty() ? "" : "\n";
    for (std::size_t i = 0; i < std::min(lines.size(), mostRows); ++i) {
        text += lines[i].empty() ? "" : "- " + markdownCell(lines[i]) + "\n";
    }
    return text + moreText(lines.size(), "");
}

std::string nameOf(const FunctionOverview& function) {
    return markdownCell(function.function) + (function.isPerByte ? "" : "\\*");
}

std::string overviewTable(const std::vector<FunctionOverview>& functions) {
    std::string text = "\n| Function | Cases | Clocks per byte | lowest | highest | Ratio | MB/s | "
                       "Spread |\n|---|---:|---:|---:|---:|---:|---:|---:|\n";
    bool isAllPerByte = true;
    for (const FunctionOverview& function : functions) {
        const auto clocks = [&](double number) {
            return function.measured > 0 ? shortText(number) : "";
        };
        isAllPerByte &= function.isPerByte;
        text +=
            markdownRow({nameOf(function), std::to_string(function.measured),
                         clocks(function.median), clocks(function.lowest), clocks(function.highest),
                         shortText(function.ratio), shortText(function.megabytesPerSecond),
                         function.spread ? common::widthText(*function.spread) : ""});
    }
    return text + (isAllPerByte ? ""
                                : "\n\\* clocks per unit of the function: how many bytes that is, "
                                  "is not known\n");
}

// What a row of a function's table is named by: all parameters but the length.
std::string rowName(const Case& one) {
    std::vector<std::string> words;
    for (const common::NamedValue& parameter : one.parameters) {
        if (parameter.name != "Length" && parameter.name != "CodeLength") {
            const std::string text = common::valueText(parameter.value);
            words.push_back(parameter.name.ends_with("File") ? text.substr(text.rfind('/') + 1)
                                                             : text);
        }
    }
    return words.empty() ? "" : common::joined(words, " ");
}

// "4.92", "4.92 ±12%" where that is not ordinary, "FUNCFAIL".
std::string figureText(const Case& one, bool isPerByte) {
    if (one.samples.empty()) {
        return isFailure(one.result) ? "**" + markdownCell(one.result) + "**" : "";
    }
    std::string text = shortText(isPerByte ? *clocksPerByte(one) : one.median);
    if (one.spread && *one.spread > ordinarySpread) {
        text += " ±" + shortText(100 * *one.spread) + "%";
    }
    return text;
}

struct FunctionRow {
    std::string name;
    std::vector<std::string> figures; // at the lengths that have a column
    std::vector<std::string> others;  // "2.40 at 21504"
};

std::vector<FunctionRow> rowsOf(const FunctionOverview& function,
                                const std::vector<double>& lengths) {
    std::vector<FunctionRow> rows;
    std::map<std::string, std::size_t> places;
    for (const Case* one : function.cases) {
        const auto [place, isNew] = places.try_emplace(rowName(*one), rows.size());
        if (isNew) {
            rows.push_back({place->first, std::vector<std::string>(lengths.size()), {}});
        }
        FunctionRow& row = rows[place->second];
        const std::string figure = figureText(*one, function.isPerByte);
        const auto column =
            std::find(lengths.begin(), lengths.end(), one->length) - lengths.begin();
        const bool hasColumn = column < static_cast<std::ptrdiff_t>(lengths.size());
        std::string* const cell =
            hasColumn ? &row.figures[static_cast<std::size_t>(column)] : nullptr;
        if (cell && cell->empty()) {
            *cell = figure;
        } else if (!figure.empty()) {
            row.others.push_back(figure + (one->length ? " at " + lengthText(*one->length) : ""));
        }
    }
    return rows;
}

std::string functionTable(const FunctionOverview& function) {
    constexpr std::size_t mostLengths = 10;
    std::vector<double> lengths = commonLengths(function.cases);
    lengths.resize(std::min(lengths.size(), mostLengths));
    const std::vector<FunctionRow> rows = rowsOf(function, lengths);
    const bool hasOthers = std::any_of(rows.begin(), rows.end(),
                                       [](const FunctionRow& row) { return !row.others.empty(); });
    std::vector<std::string> titles = {""}, lines = {"---"};
    for (const double length : lengths) {
        titles.push_back(lengthText(length));
        lines.emplace_back("---:");
    }
    if (hasOthers) {
        titles.emplace_back("other lengths");
        lines.emplace_back("---");
    }
    std::string text = "\n**";
    text += nameOf(function) + "**\n\n";
    text += markdownRow(titles) + markdownRow(lines);
    for (std::size_t i = 0; i < std::min(rows.size(), mostRows); ++i) {
        std::vector<std::string> cells = {markdownCell(rows[i].name)};
        cells.insert(cells.end(), rows[i].figures.begin(), rows[i].figures.end());
        if (hasOthers) {
            cells.push_back(common::joined(rows[i].others, ", "));
        }
        text += markdownRow(cells);
    }
    return text + moreText(rows.size(), " (--html and --csv have all)");
}

std::string functionTables(const std::vector<FunctionOverview>& functions, std::size_t room) {
    std::string text;
    std::size_t left = functions.size();
    for (const FunctionOverview& function : functions) {
        const std::string table = functionTable(function);
        if (text.size() + table.size() > room) {
            break;
        }
        text += table;
        --left;
    }
    if (left > 0) {
        const std::string count = common::countText(static_cast<long long>(left), "function");
        text += "\n" + count + " more: --html and --csv have all\n";
    }
    return "\n<details><summary>Clocks per byte by length</summary>\n" + text + "\n</details>\n";
}

std::string groupText(const Report& report, const Group& group, std::size_t room) {
    const std::vector<FunctionOverview> functions = overviewOf(report, group);
    std::vector<std::string> facts = factsOf(report, group);
    facts.push_back(spreadText(functions));
    std::string text;
    if (!group.label.empty()) {
        text += "\n### ";
        text += markdownCell(group.label) + "\n";
    }
    text += listText(facts) + overviewTable(functions);
    if (const auto failures = failuresOf(report, group); !failures.empty()) {
        text += "\n**Failed:**\n";
        text += listText(failures);
    }
    return text + functionTables(functions, room - std::min(room, text.size()));
}

std::string changesTable(const Comparison& comparison) {
    const std::vector<const ComparedCase*> changes = changesOf(comparison);
    if (changes.empty()) {
        return "";
    }
    std::string text = "\n| Function | Parameters | Base | New | Difference | Verdict | |\n"
                       "|---|---|---:|---:|---:|---|---|\n";
    for (std::size_t i = 0; i < std::min(changes.size(), mostRows); ++i) {
        const ComparedCase& one = *changes[i];
        const auto clocks = [](const std::optional<double>& number) {
            return number ? common::clocksText(*number) : "";
        };
        const bool isBold = one.isBeyondTolerance || one.verdict == "failed";
        const std::string stress = isBold ? "**" : "";
        text +=
            markdownRow({markdownCell(one.function), markdownCell(one.parameters),
                         clocks(one.baseClocksPerUnit), clocks(one.newClocksPerUnit),
                         differenceText(one.ratio, one.low, one.high),
                         stress + markdownCell(one.verdict) + stress, markdownCell(one.failure)});
    }
    return text + moreText(changes.size(), "");
}

std::string comparisonText(const Comparison& comparison) {
    std::vector<std::string> facts = factsOf(comparison);
    facts.push_back(countsText(comparison));
    return listText(facts) + changesTable(comparison);
}

} // namespace

std::string markdownText(const Report& report) {
    std::string text = "## Performance\n";
    for (const Comparison& comparison : report.comparisons) {
        text += comparisonText(comparison);
    }
    const std::vector<const Group*> groups = shownGroups(report);
    for (const Group* group : groups) {
        // Each group has a share of what there is room for.
        text += groupText(report, *group, mostCharacters / groups.size());
    }
    text += listText({hiddenText(report)});
    if (!report.remarks.empty()) {
        text += "\n**Notes:**\n" + listText(report.remarks);
    }
    return text;
}

} // namespace report
