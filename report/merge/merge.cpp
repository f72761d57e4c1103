#include "merge.h"

#include <utility>

#include "groups.h"
#include "repeats.h"

namespace report {

Merged merged(std::vector<Run> runs, std::vector<Comparison> comparisons) {
    Merged result;
    result.problems = leaveOutRepeats(runs);
    const std::vector<std::string> repeated = leaveOutRepeats(comparisons);
    result.problems.insert(result.problems.end(), repeated.begin(), repeated.end());
    result.notes = leaveOutTablesOfRecords(runs);
    Groups groups = groupsOf(runs);
    result.problems.insert(result.problems.end(), groups.problems.begin(), groups.problems.end());
    result.report.groups = std::move(groups.groups);
    result.report.runs = std::move(runs);
    result.report.comparisons = std::move(comparisons);
    return result;
}

} // namespace report
