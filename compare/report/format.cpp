#include "format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace compare {

namespace {

std::string withDecimals(double number, int decimals) {
    char text[400]; // room for the largest double
    std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return text;
}

// More digits would promise what no interval holds.
int decimalsOfPercent(double percent) {
    return percent < 99.995 ? 2 : percent < 999.95 ? 1 : 0;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The bytes of so many characters from the start.
std::size_t bytesOf(const std::string& text, int columns) {
    std::size_t bytes = 0;
    while (bytes < text.size() && (columns > 0 || isContinuation(text[bytes]))) {
        columns -= !isContinuation(text[bytes++]);
    }
    return bytes;
}

const Value* find(const NamedValues& values, const std::string& name) {
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const NamedValue& value) { return value.name == name; });
    return found == values.end() ? nullptr : &found->value;
}

// Of a parameter that is a path; other values as they are ("1/2").
std::string fileName(const std::string& parameter, const std::string& value) {
    const bool isFile = parameter.ends_with("File") || value.starts_with('/');
    return isFile ? value.substr(value.rfind('/') + 1) : value;
}

} // namespace

std::string percentText(double logRatio) {
    if (!std::isfinite(logRatio)) {
        return "?";
    }
    const double ratio = std::exp(logRatio);
    if (ratio >= 2) {
        return withDecimals(ratio, ratio < 9.995 ? 2 : 0) + "x";
    }
    const std::string size = widthText(std::fabs(std::expm1(logRatio)));
    return size == "0.00%" ? size : (logRatio < 0 ? "-" : "+") + size;
}

std::string widthText(double ratio) {
    if (!std::isfinite(ratio)) {
        return "?";
    }
    const double percent = 100 * ratio;
    return withDecimals(percent, decimalsOfPercent(percent)) + "%";
}

std::string settingText(double ratio) {
    char text[40];
    std::snprintf(text, sizeof text, "%g%%", 100 * ratio);
    return text;
}

std::string clocksText(double clocks) {
    if (!std::isfinite(clocks) || clocks <= 0) {
        return clocks == 0 ? "0" : "?";
    }
    // Rounded first: 9.9999 is 10.00, not 10.000.
    char rounded[40];
    std::snprintf(rounded, sizeof rounded, "%.3e", clocks);
    const int exponent = std::atoi(std::strchr(rounded, 'e') + 1);
    return withDecimals(clocks, std::clamp(3 - exponent, 0, 15));
}

std::string durationText(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0) {
        return "?";
    }
    if (seconds < 9.95) {
        const std::string text = withDecimals(seconds, 1);
        return (text.ends_with(".0") ? text.substr(0, text.size() - 2) : text) + " s";
    }
    const long long whole = std::llround(seconds);
    char text[60];
    if (whole < 60) {
        std::snprintf(text, sizeof text, "%lld s", whole);
    } else if (whole < 3600) {
        std::snprintf(text, sizeof text, "%lld min %02lld s", whole / 60, whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%lld h %02lld min", whole / 3600, whole % 3600 / 60);
    }
    return text;
}

std::string exactText(double number) {
    if (!std::isfinite(number)) {
        return "";
    }
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string valueText(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    const auto* whole = std::get_if<long long>(&value);
    return whole ? std::to_string(*whole) : exactText(std::get<double>(value));
}

std::string parametersText(const NamedValues& parameters) {
    return parametersText({parameters, parameters});
}

std::string parametersText(const Both<NamedValues>& parameters, ParameterForm form) {
    std::vector<std::string> words;
    const auto add = [&](const std::string& name, const Value* base, const Value* changed) {
        std::string before = base ? valueText(*base) : "none";
        std::string now = changed ? valueText(*changed) : "none";
        // Two files of one name are told apart by their folders.
        const bool areOneName = before != now && fileName(name, before) == fileName(name, now);
        if (form != ParameterForm::whole && !areOneName) {
            before = fileName(name, before);
            now = fileName(name, now);
        }
        words.push_back((form == ParameterForm::values ? "" : name + "=") + before +
                        (now == before ? "" : " -> " + now));
    };
    for (const auto& [name, value] : parameters.base) {
        add(name, &value, find(parameters.changed, name));
    }
    for (const auto& [name, value] : parameters.changed) {
        if (!find(parameters.base, name)) {
            add(name, nullptr, &value);
        }
    }
    return joined(words, " ");
}

// Quoted where a shell would need it, so that the line can be repeated.
std::string keysText(const std::vector<std::string>& keys) {
    std::vector<std::string> words;
    for (const std::string& key : keys) {
        const bool isPlain = key.find_first_of(" \t\n;&|<>()$`\\\"'*?[]#~!{}") == std::string::npos;
        std::string quoted = "'";
        for (const char c : key) {
            quoted += c == '\'' ? "'\\''" : std::string(1, c);
        }
        words.push_back(isPlain ? key : quoted + "'");
    }
    return joined(words, " ");
}

std::string countText(long long count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() || part.empty() ? "" : separator) + part;
    }
    return text;
}

int columnsOf(const std::string& text) {
    return static_cast<int>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

std::string printable(const std::string& text) {
    std::string clean = text;
    std::replace_if(
        clean.begin(), clean.end(),
        [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7f'; }, '?');
    return clean;
}

std::string padded(const std::string& text, int columns, bool toTheRight) {
    const std::string blanks(static_cast<std::size_t>(std::max(0, columns - columnsOf(text))), ' ');
    return toTheRight ? blanks + text : text + blanks;
}

std::string shortened(const std::string& text, int columns) {
    const int all = columnsOf(text);
    if (all <= columns) {
        return text;
    }
    const int dots = std::min(3, columns);
    const int head = (columns - dots) / 2;
    const int tail = columns - dots - head;
    return text.substr(0, bytesOf(text, head)) + std::string(static_cast<std::size_t>(dots), '.') +
           text.substr(bytesOf(text, all - tail));
}

std::string cut(const std::string& text, int columns) {
    if (columnsOf(text) <= columns) {
        return text;
    }
    const int dots = std::min(3, columns);
    return text.substr(0, bytesOf(text, columns - dots)) +
           std::string(static_cast<std::size_t>(dots), '.');
}

std::string wrapped(const std::string& text, int columns, const std::string& indent) {
    const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
    std::string lines = text.substr(0, start);
    int used = columnsOf(lines);
    bool isFirst = true;
    for (std::size_t at = start; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        const bool isFull = columns > 0 && used + 1 + columnsOf(word) > columns;
        const std::string between = isFirst ? "" : isFull ? "\n" + indent : " ";
        lines += between + word;
        used =
            (isFull && !isFirst ? columnsOf(indent) : used + columnsOf(between)) + columnsOf(word);
        isFirst = false;
        at = end + 1;
    }
    return lines;
}

} // namespace compare
