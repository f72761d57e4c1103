#include "judge.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

// How the outputs of the two sides differ, as a text.
namespace compare {
namespace {

// Without a number of decimals: all that are needed to read the same number back.
std::string fixed(double value, std::optional<int> decimals = std::nullopt) {
    std::array<char, 1100> text; // the smallest double has 1,074 decimals
    char* const end = text.data() + text.size();
    constexpr auto format = std::chars_format::fixed;
    const auto result = decimals ? std::to_chars(text.data(), end, value, format, *decimals)
                                 : std::to_chars(text.data(), end, value, format);
    return {text.data(), result.ptr};
}

bool isWhole(double value) {
    return std::trunc(value) == value;
}

std::string arrow(const std::string& base, const std::string& changed) {
    return base + " -> " + changed;
}

// With as many decimals as the difference needs, at least two unless both are whole.
std::string numbersText(double base, double changed) {
    constexpr int most = 6;
    for (int decimals = isWhole(base) && isWhole(changed) ? 0 : 2; decimals <= most; ++decimals) {
        if (fixed(base, decimals) != fixed(changed, decimals)) {
            return arrow(fixed(base, decimals), fixed(changed, decimals));
        }
    }
    return arrow(fixed(base), fixed(changed));
}

std::optional<double> number(const Value& value) {
    if (const auto* whole = std::get_if<long long>(&value)) {
        return static_cast<double>(*whole);
    }
    const auto* real = std::get_if<double>(&value);
    return real ? std::optional(*real) : std::nullopt;
}

std::string text(const Value& value) {
    if (const auto* whole = std::get_if<long long>(&value)) {
        return std::to_string(*whole);
    }
    const auto* real = std::get_if<double>(&value);
    return real ? fixed(*real) : std::get<std::string>(value);
}

bool areEqual(double base, double changed) {
    return base == changed || (std::isnan(base) && std::isnan(changed));
}

bool areEqual(const Value& base, const Value& changed) {
    if (std::holds_alternative<double>(base) || std::holds_alternative<double>(changed)) {
        const auto baseNumber = number(base);
        const auto changedNumber = number(changed);
        return baseNumber && changedNumber && areEqual(*baseNumber, *changedNumber);
    }
    return base == changed;
}

bool areEqual(const NamedValues& base, const NamedValues& changed) {
    return std::equal(base.begin(), base.end(), changed.begin(), changed.end(),
                      [](const NamedValue& a, const NamedValue& b) {
                          return a.name == b.name && areEqual(a.value, b.value);
                      });
}

std::string valuesText(const Value& base, const Value& changed) {
    const auto baseNumber = number(base);
    const auto changedNumber = number(changed);
    const bool areInteger =
        std::holds_alternative<long long>(base) && std::holds_alternative<long long>(changed);
    if (baseNumber && changedNumber && !areInteger) {
        return numbersText(*baseNumber, *changedNumber);
    }
    return arrow(text(base), text(changed));
}

const Value* find(const NamedValues& values, const std::string& name) {
    for (const NamedValue& value : values) {
        if (value.name == name) {
            return &value.value;
        }
    }
    return nullptr;
}

void addValues(std::vector<std::string>& differences, const NamedValues& base,
               const NamedValues& changed) {
    for (const auto& [name, value] : base) {
        const Value* other = find(changed, name);
        if (!other) {
            differences.push_back(name + ' ' + arrow(text(value), "none"));
        } else if (!areEqual(value, *other)) {
            differences.push_back(name + ' ' + valuesText(value, *other));
        }
    }
    for (const auto& [name, value] : changed) {
        if (!find(base, name)) {
            differences.push_back(name + ' ' + arrow("none", text(value)));
        }
    }
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& each : texts) {
        all += (all.empty() ? "" : ", ") + each;
    }
    return all;
}

} // namespace

std::string outputDifference(const Case& measured) {
    const Outcome& base = measured.outcome.base;
    const Outcome& changed = measured.outcome.changed;
    std::vector<std::string> differences;
    if (base.status != changed.status) {
        differences.push_back("status " +
                              arrow(std::to_string(base.status), std::to_string(changed.status)));
    }
    // What other parameters make is not expected to be the same.
    if (!areEqual(measured.parameters.base, measured.parameters.changed)) {
        return joined(differences);
    }
    addValues(differences, base.values, changed.values);
    if (base.unit != changed.unit) {
        differences.push_back("unit " + arrow(base.unit, changed.unit));
    }
    if (!areEqual(base.unitsPerCall, changed.unitsPerCall)) {
        differences.push_back("units per call " +
                              numbersText(base.unitsPerCall, changed.unitsPerCall));
    }
    return joined(differences);
}

} // namespace compare
