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
    const std::string head = padded(std::to_string(percent) + "%", 4, true) + left;
    return shortened(caseName.empty() ? head : head + ": " + printable(caseName), columns);
}

} // namespace compare
