#include "keys.h"

#include <algorithm>
#include <string_view>

namespace report {

namespace {

// Outputs, choice of tests, order, level of the log, questions. What is not listed may matter.
constexpr std::string_view indifferent = "?ABFHIJLOPQRUefghklmnoqrstuvx";

bool isDecisive(const std::string& key, const std::set<std::string>& parameters) {
    if (key.size() < 2 || key[0] != '-' || indifferent.find(key[1]) != std::string_view::npos) {
        return false;
    }
    // -dCodeFile=bib chooses cases: their parameters tell it.
    return !key.starts_with("-d") || !parameters.contains(key.substr(2, key.find('=') - 2));
}

} // namespace

std::set<std::string> caseParameters(const std::vector<Run>& runs) {
    std::set<std::string> names;
    for (const Run& run : runs) {
        for (const Measurement& row : run.measurements) {
            for (const auto& [name, value] : row.parameters) {
                names.insert(name);
            }
        }
    }
    return names;
}

std::vector<std::string> decisiveKeys(const Run& run, const std::set<std::string>& parameters) {
    std::vector<std::string> keys;
    std::copy_if(run.facts.keys.begin(), run.facts.keys.end(), std::back_inserter(keys),
                 [&](const std::string& key) { return isDecisive(key, parameters); });
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace report
