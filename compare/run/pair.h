#pragma once

#include <array>

#include "command.h"
#include "worker.h"

namespace compare {

constexpr std::array sides{Side::base, Side::changed};
constexpr Side other(Side side) {
    return side == Side::base ? Side::changed : Side::base;
}

// The workers of both sides, started together on one processor. They are gone when it is.
class Pair {
public:
    Pair(const Plan& plan, int cpu)
        : m_base(Side::base, workerCommand(plan, Side::base, cpu), plan.settings.patienceSeconds),
          m_changed(Side::changed, workerCommand(plan, Side::changed, cpu),
                    plan.settings.patienceSeconds) {}

    Worker& operator[](Side side) { return side == Side::base ? m_base : m_changed; }

    // Lets them end by themselves, if they do that soon.
    void quit() {
        for (const Side side : sides) {
            (*this)[side].quit();
        }
        for (const Side side : sides) {
            (*this)[side].waitForEnd();
        }
    }

private:
    Worker m_base;
    Worker m_changed;
};

} // namespace compare
