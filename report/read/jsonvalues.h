#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "model.h"

// Members of an object, whatever stands in their place: of another kind, or none, they are empty.
namespace report {

using Json = nlohmann::ordered_json; // parameters keep their order

std::string textOf(const Json& object, const char* name);
std::optional<double> realOf(const Json& object, const char* name);
long long wholeOf(const Json& object, const char* name);
bool flagOf(const Json& object, const char* name, bool otherwise = false);
std::vector<std::string> textsOf(const Json& object, const char* name);
// Null: there is no such object or list.
const Json* partOf(const Json& object, const char* name);
// Of {"CodeLength": 16384, "CodeFile": "bib"}; null is left out.
NamedValues valuesOf(const Json& object, const char* name);

} // namespace report
