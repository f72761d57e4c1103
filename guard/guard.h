#pragma once

#include "watch.h"

namespace guard {

// Statuses of ntkguard that are not the program's.
constexpr int givenUpStatus = 125;    // the program ended where no test could be blamed
constexpr int notStartedStatus = 126; // there is no such program, or it cannot be run
constexpr int notLoadedStatus = 127;  // the loader lacks a library for it
constexpr int bySignalStatus = 128;   // and the signal's number

// Runs a program of the harness to its end, in as many processes as it takes.
class Guard {
public:
    Guard(std::vector<std::string> words, int limitSeconds)
        : m_words(std::move(words)), m_limitSeconds(limitSeconds) {}
    int run(); // returns the status to end with

private:
    int runProcesses();
    bool mayGoOn(const Ending& ending);
    int statusAtEnd(const Ending& ending) const;
    int statusOfStranger(const Ending& ending) const;
    int statusWhenInterrupted(const Ending& ending, int signal) const;
    void explainLoading(const std::string& line) const;
    std::string inTest() const;
    void say(const std::string& text) const;

    const std::vector<std::string> m_words;
    const int m_limitSeconds;
    Progress m_progress{};
    int m_idleProcesses = 0; // in a row, that ended without beginning or ending a test
};

} // namespace guard
