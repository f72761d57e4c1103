#pragma once

#include "message.h"
#include "pair.h"

// Which cases there are: what both sides announce.
namespace compare {

struct Listing {
    std::vector<Case> cases;
    std::vector<Both<int>> places; // of each case, among what each side announces, from 0
    std::vector<Unpaired> unpaired;
    Both<Hello> hello;
    Both<std::vector<std::string>> remarks; // keys that had no effect
};

// A combination of one side belongs to that combination of the same function on the other side
// which comes at the same place within it: parameters may differ where the keys do. Where one side
// has more of a function than the other, those with equal parameters belong together. Both sides
// have the same order of functions; what would have to cross is left unpaired.
Listing pairUp(const Both<std::vector<Announced>>& announced);

// Starts a pair that walks over all cases without preparing any. Throws CannotMeasure when a
// worker is lost or no case is left.
Listing listCases(const Plan& plan, int cpu);

} // namespace compare
