#include "pssignalactions.h"

#include <signal.h>

namespace {

struct Kept {
    bool isKept;
    struct sigaction action;
};
constinit Kept g_kept[NSIG] = {};

stack_t g_stack; // of handlers

sigset_t currentMask() {
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    return mask;
}

// At the start of the process, before any test.
const sigset_t& startMask() {
    static const sigset_t mask = currentMask();
    return mask;
}

// A stack overflow leaves no room on the stack for a handler's frame.
void provideHandlerStack() {
    alignas(64) static char memory[64 * 1024];
    if (g_stack.ss_sp) {
        return;
    }
    if (sigaltstack(nullptr, &g_stack) == 0 && !(g_stack.ss_flags & SS_DISABLE)) {
        return; // a sanitizer has provided one
    }
    g_stack = {};
    g_stack.ss_sp = memory;
    g_stack.ss_size = sizeof memory;
    sigaltstack(&g_stack, nullptr);
}

} // namespace

// sigaction, with what signal() gives here plus the other stack, for which signal() has no way to
// ask.
void psKeepSignalHandler(int code, psSignalHandler handler) {
    startMask();
    provideHandlerStack();
    Kept& kept = g_kept[code];
    kept = {true, {}};
    kept.action.sa_handler = handler;
    kept.action.sa_flags = SA_RESTART | SA_ONSTACK;
    sigemptyset(&kept.action.sa_mask);
    sigaction(code, &kept.action, nullptr);
}

void psKeepSignalAsIs(int code) {
    g_kept[code].isKept = sigaction(code, nullptr, &g_kept[code].action) == 0;
}

void psRenewSignals() {
    for (int code = 1; code < NSIG; ++code) {
        if (g_kept[code].isKept) {
            sigaction(code, &g_kept[code].action, nullptr);
        }
    }
    if (g_stack.ss_sp) {
        sigaltstack(&g_stack, nullptr);
    }
    pthread_sigmask(SIG_SETMASK, &startMask(), nullptr);
}
