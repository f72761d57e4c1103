#include "casename.h"

#include <string_view>

#include "columns.h"
#include "json.h"

namespace report {

namespace {

using IsSafe = bool (*)(unsigned char);

bool isSafeInJson(unsigned char c) {
    return c > ' ' && c != 0x7f && c != '%';
}

// All bytes that benchstat and the extractor of github-action-benchmark take as part of a name,
// but for the slash.
bool isSafeInGo(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::string_view("_.,:;=+-()[]{}#&$*^|").find(static_cast<char>(c)) !=
               std::string_view::npos;
}

void appendEscape(std::string& text, unsigned char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += '%';
    text += digits[c >> 4];
    text += digits[c & 15];
}

std::string escaped(const std::string& text, IsSafe isSafe) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (isSafe(byte)) {
            result += c;
        } else {
            appendEscape(result, byte);
        }
    }
    return result;
}

// "a-8" as "a%2D8".
std::string withoutProcessors(std::string text) {
    const auto last = text.find_last_not_of("0123456789");
    if (last != std::string::npos && text[last] == '-' && last + 1 < text.size()) {
        text.replace(last, 1, "%2D");
    }
    return text;
}

std::string withGroup(std::string name, const Group& group) {
    if (!group.label.empty()) {
        name += " Group=" + common::printable(group.label);
    }
    return name;
}

} // namespace

std::string onOneLine(const std::string& text) {
    return common::printable(Json::parse(compact(text)).get<std::string>());
}

std::string caseName(const Group& group, const Case& tried) {
    std::string name = escaped(tried.function, isSafeInJson);
    char separator = '/';
    for (const NamedValue& parameter : tried.parameters) {
        name += separator + escaped(parameter.name, isSafeInJson) + '=' +
                escaped(common::valueText(parameter.value), isSafeInJson);
        separator = ' ';
    }
    return withGroup(name, group);
}

std::string functionName(const Group& group, const std::string& function) {
    return withGroup(escaped(function, isSafeInJson), group);
}

std::string goName(const Case& tried) {
    std::string name = "Benchmark" + withoutProcessors(escaped(tried.function, isSafeInGo));
    for (const NamedValue& parameter : tried.parameters) {
        name += '/' + escaped(parameter.name, isSafeInGo) + '=' +
                withoutProcessors(escaped(common::valueText(parameter.value), isSafeInGo));
    }
    return name;
}

} // namespace report
