#include "keys.h"

#include <algorithm>
#include <string_view>

namespace report {

namespace {

// Outputs, choice of tests, order, level of the log, questions. What is not listed may matter.
constexpr std::string_view indifferent = "?ABFHIJLOPQRUefghklmnoqrstuvx";

// -dCodeFile=bib chooses cases: their parameters tell it.
bool choosesCases(const std::string& key, const Run& run) {
    const std::string name = key.substr(2, key.find('=') - 2);
    return std::any_of(run.measurements.begin(), run.measurements.end(), [&](const auto& row) {
        return common::findValue(row.parameters, name) != nullptr;
    });
}

bool isDecisive(const std::string& key, const Run& run) {
    if (key.size() < 2 || key[0] != '-' || indifferent.find(key[1]) != std::string_view::npos) {
        return false;
    }
    return !key.starts_with("-d") || !choosesCases(key, run);
}

} // namespace

std::vector<std::string> decisiveKeys(const Run& run) {
    std::vector<std::string> keys;
    std::copy_if(run.facts.keys.begin(), run.facts.keys.end(), std::back_inserter(keys),
                 [&](const std::string& key) { return isDecisive(key, run); });
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace report
