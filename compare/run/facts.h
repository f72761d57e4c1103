#pragma once

#include <string>

// What a comparison says of the machine that it ran on.
namespace compare {

std::string processorName(const std::string& cpuinfo); // from the text of /proc/cpuinfo
std::string processorName();
std::string localTime(); // RFC 3339

} // namespace compare
