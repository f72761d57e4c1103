// Comparisons with known results.
#pragma once

#include <cmath>
#include <limits>

#include "../../texts.h"
#include "report.h"

namespace compare {

constexpr double infinite = std::numeric_limits<double>::infinity();

struct Handmade {
    Comparison comparison;
    Judgement judgement;

    Handmade() {
        comparison.sides.base = {"/ref", {"-B", "-fLZ4"}, {"/ref/libntkdc.so.12"}, "12.0.0"};
        comparison.sides.changed = {"own", {"-B", "-fLZ4"}, {"/own/libntkdc.so.12"}, "12.0.1"};
        comparison.machine = "A processor";
        comparison.cpu = 1;
        comparison.started = "2026-11-22T01:02:03Z";
        comparison.wallSeconds = 75;
        comparison.passes = 12;
        comparison.looks = {6, 12};
        comparison.settings.seed = 4294967295u;
    }

    // Percent as in the table; a case of one start with one round.
    Case& add(const std::string& function, double percent, double low, double high,
              Verdict verdict) {
        Round round;
        round.turns.base.clocks = 16384 * 4.0;
        round.turns.changed.clocks = 16384 * 4.0 * (1 + percent / 100);
        round.turns.base.calls = round.turns.changed.calls = 7;
        Case measured;
        measured.function = function;
        measured.parameters.base = {{"CodeLength", 16384LL}, {"CodeFile", "book1"}};
        measured.parameters.changed = measured.parameters.base;
        measured.outcome.base.unit = measured.outcome.changed.unit = std::string(1, 'e');
        measured.outcome.base.unitsPerCall = measured.outcome.changed.unitsPerCall = 16384;
        measured.starts = {{1, {round}}};
        measured.stop = Stop::precise;
        measured.seconds = 0.25;
        Effect effect;
        effect.interval = {std::log1p(percent / 100), std::log1p(low / 100),
                           std::log1p(high / 100)};
        effect.pValue = 0.001;
        effect.adjusted = 0.002;
        effect.verdict = verdict;
        effect.clocksPerUnit = {4.0, 4.0 * (1 + percent / 100)};
        return append(measured, effect);
    }

    Case& addSame(const std::string& function) {
        return add(function, 0.1, -0.2, 0.4, Verdict::same);
    }
    Case& addSlower(const std::string& function) { return add(function, 5, 4, 6, Verdict::slower); }
    Case& addFaster(const std::string& function) {
        return add(function, -5, -6, -4, Verdict::faster);
    }
    Case& addOpen(const std::string& function) { return add(function, 0.1, -2, 4, Verdict::open); }
    // In too few passes for an interval.
    Case& addBegun(const std::string& function) {
        Case& begun = add(function, 1, 0, 0, Verdict::open);
        lastEffect().interval.low = -infinite;
        lastEffect().interval.high = infinite;
        return begun;
    }

    Case& addFailed(const std::string& function, Side side) {
        Case failed;
        failed.function = function;
        failed.stop = Stop::failed;
        failed.failures = {{side, "killed by SIGSEGV in a turn", "first line\nlast line"}};
        return append(failed, {});
    }

    Case& addLeftOut(Stop stop, const std::string& why = "") {
        Case left;
        left.function = "ntksLeft_8u";
        left.stop = stop;
        left.passedOver = why;
        return append(left, {});
    }

    Effect& lastEffect() { return judgement.effects.back(); }

private:
    Case& append(const Case& one, const Effect& effect) {
        comparison.cases.push_back(one);
        judgement.effects.push_back(effect);
        return comparison.cases.back();
    }
};

} // namespace compare
