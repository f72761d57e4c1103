#include "delimited.h"

#include "columns.h"

namespace common {

namespace {

constexpr int mostColumns = 300;

std::string csvCell(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        quoted.append(c == '"' ? 2 : 1, c);
    }
    quoted += '"';
    return quoted;
}

} // namespace

std::string csvLine(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += i ? "," : "";
        line += csvCell(cells[i]);
    }
    line += "\r\n";
    return line;
}

std::string markdownCell(const std::string& text) {
    std::string escaped;
    for (const char c : cut(printable(text), mostColumns)) {
        // A function's name must not become emphasis, nor a file's a tag.
        escaped += std::string("|\\<*_`").find(c) == std::string::npos ? std::string(1, c)
                                                                       : std::string("\\") + c;
    }
    return escaped;
}

std::string markdownRow(const std::vector<std::string>& cells) {
    return "| " + [&] {
        std::string text;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            text += (i ? " | " : "") + cells[i];
        }
        return text;
    }() + " |\n";
}

} // namespace common
