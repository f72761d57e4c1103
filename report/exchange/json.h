#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace report {

using Json = nlohmann::ordered_json;

// On one line. Bytes that are no UTF-8, say of a file name, become replacement characters.
std::string compact(const Json& json);
// The elements of an array or of an object one a line, to be searched with line tools.
std::string lines(const std::vector<std::string>& elements);

} // namespace report
