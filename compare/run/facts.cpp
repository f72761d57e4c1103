#include "facts.h"

#include <ctime>
#include <fstream>
#include <iterator>

namespace compare {

std::string processorName(const std::string& cpuinfo) {
    const std::string field = "\nmodel name";
    const size_t start = ("\n" + cpuinfo).find(field);
    if (start == std::string::npos) {
        return "";
    }
    const std::string line = cpuinfo.substr(start, cpuinfo.find('\n', start) - start);
    const size_t name = line.find_first_not_of(" \t", line.find(':') + 1);
    return name == std::string::npos ? "" : line.substr(name);
}

std::string processorName() {
    std::ifstream file("/proc/cpuinfo");
    return processorName(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::string localTime() {
    const time_t now = time(nullptr);
    tm fields{};
    localtime_r(&now, &fields);
    char text[40];
    strftime(text, sizeof text, "%FT%T%z", &fields);
    std::string withColon(text);
    withColon.insert(withColon.size() - 2, 1, ':'); // +0100 -> +01:00
    return withColon;
}

} // namespace compare
