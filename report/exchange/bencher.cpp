// Bencher Metric Format: an object of cases, each an object of measures with value and, where
// known, lower_value and upper_value. Not clocks per byte: the unit of a case never changes, but
// the bytes that a unit stands for follow from the ratio, and a threshold shall watch the code.
#include "casename.h"
#include "exchange.h"
#include "figures.h"
#include "json.h"

namespace report {

std::string bencherText(const Report& report) {
    std::vector<std::string> members;
    for (const Group& group : report.groups) {
        for (const Case& tried : group.cases) {
            if (tried.samples.empty() || !isFigure(tried.median)) {
                continue;
            }
            Json clocks = {{"value", tried.median}};
            if (hasRange(tried)) {
                clocks["lower_value"] = tried.smallest;
                clocks["upper_value"] = tried.largest;
            }
            members.push_back(compact(caseName(group, tried)) + ": " +
                              compact({{"clocks-per-unit", clocks}}));
        }
    }
    return "{" + lines(members) + "}\n";
}

} // namespace report
