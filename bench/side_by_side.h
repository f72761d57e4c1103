// Measures several ways of doing the same thing side by side.
//
// Every variant runs once per round, so that a change of the processor's frequency or a busy
// neighbour meets all of them. Google Benchmark cannot do that: what it interleaves are repetitions
// of many calls each, and it gives no ratio of two benchmarks of a run. Hence this frame.
#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ntkcore.h"

struct Variant {
    std::string name;
    std::function<void()> call;
    // Runs untimed before every call; may be empty.
    std::function<void()> prepare = {};
    // The bytes of the stream that the call left; empty where it encodes nothing.
    std::function<double()> size = {};
    // Where only a part of the call counts: the clocks of that part, which the call leaves here.
    const Ntk64u* partClocks = nullptr;

    static constexpr Ntk64u unmeasured = std::numeric_limits<Ntk64u>::max();
    // The best of each third of the rounds: noise only ever adds. Integers, because floating point
    // between calls is slow (and makes the next call slow) after a kernel that has left the upper
    // halves of the vector registers in use.
    std::array<Ntk64u, 3> clocks = {unmeasured, unmeasured, unmeasured};

    double bestClocks() const {
        return static_cast<double>(*std::min_element(clocks.begin(), clocks.end()));
    }
};

inline void measureInterleaved(std::vector<Variant>& variants, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        const auto third = static_cast<std::size_t>(Ntk64s{round} * 3 / rounds);
        for (Variant& v : variants) {
            if (v.prepare) {
                v.prepare();
            }
            const Ntk64u start = ntkStartTsc();
            v.call();
            const Ntk64u clocks = ntkStopTsc() - start;
            v.clocks[third] = std::min(v.clocks[third], v.partClocks ? *v.partClocks : clocks);
        }
    }
}

// The ratio of the best clocks, and the lowest and the highest that a third of the rounds gave.
struct Ratio {
    double value, lowest, highest;
};

inline Ratio ratioOf(const Variant& own, const Variant& other) {
    const double value = own.bestClocks() / other.bestClocks();
    Ratio ratio = {value, value, value};
    for (std::size_t i = 0; i < own.clocks.size(); ++i) {
        if (own.clocks[i] < Variant::unmeasured) { // else there were fewer than three rounds
            const double here =
                static_cast<double>(own.clocks[i]) / static_cast<double>(other.clocks[i]);
            ratio.lowest = std::min(ratio.lowest, here);
            ratio.highest = std::max(ratio.highest, here);
        }
    }
    return ratio;
}
