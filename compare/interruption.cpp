#include "interruption.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>

namespace compare {

namespace {

constexpr int watched[] = {SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t g_signal = 0;
// Ready before a signal comes: its handler may do little but write.
std::array<char, 1000> g_answer = {};
std::size_t g_answerBytes = 0;

// Who sends a signal to a process and to its group, as timeout does, means one.
constexpr double secondsOfOneSignal = 0.5;
double g_firstSeconds = 0;

double secondsNow() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

extern "C" void noteSignal(int number) {
    if (g_signal != 0) {
        if (secondsNow() - g_firstSeconds > secondsOfOneSignal) {
            std::signal(number, SIG_DFL);
            std::raise(number); // when this handler has returned
        }
        return;
    }
    g_firstSeconds = secondsNow();
    g_signal = number;
    if (number == SIGINT && g_answerBytes > 0) {
        const int before = errno;
        if (write(STDERR_FILENO, g_answer.data(), g_answerBytes) < 0) {
            g_answerBytes = 0; // nobody reads it
        }
        errno = before;
    }
}

} // namespace

void watchForInterruption(const std::string& answer) {
    g_answerBytes = std::min(answer.size(), g_answer.size());
    std::copy_n(answer.begin(), g_answerBytes, g_answer.begin());
    for (const int each : watched) {
        struct sigaction action = {};
        if (sigaction(each, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            action = {};
            action.sa_handler = noteSignal;
            sigaction(each, &action, nullptr);
        }
    }
}

int interruption() {
    return g_signal;
}

} // namespace compare
