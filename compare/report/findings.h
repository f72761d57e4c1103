#pragma once

#include <string>
#include <vector>

#include "comparison.h"
#include "judge.h"

// What table and Markdown say of a comparison, before either puts it into a form.
namespace compare {

const char* nameOf(Side side); // "base", "new"
const char* nameOf(Stop stop);
const char* nameOf(Verdict verdict);

// A case with what was judged of it.
struct Finding {
    const Case* tried = nullptr;
    const Effect* effect = nullptr;
    bool isMeasured = false;
    bool isBeyondTolerance = false; // slower by more than what does not matter
    std::string difference;         // of the outputs; empty: none

    bool hasFailed() const { return !tried->failures.empty(); }
    bool hasInterval() const; // measured in passes enough for one
    // Of the cases that failed, those that count as a change for the worse.
    bool hasFailedOnNewOnly() const;
    bool isChange() const; // what a reader must see: neither same nor open nor left out
};

// In the order of the comparison.
std::vector<Finding> findingsOf(const Comparison& comparison, const Judgement& judgement);
// Those that the table shows: the failed ones, then the measured ones, slowest first.
std::vector<Finding> rowsOf(const std::vector<Finding>& findings);

// "slower", "failed", "passed over", "not reached".
std::string verdictText(const Finding& finding);
// "+1.02%  [+0.81%, +1.24%]", "+1.02%  no interval yet".
std::string intervalText(const Interval& interval);
// What is to be said beside the verdict: "1 s used up, 40% disturbed"; empty for a case that became
// precise. Disturbance is told of open cases only: the others were decided in spite of it.
std::string asideText(const Finding& finding, const Settings& settings);
// What is to be said below it, a line each: failures, outputs that differ.
std::vector<std::string> remarksOf(const Finding& finding);

// Those with several cases, slowest first, as the cases.
std::vector<std::pair<std::string, Summary>> functionsOf(const Judgement& judgement);

struct Counts {
    int measured = 0, slower = 0, faster = 0, same = 0, open = 0;
    int failed = 0, failedOnNewOnly = 0, passedOver = 0, notReached = 0;
    int beyondTolerance = 0, differing = 0;
    int withInterval = 0; // of the measured ones; the others have too few passes

    int decided() const { return slower + faster + same; }
    int wanted() const { return measured + failed + notReached; }
};
Counts countsOf(const std::vector<Finding>& findings);

// The answer in one sentence.
std::string answerText(const Counts& counts, const Comparison& comparison);
// "2 slower (1 by more than 1%), 1 faster, 8 same, 1 open, 1 failed, 3 not reached".
std::string countsText(const Counts& counts, const Settings& settings);
// How small a difference the run can tell.
std::string noiseText(const Counts& counts, const Judgement& judgement);
// How often others had the processor; empty when that was seldom.
std::string disturbanceText(const std::vector<Finding>& findings);
// What the clocks are divided by; empty when nothing was measured.
std::string unitText(const std::vector<Finding>& findings);
// What the verdicts promise.
std::string promiseText(const Comparison& comparison);
std::string incompleteText(const Comparison& comparison); // empty: it is complete
// "own, 12.0.0, keys -fLZ4"; without the keys where those of both sides are the same.
std::string sideText(const Comparison& comparison, Side which);
std::string commonKeysText(const Comparison& comparison);
std::string machineText(const Comparison& comparison);
// Keys and settings that had no effect, a line each.
std::vector<std::string> idleKeyLines(const Comparison& comparison);
// Announced by one side alone, a line each.
std::vector<std::string> unpairedLines(const Comparison& comparison);
// Why cases were passed over, with how many, a line each.
std::vector<std::string> passedOverLines(const Comparison& comparison);

} // namespace compare
