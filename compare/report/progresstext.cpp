#include "progresstext.h"

#include <algorithm>
#include <cmath>

#include "format.h"

namespace compare {

std::string progressText(const std::string& caseName, double share, double secondsLeft,
                         int columns) {
    const long percent = std::lround(100 * std::clamp(share, 0.0, 1.0));
    const std::string left =
        std::isfinite(secondsLeft) ? ", " + durationText(std::max(0.0, secondsLeft)) + " left" : "";
    // The function first: that one is at work on, and what a cut leaves.
    const std::size_t blank = std::min(caseName.find(' '), caseName.size());
    const std::string parameters = blank < caseName.size() ? caseName.substr(blank + 1) : "";
    const std::string line =
        joined({printable(caseName.substr(0, blank)),
                padded(std::to_string(percent) + "%", 4, true) + left, printable(parameters)},
               "  ");
    return cut(line, columns);
}

} // namespace compare
