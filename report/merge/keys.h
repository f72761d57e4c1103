#pragma once

#include <set>
#include <string>
#include <vector>

#include "model.h"

namespace report {

// The names of the parameters that tell cases apart in any of the runs.
std::set<std::string> caseParameters(const std::vector<Run>& runs);

// The keys of a run that may change its figures, sorted: without those that name outputs, choose
// tests or set one of these parameters. All runs count for them: a checksum reads no file, and is
// the same whichever files the key names for other functions.
std::vector<std::string> decisiveKeys(const Run& run, const std::set<std::string>& parameters);

} // namespace report
