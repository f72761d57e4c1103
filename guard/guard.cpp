#include "guard.h"

#include <optional>
#include <system_error>

#include "errors.h"
#include "libraries.h"

namespace guard {

namespace {

constexpr int mostIdleProcesses = 3;

bool asksForTheEnd(int signal) {
    return signal == SIGINT || signal == SIGTERM || signal == SIGHUP;
}

} // namespace

int Guard::run() {
    try {
        return runProcesses();
    } catch (const std::system_error& error) {
        say(error.what());
        return notStartedStatus;
    }
}

int Guard::runProcesses() {
    const Signals signals;
    Watch watch(signals, m_progress, m_limitSeconds);
    std::optional<std::string> past;
    for (;;) {
        Child child = startProgram(m_words, past ? &*past : nullptr);
        const Ending ending = watch.untilEnded(child);
        if (m_progress.hasEnded()) {
            return statusAtEnd(ending);
        }
        if (watch.endingSignal() != 0 || asksForTheEnd(ending.signal)) {
            return statusWhenInterrupted(ending, watch.endingSignal());
        }
        if (!past && !m_progress.isOfHarness()) {
            return statusOfStranger(ending);
        }
        if (!mayGoOn(ending)) {
            return givenUpStatus;
        }
        past = m_progress.forSuccessor();
    }
}

bool Guard::mayGoOn(const Ending& ending) {
    m_idleProcesses = m_progress.hasAdvanced() ? 0 : m_idleProcesses + 1;
    const std::string what = m_words.front() + " " + ending.inWords() + inTest();
    if (!m_progress.hasBegun()) {
        say(what + ", before its first test: it is not started again");
        return false;
    }
    if (m_idleProcesses == mostIdleProcesses) {
        say(what + ", " + std::to_string(mostIdleProcesses) +
            " times without getting on: it is not started again, and what is written is not all");
        return false;
    }
    say(what + "; going on behind it");
    return true;
}

int Guard::statusAtEnd(const Ending& ending) const {
    if (ending.signal == 0 && ending.silentSeconds == 0) {
        return ending.status;
    }
    say(m_words.front() + " " + ending.inWords() + " when all was written: nothing is lost");
    return 0;
}

int Guard::statusWhenInterrupted(const Ending& ending, int signal) const {
    say(m_words.front() + " " + ending.inWords() + inTest() + ", as it was told to end");
    return bySignalStatus + (signal != 0 ? signal : ending.signal);
}

int Guard::statusOfStranger(const Ending& ending) const {
    if (isLoaderError(ending.lastError)) {
        explainLoading(ending.lastError);
        return notLoadedStatus;
    }
    if (ending.signal == 0 && ending.silentSeconds == 0) {
        say(m_words.front() + " " + ending.inWords() +
            " and is no program of the harness: nothing watched over it");
        return ending.status;
    }
    say(m_words.front() + " " + ending.inWords() + ", before it began");
    return bySignalStatus + ending.signal;
}

void Guard::explainLoading(const std::string& line) const {
    say(m_words.front() + " could not be started, and nothing was measured. The loader says:");
    say("  " + line);
    for (const TriedFile& file : triedFiles(m_words, line)) {
        say("  " + file.path + " " + file.verdict);
    }
    say("put a build of the library that fits this program there, or name its folder in "
        "LD_LIBRARY_PATH");
}

std::string Guard::inTest() const {
    const std::string place = m_progress.place();
    return place.empty() ? "" : " in " + place;
}

void Guard::say(const std::string& text) const {
    writeErrors("ntkguard: " + text + "\n");
}

} // namespace guard
