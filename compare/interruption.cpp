#include "interruption.h"

#include <csignal>

namespace compare {

namespace {

constexpr int watched[] = {SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t g_signal = 0;

extern "C" void noteSignal(int number) {
    g_signal = number;
    for (const int each : watched) {
        std::signal(each, SIG_DFL);
    }
}

} // namespace

void watchForInterruption() {
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
