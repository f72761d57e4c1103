#pragma once

// How large the turns of a case are.
namespace compare {

// In calls: the same for both sides and all rounds of a case, so that all of them are alike.
struct TurnSize {
    int callsPerSpan = 1; // between two readings of the clock
    int spans = 1;

    bool operator==(const TurnSize&) const = default;
};

// A span is long enough that a reading tells a hundredth of a percent, a turn takes a few
// milliseconds. Calls that take longer are timed once a turn.
TurnSize turnSizeFor(double clocksPerCall, double clocksPerSecond);

// Whether a turn of the larger size would tell the clocks of a call much better: those of a short
// call are mostly the clock's own until there are enough calls between two readings.
bool tellsMore(const TurnSize& larger, const TurnSize& size);

// The rate of the time-stamp counter, from the time since this object was made.
class ClockRate {
public:
    ClockRate();
    double perSecond() const;

private:
    unsigned long long m_startClocks;
    double m_startSeconds;
};

double secondsNow(); // on a clock that never jumps

} // namespace compare
