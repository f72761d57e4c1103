// Four tests of a library that does not bear being called, for the one who watches over them. The
// clocks are always the same, so that tables can be compared.
//
// The variable DEEDS has deeds, "TEST@LENGTH@STEP=DEED" with ";" in between: where the test TEST
// stands at that length, in that step (prepare, call, release), the deed is done. The step "start"
// is that before the lengths are known, "parameters" the same when only they are wanted; the length
// is 0 then. The test "all" has the steps begin,
// footer, signal and exit, of the whole run.

#include <malloc.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "../example/example.h"
#include "ps.h"

namespace {

// The allocator finds out and aborts.
void destroyHeap() {
    void* volatile block = malloc(100);
    free(block);
    free(block);
}

void sleepForEver() {
    for (;;) {
        pause();
    }
}

// A call that goes on for a second after a signal.
void awaitSignal() {
    pause();
    sleep(1);
}

// Which process of a run this is; the variable is gone when the run has begun.
const bool g_isSuccessor = getenv("NTKPERF_CONTINUE") != nullptr;

void endFirstProcess() {
    if (!g_isSuccessor) {
        raise(SIGKILL);
    }
}

void endSuccessor() {
    if (g_isSuccessor) {
        _exit(4);
    }
}

constexpr struct {
    const char* name;
    void (*act)();
} deeds[] = {
    {"abort", abort},
    {"exit", [] { exit(3); }},
    {"_exit", [] { _exit(0); }},
    {"heap", destroyHeap},
    {"hang", sleepForEver},
    {"kill", [] { raise(SIGKILL); }},
    {"quit", [] { raise(SIGQUIT); }},
    {"warn", [] { fputs("a warning\n", stderr); }},
    {"killfirst", endFirstProcess},
    {"exitlater", endSuccessor},
    {"await", awaitSignal},
    {"stop", [] { raise(SIGSTOP); }},
};

void act(const char* step, const psString& test, int length) {
    const char* const wanted = getenv("DEEDS");
    const psString place = test + "@" + psText(length) + "@" + step + "=";
    const char* const found = wanted ? strstr(wanted, place.c_str()) : nullptr;
    const char* const name = found ? found + place.length() : "";
    for (const auto& deed : deeds) {
        const size_t size = strlen(deed.name);
        if (strncmp(name, deed.name, size) == 0 && (!name[size] || name[size] == ';')) {
            deed.act();
        }
    }
}

psResult call(int loops, long long* clocks) {
    act("call", psTestList::m_pCurrentTest->functionName(), g_length.value());
    *clocks = 10000LL * loops;
    return PS_OK;
}

class DeedTest : public kxTest {
public:
    using kxTest::kxTest;
    bool canStart() override {
        act(psTestList::m_pCurrentTest ? "start" : "parameters", functionName(), 0);
        m_own.init(7, "Own_" + functionName());
        regParm(g_length);
        regParm(m_own);
        return true;
    }
    bool initData() override {
        act("prepare", functionName(), g_length.value());
        return true;
    }
    void flushData() override { act("release", functionName(), g_length.value()); }
    double getDivisor() override { return g_length.value(); }
    psString getUnit() override { return "byte"; }

private:
    psIterator<int> m_own;
};

class DeedSession : public psSession {
public:
    void outputFooter() override {
        act("footer", "all", 0);
        psSession::outputFooter();
    }
    void outputSignal() override {
        act("signal", "all", 0);
        psSession::outputSignal();
    }
};

// Behind everything.
[[maybe_unused]] const struct AtExit {
    ~AtExit() { act("exit", "all", 0); }
} g_atExit;

[[maybe_unused]] const bool g_registered = [] {
    for (const char* const name : {"alpha", "beta", "delta", "gamma"}) {
        psRegTest(new DeedTest(nullptr, nullptr, call, nullptr, name, "tests/guard/deeds", name));
    }
    psRegSession(new DeedSession);
    act("begin", "all", 0);
    return true;
}();

} // namespace
