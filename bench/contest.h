// Times competing ways of doing the same thing side by side.
#pragma once

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ntkcore.h"

struct Contender {
    std::string name;
    std::function<void()> call;
    // Runs untimed before every call; may be empty.
    std::function<void()> prepare = {};
    Ntk64u bestClocks = std::numeric_limits<Ntk64u>::max();
};

// Lets every contender run once per round, so that a change of the processor's frequency or a busy
// neighbour meets all of them, and keeps each one's smallest time: noise only ever adds.
inline void compete(std::vector<Contender>& contenders, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        for (Contender& c : contenders) {
            if (c.prepare) {
                c.prepare();
            }
            const Ntk64u start = ntkStartTsc();
            c.call();
            c.bestClocks = std::min(c.bestClocks, ntkStopTsc() - start);
        }
    }
}

// One line for the first contender against the fastest of the others, on data of some size; the
// clocks are divided by `bytes`.
inline void printRatio(const char* what, std::size_t dataBytes, std::size_t bytes,
                       const std::vector<Contender>& contenders) {
    const Contender& own = contenders.front();
    const Contender& other = *std::min_element(
        contenders.begin() + 1, contenders.end(),
        [](const Contender& a, const Contender& b) { return a.bestClocks < b.bestClocks; });
    const auto perByte = [bytes](const Contender& c) {
        return static_cast<double>(c.bestClocks) / static_cast<double>(bytes);
    };
    std::printf("%-22s %7zu %9.4f %9.4f  %-26s %6.3f\n", what, dataBytes, perByte(own),
                perByte(other), other.name.c_str(), perByte(own) / perByte(other));
}

inline void printRatioTitle() {
    std::printf("%-22s %7s %9s %9s  %-26s %6s\n", "clocks per byte", "bytes", "ntkdc", "packaged",
                "of", "ratio");
}
