#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace report {

// What has been read, put together.
struct Merged {
    Report report;                     // without remarks
    std::vector<std::string> notes;    // what was left out because it is there in a better form
    std::vector<std::string> problems; // what hardly was meant, a sentence each
};
Merged merged(std::vector<Run> runs, std::vector<Comparison> comparisons);

} // namespace report
