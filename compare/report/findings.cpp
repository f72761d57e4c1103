#include "findings.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "format.h"

namespace compare {

namespace {

constexpr double shareThatMatters = 0.1; // of disturbed rounds

int rankOf(const Finding& finding) {
    return finding.hasFailedOnNewOnly() ? 0 : finding.hasFailed() ? 1 : 2;
}

bool comesBefore(const Finding& a, const Finding& b) {
    const int ranks[] = {rankOf(a), rankOf(b)};
    if (ranks[0] != ranks[1] || ranks[0] < 2) {
        return ranks[0] < ranks[1];
    }
    return a.effect->interval.estimate > b.effect->interval.estimate;
}

std::string stopText(Stop stop, const Settings& settings) {
    switch (stop) {
    case Stop::time: return durationText(settings.secondsPerCase) + " used up";
    case Stop::budget: return "budget used up";
    case Stop::interrupted: return "interrupted";
    default: return "";
    }
}

std::vector<std::string> failureLines(const Failure& failure) {
    std::vector<std::string> lines = {"failed on the " + std::string(nameOf(failure.side)) +
                                      " side: " + printable(failure.what)};
    std::istringstream detail(failure.detail);
    for (std::string line; std::getline(detail, line);) {
        lines.push_back("  | " + printable(line));
    }
    return lines;
}

std::string givenKeys(const SideFacts& side) {
    std::vector<std::string> keys = side.keys;
    std::erase(keys, "-B"); // always there
    return keysText(keys);
}

std::string counted(int count, const char* what) {
    return count == 0 ? "" : std::to_string(count) + " " + what;
}

// "1 is open", "2 are open"; empty for none.
std::string counted(int count, const char* one, const char* several, const char* what) {
    return count == 0 ? ""
                      : std::to_string(count) + " " + (count == 1 ? one : several) + " " + what;
}

const char* const adviceText = " Give it more --budget or --time, or fewer cases.";

bool isUndecided(const Counts& counts) {
    return counts.measured > 0 && counts.withInterval == 0;
}

// Without the full stop.
std::string decisionText(const Counts& counts, const std::string& tolerance) {
    const std::string beyond = "slower by more than " + tolerance;
    if (counts.measured == 0) {
        return "Nothing could be measured" +
               (counts.failed ? ": " + countText(counts.failed, "case") + " failed" : "");
    }
    if (isUndecided(counts)) {
        return "Nothing was decided: " + std::to_string(counts.measured) + " of " +
               countText(counts.wanted(), "case") + (counts.measured == 1 ? " was" : " were") +
               " begun, none has the passes that a verdict needs";
    }
    if (counts.decided() == 0) {
        return "No case was decided";
    }
    if (counts.decided() == 1) {
        return "The only decided case is " + (counts.beyondTolerance ? beyond
                                              : counts.faster        ? "faster"
                                                                     : "not " + beyond);
    }
    return "Of " + std::to_string(counts.decided()) + " decided cases " +
           (counts.beyondTolerance ? counted(counts.beyondTolerance, "is", "are", beyond.c_str())
                                   : "none is " + beyond) +
           (counts.faster ? ", " + counted(counts.faster, "is", "are", "faster") : "");
}

std::string restText(const Counts& counts) {
    return joined({counted(counts.open, "is", "are", "open"),
                   counted(counts.notReached, "was", "were", "not reached")},
                  ", ");
}

} // namespace

const char* nameOf(Side side) {
    return side == Side::base ? "base" : "new";
}

const char* nameOf(Stop stop) {
    switch (stop) {
    case Stop::precise: return "precise";
    case Stop::time: return "time";
    case Stop::budget: return "budget";
    case Stop::interrupted: return "interrupted";
    case Stop::failed: return "failed";
    case Stop::passedOver: return "passed over";
    }
    return "";
}

const char* nameOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::slower: return "slower";
    case Verdict::faster: return "faster";
    case Verdict::same: return "same";
    case Verdict::open: return "open";
    }
    return "";
}

bool Finding::hasFailedOnNewOnly() const {
    return hasFailed() &&
           std::all_of(tried->failures.begin(), tried->failures.end(),
                       [](const Failure& failure) { return failure.side == Side::changed; });
}

bool Finding::hasInterval() const {
    return isMeasured && std::isfinite(effect->interval.halfWidth());
}

bool Finding::isChange() const {
    const bool isClear =
        isMeasured && (effect->verdict == Verdict::slower || effect->verdict == Verdict::faster);
    return hasFailed() || isClear || !difference.empty();
}

