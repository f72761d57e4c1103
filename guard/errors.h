#pragma once

#include <string>

namespace guard {

// To standard error. On a terminal the program may show there how far it is, in a line that it
// renews: the text takes its place.
void writeErrors(const std::string& text);

} // namespace guard
