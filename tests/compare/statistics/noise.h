#pragma once

#include <random>

#include "comparison.h"

namespace compare {

// A model of a machine on which two builds take turns. Shares and logarithms of clocks.
struct Noise {
    const char* name;
    double turnSd = 0.007;  // of a turn by itself: 1% of a round
    double startSd = 0.001; // between two processes of one build, for all their life
    double burstShare = 0;  // of the turns that take 30 to 100% longer
    double driftOfTurn = 0; // from one turn to the next
    double slowProcess = 0; // what every second process, by chance, takes longer
    double memory = 0;      // of a turn's noise: correlation with the same side's last turn
    int freedom = 0;        // of Student's distribution, in place of the normal one
};

// The rounds of one pair of processes; `effect` is the true ratio of new to base.
class Machine {
public:
    Machine(const Noise& model, unsigned long long seed) : noise(model), random(seed) {}
    Start start(int pass, int rounds, double effect);

private:
    double normal() { return std::normal_distribution<double>()(random); }
    double uniform() { return std::uniform_real_distribution<double>()(random); }
    double disturbance(double& remembered);

    Noise noise;
    std::mt19937_64 random;
    double drift = 0;
};

} // namespace compare
