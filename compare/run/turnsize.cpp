#include "turnsize.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <x86intrin.h>

namespace compare {

namespace {

// A reading of the time-stamp counter is good to about 3 clocks: a hundredth of a percent of this.
constexpr double clocksPerSpan = 30'000;

// Long beside the switch to the other worker (some microseconds, and its data in the caches), short
// beside what changes on a shared machine.
constexpr double secondsPerTurn = 0.003;

// Even calls that seem to take no time at all end a turn.
constexpr double mostCalls = 100'000;

int wholeNumber(double number) {
    return static_cast<int>(std::clamp(number, 1.0, mostCalls));
}

} // namespace

TurnSize turnSizeFor(double clocksPerCall, double clocksPerSecond) {
    const double call = std::max(clocksPerCall, 1.0);
    const int calls = wholeNumber(std::ceil(clocksPerSpan / call));
    const double clocksForSpans = secondsPerTurn * clocksPerSecond - call; // one call is untimed
    return {calls, wholeNumber(std::round(clocksForSpans / (calls * call)))};
}

bool tellsMore(const TurnSize& larger, const TurnSize& size) {
    return larger.callsPerSpan > 1.1 * size.callsPerSpan;
}

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

ClockRate::ClockRate() : m_startClocks(__rdtsc()), m_startSeconds(secondsNow()) {}

double ClockRate::perSecond() const {
    return static_cast<double>(__rdtsc() - m_startClocks) / (secondsNow() - m_startSeconds);
}

} // namespace compare
