#pragma once

#include <csignal>

#include "child.h"
#include "progress.h"

namespace guard {

// The signals that this process hears, as a file: the ends of its children, and those that a person
// or the system ends a run with. Made once, at the start.
class Signals {
public:
    Signals(); // throws std::system_error
    int file() const { return m_file.number(); }
    bool next(int& signal) const; // false: there is none

private:
    File m_file{};
};

// Watches over one process until it ends.
class Watch {
public:
    Watch(const Signals& signals, Progress& progress, int limitSeconds)
        : m_signals(signals), m_progress(progress), m_limitSeconds(limitSeconds) {}

    Ending untilEnded(Child& child);
    // The run was to end: the last signal that said so, 0: none has.
    int endingSignal() const { return m_endingSignal; }

private:
    void wait(const Child& child);
    void hearSignals(const Child& child);
    bool hasEnded(const Child& child, Ending& ending);
    void readProgress(const Child& child);
    void readErrors(const Child& child);
    void passOnSignal(const Child& child);
    void tellOfWaiting();
    void endSilentProcess(const Child& child);
    void renewLimit();
    int millisecondsToWait() const;

    const Signals& m_signals;
    Progress& m_progress;
    const int m_limitSeconds;
    std::string m_said{}, m_unreadError{}, m_lastError{};
    double m_silentSince = 0;
    bool m_isStopped = false;
    bool m_isSilent = false; // beyond the limit, and killed
    int m_endingSignal = 0;
    bool m_isToPassOn = false; // the signal, unless the process says that it has heard it
    double m_passOnAt = 0;
    int m_signalsHeard = 0;
    bool m_isToTellOfWaiting = false;
    double m_tellOfWaitingAt = 0;
};

} // namespace guard
