#pragma once

#include <string>
#include <vector>

// Columns of text on a terminal.
namespace report {

struct TerminalStyle {
    int columns = 0; // of the terminal; 0: it is none, lines are as long as they need
    bool hasColours = false;
    bool hasBlocks = false; // shows characters such as U+2585
};

enum class Colour { none, bold, dim, red, green, yellow };
// Never the only way to tell what it tells.
std::string coloured(const std::string& text, Colour colour, const TerminalStyle& style);

struct GridColumn {
    std::string title;
    bool isNumber = false;
    // On a narrow terminal the columns with the highest go first; 0: stays.
    int dispensable = 0;
};
struct GridCell {
    std::string text = {};
    Colour colour = Colour::none;
};
using GridRow = std::vector<GridCell>;

// A title line and a line for each row. Where it is too wide even without the columns that can go,
// the first column is shortened.
std::string gridText(const std::vector<GridColumn>& columns, const std::vector<GridRow>& rows,
                     const TerminalStyle& style);

// A character for each number, as high as it is of the largest. "?" for what is none.
std::string bars(const std::vector<double>& numbers, const TerminalStyle& style);

} // namespace report
