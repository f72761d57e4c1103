#pragma once

#include <string>

namespace compare {

// A line of at most so many columns: "ntksEncodeLZ4_8u   42%, 3 min 20 s left  CodeLength=16384".
std::string progressText(const std::string& caseName, double share, double secondsLeft,
                         int columns);

} // namespace compare
