#include "values.h"

#include <algorithm>

#include "numbers.h"
#include "columns.h"

namespace common {

std::string valueText(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    const auto* whole = std::get_if<long long>(&value);
    return whole ? std::to_string(*whole) : exactText(std::get<double>(value));
}

std::string parametersText(const NamedValues& parameters) {
    std::vector<std::string> words;
    for (const auto& [name, value] : parameters) {
        words.push_back(name + "=" + valueText(value));
    }
    return joined(words, " ");
}

const Value* findValue(const NamedValues& values, const std::string& name) {
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const NamedValue& value) { return value.name == name; });
    return found == values.end() ? nullptr : &found->value;
}

} // namespace common
