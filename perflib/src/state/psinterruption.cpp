#include "psinterruption.h"

#include <signal.h>

#include "psexcept.h"
#include "pssignalactions.h"

namespace {

struct Wish {
    int code;
    const char* name;
};
constexpr Wish wishes[] = {{SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};

constinit volatile sig_atomic_t g_code = 0;
constinit bool g_followed = false;
void (*g_listener)() = nullptr;

bool isIgnored(int code) {
    struct sigaction action;
    return sigaction(code, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void note(int code) {
    g_code = code;
    for (const Wish& wish : wishes) {
        if (!isIgnored(wish.code)) {
            signal(wish.code, SIG_DFL);
        }
    }
    if (g_listener) {
        g_listener();
    }
}

} // namespace

void psInterruption::watch() {
    for (const Wish& wish : wishes) {
        if (isIgnored(wish.code)) {
            psKeepSignalAsIs(wish.code);
        } else {
            psKeepSignalHandler(wish.code, note);
        }
    }
}

void psInterruption::setListener(void (*listener)()) {
    g_listener = listener;
}

bool psInterruption::isWanted() {
    g_followed = g_followed || g_code != 0;
    return g_code != 0;
}

void psInterruption::check() {
    if (isWanted()) {
        const psString text = psString("Interrupted by ") + signalName() + ".";
        throw psException(text.c_str());
    }
}

bool psInterruption::wasFollowed() {
    return g_followed;
}

const char* psInterruption::signalName() {
    for (const Wish& wish : wishes) {
        if (wish.code == g_code) {
            return wish.name;
        }
    }
    return "";
}
