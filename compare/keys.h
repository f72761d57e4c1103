#pragma once

#include <string>
#include <vector>

namespace compare {

// Throws UsageError for the first of ntkperf's keys that makes no sense in a comparison, with the
// reason and what to use instead. Keys inside an argument file (-@) are not looked at.
void checkKeys(const std::vector<std::string>& keys);

} // namespace compare
