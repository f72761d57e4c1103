#include <cmath>

#include "findings.h"
#include "format.h"
#include "report.h"

namespace compare {

std::string selfText(const Comparison& comparison, const Judgement& judgement) {
    const std::vector<Finding> findings = findingsOf(comparison, judgement);
    const Counts counts = countsOf(findings);
    if (counts.withInterval == 0) {
        return counts.measured ? "The time was too short to tell how small a difference this "
                                 "machine shows now.\n"
                               : answerText(counts, comparison) + "\n";
    }
    const int wrong = counts.slower + counts.faster;
    return "Now, in " + durationText(comparison.wallSeconds) +
           ", this machine tells differences above " + widthText(judgement.medianHalfWidth) +
           " apart " +
           (counts.withInterval == 1
                ? "in the only case"
                : "in half of the " + countText(counts.withInterval, "case") + " and above " +
                      widthText(judgement.largestHalfWidth) + " in all of them") +
           (wrong ? ", but it found one in " + countText(wrong, "case") + " where there is none"
                  : "") +
           ".\n";
}

int exitStatus(const Comparison& comparison, const Judgement& judgement) {
    const Counts counts = countsOf(findingsOf(comparison, judgement));
    if (counts.measured == 0) {
        return 2;
    }
    // A case that only the new side fails needs no interval to be a change for the worse.
    const bool isWorse = counts.beyondTolerance + counts.failedOnNewOnly > 0;
    return isWorse ? 1 : counts.withInterval > 0 ? 0 : 2;
}

} // namespace compare
