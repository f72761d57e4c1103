#pragma once

#include <string>
#include <utility>
#include <vector>

namespace common {

// Of options with the files that they name, empty for none: what is wrong when two are the same
// file, of which the second would replace the first. Else empty.
std::string sameFile(const std::vector<std::pair<std::string, std::string>>& files);

} // namespace common