std::vector<Finding> findingsOf(const Comparison& comparison, const Judgement& judgement) {
    static const Effect none;
    std::vector<Finding> findings;
    for (std::size_t i = 0; i < comparison.cases.size(); ++i) {
        Finding finding;
        finding.tried = &comparison.cases[i];
        finding.isMeasured = isMeasured(*finding.tried);
        finding.effect = i < judgement.effects.size() ? &judgement.effects[i] : &none;
        if (finding.isMeasured) {
            finding.difference = outputDifference(*finding.tried);
            finding.isBeyondTolerance =
                finding.effect->verdict == Verdict::slower &&
                finding.effect->interval.estimate > std::log1p(comparison.settings.tolerance);
        }
        findings.push_back(finding);
    }
    return findings;
}

std::vector<Finding> rowsOf(const std::vector<Finding>& findings) {
    std::vector<Finding> rows;
    std::copy_if(findings.begin(), findings.end(), std::back_inserter(rows),
                 [](const Finding& finding) { return finding.isMeasured || finding.hasFailed(); });
    std::stable_sort(rows.begin(), rows.end(), comesBefore);
    return rows;
}

std::string verdictText(const Finding& finding) {
    if (finding.isMeasured) {
        return nameOf(finding.effect->verdict);
    }
    if (finding.hasFailed()) {
        return "failed";
    }
    return finding.tried->stop == Stop::passedOver ? "passed over" : "not reached";
}

std::string intervalText(const Interval& interval) {
    if (!std::isfinite(interval.halfWidth())) {
        return percentText(interval.estimate) + "  no interval yet";
    }
    return percentText(interval.estimate) + "  [" + percentText(interval.low) + ", " +
           percentText(interval.high) + "]";
}

std::vector<std::string> remarksOf(const Finding& finding) {
    std::vector<std::string> lines;
    for (const Failure& failure : finding.tried->failures) {
        for (const std::string& line : failureLines(failure)) {
            lines.push_back(line);
        }
    }
    if (!finding.isMeasured) {
        return lines;
    }
    if (!finding.difference.empty()) {
        lines.push_back("outputs differ: " + printable(finding.difference));
    }
    return lines;
}

std::string asideText(const Finding& finding, const Settings& settings) {
    if (!finding.isMeasured) {
        return "";
    }
    const Effect& effect = *finding.effect;
    const bool isTolerated = effect.verdict == Verdict::slower && !finding.isBeyondTolerance;
    const bool isDisturbed =
        effect.verdict == Verdict::open && effect.disturbedShare >= shareThatMatters;
    return joined({isTolerated ? "tolerated" : "", stopText(finding.tried->stop, settings),
                   isDisturbed
                       ? std::to_string(std::lround(100 * effect.disturbedShare)) + "% disturbed"
                       : ""},
                  ", ");
}

std::vector<std::pair<std::string, Summary>> functionsOf(const Judgement& judgement) {
    std::vector<std::pair<std::string, Summary>> functions;
    std::copy_if(judgement.functions.begin(), judgement.functions.end(),
                 std::back_inserter(functions),
                 [](const auto& function) { return function.second.cases > 1; });
    std::stable_sort(functions.begin(), functions.end(), [](const auto& a, const auto& b) {
        return a.second.interval.estimate > b.second.interval.estimate;
    });
    return functions;
}

Counts countsOf(const std::vector<Finding>& findings) {
    Counts counts;
    for (const Finding& finding : findings) {
        counts.differing += !finding.difference.empty();
        counts.beyondTolerance += finding.isBeyondTolerance;
        counts.failed += finding.hasFailed();
        counts.failedOnNewOnly += finding.hasFailedOnNewOnly();
        if (finding.isMeasured) {
            ++counts.measured;
            counts.withInterval += finding.hasInterval();
            const Verdict verdict = finding.effect->verdict;
            counts.slower += verdict == Verdict::slower;
            counts.faster += verdict == Verdict::faster;
            counts.same += verdict == Verdict::same;
            counts.open += verdict == Verdict::open;
        } else if (!finding.hasFailed()) {
            ++(finding.tried->stop == Stop::passedOver ? counts.passedOver : counts.notReached);
        }
    }
    return counts;
}

std::string answerText(const Counts& counts, const Comparison& comparison) {
    const std::string tolerance = settingText(comparison.settings.tolerance);
    return joined(
               {decisionText(counts, tolerance),
                counts.decided() > 0 || counts.withInterval > 0 ? restText(counts) : "",
                counts.failedOnNewOnly && counts.measured
                    ? countText(counts.failedOnNewOnly, "case") + " failed on the new side only"
                    : "",
                counts.differing ? "outputs differ in " + countText(counts.differing, "case") : ""},
               "; ") +
           "." + (isUndecided(counts) ? adviceText : "");
}

