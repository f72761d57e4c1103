#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace report {

struct Groups {
    std::vector<Group> groups;         // in the order of their first runs
    std::vector<std::string> problems; // a sentence each
};

// Puts runs together that can be: of one machine, of the same builds, with the same keys (keys.h),
// both records or both tables with the same columns.
Groups groupsOf(const std::vector<Run>& runs);

} // namespace report
