#include "judge.h"

#include "effects.h"

#include <algorithm>
#include <cmath>

// What a case says by itself.
//
// Rounds of one pair of processes resemble each other: a neighbour stays for a while, and the
// addresses of a process make it a little quicker or slower for all its life. So a start counts
// once, however many rounds it has. Its median leaves the rounds out of account that a burst hit.
// What is left is independent from start to start; and as the order within a round is drawn, a
// start of two equal builds reads as likely +x as -x, which is all that the signed-rank statistics
// ask for.
namespace compare {
namespace {

constexpr Side sides[] = {Side::base, Side::changed};

double unitsPerCall(const Outcome& outcome) {
    return outcome.unitsPerCall > 0 ? outcome.unitsPerCall : 1;
}

double clocksPerUnit(const Case& measured, const Round& round, Side side) {
    return round.turns[side].clocks / unitsPerCall(measured.outcome[side]);
}

// Nothing when the clock did not advance in any of its rounds.
std::optional<double> startEffect(const Case& measured, const Start& start) {
    std::vector<double> ratios;
    for (const Round& round : start.rounds) {
        const double base = clocksPerUnit(measured, round, Side::base);
        const double changed = clocksPerUnit(measured, round, Side::changed);
        if (base > 0 && changed > 0) {
            ratios.push_back(std::log(changed / base));
        }
    }
    return ratios.empty() ? std::nullopt : std::optional(median(std::move(ratios)));
}

double medianClocksPerUnit(const Case& measured, Side side) {
    std::vector<double> clocks;
    for (const Start& start : measured.starts) {
        for (const Round& round : start.rounds) {
            clocks.push_back(clocksPerUnit(measured, round, side));
        }
    }
    return clocks.empty() ? 0 : median(std::move(clocks));
}

double disturbedShare(const Case& measured) {
    int rounds = 0;
    int disturbed = 0;
    for (const Start& start : measured.starts) {
        for (const Round& round : start.rounds) {
            ++rounds;
            disturbed += round.turns.base.isDisturbed() || round.turns.changed.isDisturbed();
        }
    }
    return rounds == 0 ? 0 : static_cast<double>(disturbed) / rounds;
}

} // namespace

std::map<int, double> effectsByPass(const Case& measured) {
    std::map<int, double> effects;
    for (const Start& start : measured.starts) {
        if (const auto effect = startEffect(measured, start)) {
            effects[start.pass] = *effect;
        }
    }
    return effects;
}

std::vector<double> startEffects(const Case& measured) {
    std::vector<double> effects;
    for (const auto& [pass, effect] : effectsByPass(measured)) {
        effects.push_back(effect);
    }
    return effects;
}

Effect effectOf(const Case& measured, const Looks& looks) {
    const std::vector<double> effects = startEffects(measured);
    Effect effect;
    effect.interval = signedRankInterval(effects, looks.confidence);
    // Bonferroni over the looks: whichever of them ended the case, the chance that L times its
    // p-value is at most t is at most t.
    effect.pValue =
        std::min(1.0, static_cast<double>(looks.passes.size()) * signedRankPValue(effects));
    effect.adjusted = effect.pValue;
    for (const Side side : sides) {
        effect.clocksPerUnit[side] = medianClocksPerUnit(measured, side);
    }
    effect.disturbedShare = disturbedShare(measured);
    return effect;
}

bool isMeasured(const Case& tried) {
    return tried.failures.empty() && !startEffects(tried).empty();
}

} // namespace compare
