#include "noise.h"

#include <cmath>

namespace compare {

// Of one turn.
double Machine::disturbance(double& remembered) {
    const double fresh =
        noise.turnSd *
        (noise.freedom > 0 ? std::student_t_distribution<double>(noise.freedom)(random) : normal());
    remembered = noise.memory * remembered + std::sqrt(1 - noise.memory * noise.memory) * fresh;
    drift += noise.driftOfTurn;
    const double burst = uniform() < noise.burstShare ? std::log(1.3 + 0.7 * uniform()) : 0;
    return remembered + drift + burst;
}

Start Machine::start(int pass, int rounds, double effect) {
    Both<double> ofProcess;
    Both<double> remembered{noise.turnSd * normal(), noise.turnSd * normal()};
    for (const Side side : {Side::base, Side::changed}) {
        ofProcess[side] = noise.startSd / std::sqrt(2) * normal() +
                          (uniform() < 0.5 ? std::log1p(noise.slowProcess) : 0);
    }
    ofProcess.changed += std::log(effect);
    Start start{pass, {}};
    for (int i = 0; i < rounds; ++i) {
        Round round;
        round.baseFirst = uniform() < 0.5;
        const Side first = round.baseFirst ? Side::base : Side::changed;
        const Side second = round.baseFirst ? Side::changed : Side::base;
        for (const Side side : {first, second}) {
            round.turns[side].clocks =
                1000 * std::exp(ofProcess[side] + disturbance(remembered[side]));
        }
        start.rounds.push_back(round);
    }
    return start;
}

} // namespace compare
