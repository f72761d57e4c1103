#pragma once

#include <map>
#include <span>

#include "comparison.h"
#include "looks.h"
#include "ranks.h"

// From rounds to verdicts.
namespace compare {

enum class Verdict { slower, faster, same, open };

// One number a start: the median of its rounds' log ratios (new over base).
std::vector<double> startEffects(const Case& measured);

// Of a case that was measured. Logarithms of ratios.
struct Effect {
    Interval interval;   // at the confidence of a look
    double pValue = 1;   // all looks accounted for, this case alone
    double adjusted = 1; // all cases accounted for
    Verdict verdict = Verdict::open;
    Both<double> clocksPerUnit; // medians over the turns
    double disturbedShare = 0;  // of the rounds
};

Effect effectOf(const Case& measured, const Looks& looks); // without what needs the other cases

// p-values of a family of cases, adjusted by Holm's step-down method (1979).
std::vector<double> holmAdjusted(std::span<const double> pValues);

// Whether a look may end the case: narrow enough and clear whatever the other cases give.
bool isDone(const Effect& effect, const Settings& settings, int cases);

// A mean over several cases: the geometric mean of their ratios. From the passes in which all of
// them took part, as the cases of one pass share its processes and are not independent.
struct Summary {
    int cases = 0;
    Interval interval;
};

struct Judgement {
    std::vector<Effect>
        effects; // one for each case, in their order; only measured ones mean something
    std::map<std::string, Summary> functions;
    Summary all;
    // What this run could tell apart: half widths of the measured cases.
    double medianHalfWidth = 0;
    double largestHalfWidth = 0;
};
bool isMeasured(const Case& tried); // has starts and no failure
Judgement judge(const Comparison& comparison);

// Whether the outputs of the sides differ: their status or, of equal parameters, a value or the
// units per call. Empty: they do not; else "Ratio 1.85 -> 1.79".
std::string outputDifference(const Case& measured);

} // namespace compare
