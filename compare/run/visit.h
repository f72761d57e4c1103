#pragma once

#include <functional>
#include <optional>
#include <random>

#include "pair.h"

// What a pair of workers does at one case in one pass: prepare, take turns, release.
namespace compare {

// A case on its way through the passes.
struct Journey {
    Case& measured;
    Both<int> place;              // among what each side announces
    bool isDecided = false;       // no more is measured; see Case::stop
    std::optional<TurnSize> size; // chosen at the first visit

    void decide(Stop stop) {
        isDecided = true;
        measured.stop = stop;
    }
};

struct VisitPlan {
    int pass = 1;
    double untilSeconds = 0; // of the case, all visits together; there is one round at least
    double clocksPerSecond = 1;
    std::mt19937_64 random;       // draws the orders
    std::function<bool()> isOver; // asked after each turn: no further one is wanted
};

// Adds a start to the case, or decides that it failed or is passed over. False when a worker is
// lost: neither is of use any more.
bool visit(Pair& pair, Journey& journey, const VisitPlan& plan);

} // namespace compare
