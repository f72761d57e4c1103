#include "judge.h"

#include "effects.h"

#include <algorithm>
#include <cmath>
#include <numeric>

// What the cases say together.
//
// Holm's method holds whatever the cases have to do with each other: the chance that any case
// without a difference is called slower or faster is at most alpha. And it grants at least what
// Bonferroni's grants, so a case that a look ended as clear stays clear however the others turn
// out.
namespace compare {
namespace {

// As planned; a run that ended before its first look told nobody of them.
Looks looksOf(const Comparison& comparison) {
    const double alpha = comparison.settings.alpha;
    if (comparison.looks.empty()) {
        return planLooks(static_cast<int>(comparison.cases.size()), alpha);
    }
    return {comparison.looks, 1 - alpha / static_cast<double>(comparison.looks.size())};
}

bool isWithin(const Interval& interval, double tolerance) {
    const double bound = std::log1p(tolerance);
    return -bound <= interval.low && interval.high <= bound;
}

Verdict verdictOf(const Effect& effect, const Settings& settings) {
    if (effect.adjusted <= settings.alpha && effect.interval.estimate != 0) {
        return effect.interval.estimate > 0 ? Verdict::slower : Verdict::faster;
    }
    return isWithin(effect.interval, settings.tolerance) ? Verdict::same : Verdict::open;
}

void giveVerdicts(std::vector<Effect*>& effects, const Settings& settings) {
    std::vector<double> pValues;
    for (const Effect* effect : effects) {
        pValues.push_back(effect->pValue);
    }
    const std::vector<double> adjusted = holmAdjusted(pValues);
    for (size_t i = 0; i < effects.size(); ++i) {
        effects[i]->adjusted = adjusted[i];
        effects[i]->verdict = verdictOf(*effects[i], settings);
    }
}

// The common passes end where the first of the cases was done, which the numbers themselves decide.
// It is one of the looks, though, so at a look's confidence the interval holds at whichever it was;
// and for a single case it is the case's own.
Summary summaryOf(const std::vector<const Case*>& cases, const Looks& looks) {
    std::map<int, std::vector<double>> passes;
    for (const Case* measured : cases) {
        for (const auto& [pass, effect] : effectsByPass(*measured)) {
            passes[pass].push_back(effect);
        }
    }
    std::vector<double> means;
    for (const auto& [pass, effects] : passes) {
        if (effects.size() == cases.size()) {
            means.push_back(std::accumulate(effects.begin(), effects.end(), 0.0) /
                            static_cast<double>(effects.size()));
        }
    }
    return {static_cast<int>(cases.size()), signedRankInterval(means, looks.confidence)};
}

void summarize(Judgement& judgement, const std::vector<const Case*>& cases, const Looks& looks) {
    std::map<std::string, std::vector<const Case*>> functions;
    for (const Case* measured : cases) {
        functions[measured->function].push_back(measured);
    }
    for (const auto& [function, ofFunction] : functions) {
        judgement.functions[function] = summaryOf(ofFunction, looks);
    }
    judgement.all = summaryOf(cases, looks);
}

void noteHalfWidths(Judgement& judgement, const std::vector<Effect*>& effects) {
    std::vector<double> halfWidths;
    for (const Effect* effect : effects) {
        if (std::isfinite(effect->interval.halfWidth())) {
            halfWidths.push_back(effect->interval.halfWidth());
        }
    }
    if (!halfWidths.empty()) {
        judgement.medianHalfWidth = median(halfWidths);
        judgement.largestHalfWidth = *std::max_element(halfWidths.begin(), halfWidths.end());
    }
}

} // namespace

std::vector<double> holmAdjusted(std::span<const double> pValues) {
    std::vector<size_t> rising(pValues.size());
    std::iota(rising.begin(), rising.end(), size_t{0});
    std::sort(rising.begin(), rising.end(),
              [&](size_t a, size_t b) { return pValues[a] < pValues[b]; });
    std::vector<double> adjusted(pValues.size());
    double largest = 0; // so far: none may be below that of a smaller p-value
    for (size_t i = 0; i < rising.size(); ++i) {
        const double factor = static_cast<double>(rising.size() - i);
        largest = std::max(largest, std::min(1.0, factor * pValues[rising[i]]));
        adjusted[rising[i]] = largest;
    }
    return adjusted;
}

bool isDone(const Effect& effect, const Settings& settings, int cases) {
    if (effect.interval.halfWidth() > std::log1p(settings.precision)) {
        return false;
    }
    const bool differs = effect.pValue * cases <= settings.alpha; // Bonferroni
    return differs ||
           (isWithin(effect.interval, settings.tolerance) && effect.interval.contains(0));
}

Judgement judge(const Comparison& comparison) {
    const Looks looks = looksOf(comparison);
    Judgement judgement;
    judgement.effects.resize(comparison.cases.size());
    std::vector<const Case*> measured;
    std::vector<Effect*> effects;
    for (size_t i = 0; i < comparison.cases.size(); ++i) {
        if (isMeasured(comparison.cases[i])) {
            judgement.effects[i] = effectOf(comparison.cases[i], looks);
            measured.push_back(&comparison.cases[i]);
            effects.push_back(&judgement.effects[i]);
        }
    }
    giveVerdicts(effects, comparison.settings);
    summarize(judgement, measured, looks);
    noteHalfWidths(judgement, effects);
    return judgement;
}

} // namespace compare
