#pragma once

#include "comparison.h"

namespace compare {

// What the system did to this process, counted from its start.
class Disturbances {
public:
    static Disturbances now();
    // Writes what has come since into the turn.
    void countSince(Turn& turn) const;

private:
    long long m_involuntarySwitches = 0;
    long m_migrations = 0;
    long m_minorFaults = 0;
    long m_majorFaults = 0;
};

} // namespace compare