std::string countsText(const Counts& counts, const Settings& settings) {
    const std::string beyond = " (" + std::to_string(counts.beyondTolerance) + " by more than " +
                               settingText(settings.tolerance) + ")";
    return joined({counts.slower ? counted(counts.slower, "slower") + beyond : "",
                   counted(counts.faster, "faster"), counted(counts.same, "same"),
                   counted(counts.open, "open"), counted(counts.failed, "failed"),
                   counted(counts.passedOver, "passed over"),
                   counted(counts.notReached, "not reached")},
                  ", ");
}

std::string noiseText(const Counts& counts, const Judgement& judgement) {
    if (counts.withInterval == 0) {
        return "not known, too few passes for an interval";
    }
    return "intervals of +-" + widthText(judgement.medianHalfWidth) + " in the median case, +-" +
           widthText(judgement.largestHalfWidth) + " in the widest";
}

std::string disturbanceText(const std::vector<Finding>& findings) {
    double rounds = 0, disturbed = 0;
    for (const Finding& finding : findings) {
        for (const Start& start : finding.tried->starts) {
            const auto count = static_cast<double>(start.rounds.size());
            rounds += finding.isMeasured ? count : 0;
            disturbed += finding.isMeasured ? count * finding.effect->disturbedShare : 0;
        }
    }
    return disturbed < shareThatMatters * rounds || rounds == 0
               ? ""
               : "Other processes took the processor away in " +
                     std::to_string(std::lround(100 * disturbed / rounds)) + "% of the rounds.";
}

std::string unitText(const std::vector<Finding>& findings) {
    const bool hasElements =
        std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
            return finding.isMeasured && finding.tried->outcome.base.unit == "e";
        });
    return hasElements ? "Base and New are clocks per unit; e is an element: a byte (decoders of "
                         "LZ4 and ZFP: a compressed byte; encoder of ZFP: a value)."
                       : "";
}

std::string promiseText(const Comparison& comparison) {
    return settingText(1 - comparison.settings.alpha) +
           " that all of slower and faster are true (Holm over the cases), and for each interval";
}

std::string incompleteText(const Comparison& comparison) {
    if (comparison.isComplete) {
        return "";
    }
    const bool isInterrupted =
        std::any_of(comparison.cases.begin(), comparison.cases.end(),
                    [](const Case& tried) { return tried.stop == Stop::interrupted; });
    return isInterrupted ? "INCOMPLETE: interrupted" : "INCOMPLETE: the budget was used up";
}

std::string commonKeysText(const Comparison& comparison) {
    const Both<SideFacts>& sides = comparison.sides;
    return sides.base.keys == sides.changed.keys ? printable(givenKeys(sides.base)) : "";
}

std::string sideText(const Comparison& comparison, Side which) {
    const SideFacts& side = comparison.sides[which];
    const std::string keys = commonKeysText(comparison).empty() ? givenKeys(side) : "";
    return printable(
        joined({side.directory, side.version, keys.empty() ? "" : "keys " + keys}, ", "));
}

std::string machineText(const Comparison& comparison) {
    return printable(
        joined({comparison.machine,
                comparison.cpu < 0 ? "" : "processor " + std::to_string(comparison.cpu),
                durationText(comparison.wallSeconds) + " in " + std::to_string(comparison.passes) +
                    (comparison.passes == 1 ? " pass" : " passes")},
               ", "));
}

std::vector<std::string> idleKeyLines(const Comparison& comparison) {
    const auto& [base, changed] = comparison.remarks;
    std::vector<std::string> lines;
    for (const std::string& remark : base) {
        const bool isCommon = std::count(changed.begin(), changed.end(), remark) > 0;
        lines.push_back((isCommon ? "without effect: " : "without effect on the base side: ") +
                        printable(remark));
    }
    for (const std::string& remark : changed) {
        if (std::count(base.begin(), base.end(), remark) == 0) {
            lines.push_back("without effect on the new side: " + printable(remark));
        }
    }
    return lines;
}

std::vector<std::string> unpairedLines(const Comparison& comparison) {
    std::vector<std::string> lines;
    for (const Unpaired& alone : comparison.unpaired) {
        lines.push_back("only on the " + std::string(nameOf(alone.side)) + " side: " +
                        printable(joined({alone.function, parametersText(alone.parameters)}, " ")));
    }
    return lines;
}

std::vector<std::string> passedOverLines(const Comparison& comparison) {
    std::map<std::string, int> reasons;
    for (const Case& tried : comparison.cases) {
        if (tried.stop == Stop::passedOver && tried.failures.empty()) {
            ++reasons[tried.passedOver.empty() ? "the tests do not measure them"
                                               : tried.passedOver];
        }
    }
    std::vector<std::string> lines;
    for (const auto& [why, count] : reasons) {
        lines.push_back(countText(count, "case") + " passed over: " + printable(why));
    }
    return lines;
}

} // namespace compare
