#include "jsonvalues.h"

#include <cmath>

namespace report {

namespace {

const Json* member(const Json& object, const char* name) {
    const auto found = object.find(name); // of no object: the end
    return found == object.end() ? nullptr : &*found;
}

} // namespace

std::string textOf(const Json& object, const char* name) {
    const Json* const value = member(object, name);
    return value && value->is_string() ? value->get<std::string>() : "";
}

std::optional<double> realOf(const Json& object, const char* name) {
    const Json* const value = member(object, name);
    return value && value->is_number() ? std::optional(value->get<double>()) : std::nullopt;
}

long long wholeOf(const Json& object, const char* name) {
    const double number = realOf(object, name).value_or(0);
    return std::fabs(number) < 9e18 ? static_cast<long long>(number) : 0;
}

bool flagOf(const Json& object, const char* name, bool otherwise) {
    const Json* const value = member(object, name);
    return value && value->is_boolean() ? value->get<bool>() : otherwise;
}

std::vector<std::string> textsOf(const Json& object, const char* name) {
    std::vector<std::string> texts;
    if (const Json* const list = partOf(object, name)) {
        for (const Json& item : *list) {
            if (item.is_string()) {
                texts.push_back(item.get<std::string>());
            }
        }
    }
    return texts;
}

const Json* partOf(const Json& object, const char* name) {
    const Json* const value = member(object, name);
    return value && value->is_structured() ? value : nullptr;
}

NamedValues valuesOf(const Json& object, const char* name) {
    NamedValues values;
    const Json* const part = partOf(object, name);
    if (!part || !part->is_object()) {
        return values;
    }
    for (const auto& [key, value] : part->items()) {
        if (value.is_string()) {
            values.push_back({key, value.get<std::string>()});
        } else if (value.is_number_integer()) {
            values.push_back({key, value.get<long long>()});
        } else if (value.is_number()) {
            values.push_back({key, value.get<double>()});
        } else if (!value.is_null()) {
            values.push_back({key, value.dump()});
        }
    }
    return values;
}

} // namespace report
