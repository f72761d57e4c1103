#include "cells.h"

#include <charconv>
#include <cmath>

namespace report {

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t");
    return start == std::string_view::npos
               ? std::string_view()
               : text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

std::optional<double> numberOf(std::string_view text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc() && stop == end && std::isfinite(number);
    return isNumber && number >= 0 && !std::signbit(number) ? std::optional(number) : std::nullopt;
}

Value valueOf(std::string_view text) {
    long long number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    // "007" is a name.
    const bool isPlain = text == "0" || !text.starts_with('0');
    return error == std::errc() && stop == end && isPlain ? Value(number)
                                                          : Value(std::string(text));
}

void split(std::string_view line, std::vector<std::string_view>& cells) {
    cells.clear();
    for (std::size_t at = 0; at <= line.size();) {
        const std::size_t end = std::min(line.find(',', at), line.size());
        cells.push_back(line.substr(at, end - at));
        at = end + 1;
    }
}

} // namespace report
