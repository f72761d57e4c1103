#include "variants.h"

#include <algorithm>
#include <array>

#include "columns.h"

namespace report {

namespace {

struct Meaning {
    const char *part, *variant; // of the function's name; without the parameter's
    const char* text;
};
constexpr Meaning meanings[] = {
    {"EncodeLZ4", "N", "no dictionary"},
    {"EncodeLZ4", "I", "the first half of the data, where it stands, is the dictionary"},
    {"EncodeLZ4", "E", "a copy of the first half of the data is the dictionary"},
    {"LZO", "ST", "one thread, a table of 16,384 entries"},
    {"LZO", "ST1X", "one thread, a table of 2,048 entries: faster, larger results"},
    {"LZO", "MT", "as ST, the data split among several threads"},
    {"Zfp", "4", "4 bits a value"},
    {"Zfp", "8", "8 bits a value"},
    {"Zfp", "16", "16 bits a value"}};

// Some names begin with a blank in tables.
std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? ""
                                      : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

// "dict=E" as "E".
std::string valueOf(const std::string& variant) {
    return variant.substr(variant.find('=') + 1);
}

bool contains(const std::string& name, const char* part) {
    return name.find(part) != std::string::npos;
}

} // namespace

std::string variantText(const Case& one) {
    std::vector<std::string> words;
    for (const NamedValue& parameter : one.parameters) {
        static constexpr std::array shownAlready = {"CodeLength", "Length", "CodeFile"};
        const std::string value = trimmed(common::valueText(parameter.value));
        if (value.empty() || value == "-" || std::ranges::count(shownAlready, parameter.name)) {
            continue;
        }
        const bool isTableCell = parameter.name == "Variant";
        words.push_back(isTableCell ? value : parameter.name + "=" + value);
    }
    return common::joined(words, " ");
}

std::string variantMeaning(const Case& one) {
    const std::string variant = valueOf(variantText(one));
    const auto* const found =
        std::find_if(std::begin(meanings), std::end(meanings), [&](const Meaning& meaning) {
            return variant == meaning.variant && contains(one.function, meaning.part);
        });
    return one.function.starts_with("ntks") && found != std::end(meanings) ? found->text : "";
}

bool encodesSecondHalf(const Case& one) {
    return contains(one.function, "ntksEncodeLZ4Dict") ||
           (contains(one.function, "ntksEncodeLZ4HC") && valueOf(variantText(one)) != "N");
}

} // namespace report
