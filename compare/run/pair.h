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
        : m_base(start(plan, Side::base, cpu)), m_changed(start(plan, Side::changed, cpu)) {}

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
    static Worker start(const Plan& plan, Side side, int cpu) {
        return {side,
                workerCommand(plan, side, cpu),
                plan.settings.patienceSeconds,
                {plan.wantsEnd, plan.settings.hurrySeconds}};
    }

    Worker m_base;
    Worker m_changed;
};

} // namespace compare
