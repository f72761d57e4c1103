// What one way of comparing said of one case whose true difference is known.
#pragma once

#include <optional>
#include <string>
#include <vector>

enum class Called { slower, faster, neither };

struct Reading {
    std::string method;  // "ntkcompare" ...
    std::string subject; // function and parameters
    double added = 0;    // intended share of the call's time, 0.01 ...
    bool hasNeighbour = false;
    double truth = 1; // ratios, new to base, here and below
    double estimate = 1;
    // Of the interval; none: it has no end there, or the method gives no interval.
    std::optional<double> low = {}, high = {};
    Called called = Called::neither;
    double seconds = 0; // measured

    bool hasInterval() const { return low && high; }
};

// The share of a run's wall time that was inside turns.
struct TurnShare {
    bool hasNeighbour = false;
    double inTurns = 0, wall = 0; // seconds
};

struct Results {
    std::vector<Reading> readings;
    std::vector<TurnShare> shares;
    std::vector<std::string> remarks; // on how the true values were found
};
