#pragma once

#include <string>

namespace compare {

// What to say when the measured library that this process loaded has no function of this name;
// empty when it has one. Without asking the loader would end the process at the first call.
std::string missingFunction(const std::string& function);

} // namespace compare
