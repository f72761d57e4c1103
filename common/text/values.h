#pragma once

#include <string>
#include <variant>
#include <vector>

namespace common {

// A parameter or a result with its own type, and its name in tables.
using Value = std::variant<long long, double, std::string>;
struct NamedValue {
    std::string name;
    Value value;
};
using NamedValues = std::vector<NamedValue>;

std::string valueText(const Value& value);
// "A=1 B=x".
std::string parametersText(const NamedValues& parameters);
// Null: there is none of this name.
const Value* findValue(const NamedValues& values, const std::string& name);

} // namespace common
