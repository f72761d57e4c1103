#include "grid.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "columns.h"

namespace report {

namespace {

constexpr int between = 2;
constexpr int leastFirst = 12; // columns that are left of the first one

const char* codeOf(Colour colour) {
    switch (colour) {
    case Colour::bold: return "1";
    case Colour::dim: return "2";
    case Colour::red: return "31";
    case Colour::green: return "32";
    case Colour::yellow: return "33";
    case Colour::none: break;
    }
    return "";
}

std::vector<int> widthsOf(const std::vector<GridColumn>& columns,
                          const std::vector<GridRow>& rows) {
    std::vector<int> widths;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        int width = common::columnsOf(columns[i].title);
        for (const GridRow& row : rows) {
            width = std::max(width, common::columnsOf(row[i].text));
        }
        widths.push_back(width);
    }
    return widths;
}

// Of the columns that are shown: those whose width is not 0.
int lineWidth(const std::vector<int>& widths) {
    int width = -between;
    for (const int one : widths) {
        width += one > 0 ? one + between : 0;
    }
    return width;
}

void fit(const std::vector<GridColumn>& columns, int most, std::vector<int>& widths) {
    while (lineWidth(widths) > most) {
        std::size_t next = 0;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (widths[i] > 0 && columns[i].dispensable > columns[next].dispensable) {
                next = i;
            }
        }
        if (widths[next] == 0 || columns[next].dispensable == 0) {
            widths[0] = std::max(leastFirst, widths[0] - (lineWidth(widths) - most));
            return;
        }
        widths[next] = 0;
    }
}

std::string lineText(const std::vector<GridColumn>& columns, const std::vector<int>& widths,
                     const GridRow& row, const TerminalStyle& style) {
    const auto blanks = [](int count) { return std::string(static_cast<std::size_t>(count), ' '); };
    std::string line;
    int pending = 0; // blanks that are written when text follows
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (widths[i] == 0) {
            continue;
        }
        const std::string text = common::shortened(row[i].text, widths[i]);
        const int rest = widths[i] - common::columnsOf(text);
        if (text.empty()) {
            pending += widths[i] + between;
            continue;
        }
        line += blanks(pending + (columns[i].isNumber ? rest : 0));
        line += coloured(text, row[i].colour, style);
        pending = between + (columns[i].isNumber ? 0 : rest);
    }
    return line + "\n";
}

} // namespace

std::string coloured(const std::string& text, Colour colour, const TerminalStyle& style) {
    if (!style.hasColours || colour == Colour::none || text.empty()) {
        return text;
    }
    return std::string("\x1b[") + codeOf(colour) + "m" + text + "\x1b[0m";
}

std::string gridText(const std::vector<GridColumn>& columns, const std::vector<GridRow>& rows,
                     const TerminalStyle& style) {
    std::vector<int> widths = widthsOf(columns, rows);
    if (style.columns > 0) {
        fit(columns, style.columns, widths);
    }
    GridRow titles;
    for (const GridColumn& column : columns) {
        titles.push_back({column.title, Colour::bold});
    }
    std::string text = lineText(columns, widths, titles, style);
    for (const GridRow& row : rows) {
        text += lineText(columns, widths, row, style);
    }
    return text;
}

std::string bars(const std::vector<double>& numbers, const TerminalStyle& style) {
    static const char* const blocks[] = {"\u2581", "\u2582", "\u2583", "\u2584",
                                         "\u2585", "\u2586", "\u2587", "\u2588"};
    static const char* const letters[] = {"_", ".", ":", "-", "=", "+", "*", "#"};
    constexpr long levels = static_cast<long>(std::size(blocks));
    double most = 0;
    for (const double number : numbers) {
        most = std::isfinite(number) ? std::max(most, number) : most;
    }
    std::string text;
    for (const double number : numbers) {
        if (!std::isfinite(number) || number < 0) {
            text += "?";
            continue;
        }
        const long level =
            most > 0 ? std::lround(number / most * static_cast<double>(levels)) - 1 : 0;
        const long shown = std::clamp(level, 0L, levels - 1L);
        text += style.hasBlocks ? blocks[shown] : letters[shown];
    }
    return text;
}

} // namespace report
