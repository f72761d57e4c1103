// Tests whose results are known: one for each result that a test can end with, and for each way to
// end with an exception. The number in the name is the result, as long as the timing method is
// Auto or Iterative, which alone judge the accuracy. Most have a call alone: the harness itself
// then makes the loops and reads the clock around them. Where the clocks matter, a loop function
// gives them.

#include <stdint.h>

#include "example.h"

namespace {

using Test = kxTest;

// Nothing was measured, and nobody says why.
class UnmeasuredTest : public Test {
public:
    using Test::Test;
    void loopData() override {}
};

// The same parameters twice.
psIterator<int> g_repeated;
class RepeatedTest : public Test {
public:
    using Test::Test;
    bool canStart() override {
        g_repeated.init(1, "Repeated");
        g_repeated.add(1);
        g_repeated.add(1);
        regParm(g_repeated);
        return true;
    }
};

// No data for any combination.
class NoDataTest : public Test {
public:
    using Test::Test;
    bool initData() override { return false; }
};

class ThrowingTest : public Test {
public:
    using Test::Test;
    psResult runTiming() override { throw psException(psString("Nothing works")); }
};

volatile double g_zero = 0;
volatile long double g_longZero = 0;
const volatile char* const volatile g_nowhere = reinterpret_cast<const char*>(uintptr_t{64});
volatile double g_sink;

int succeed() {
    return 0;
}
int noteStatus() {
    return ntkStsDstFull;
}
int fail() {
    return ntkStsBadSize;
}
// The vector unit's exceptions are masked: a flag is left behind.
int divideByZero() {
    g_sink = 1 / g_zero;
    return 0;
}
// The x87 unit's zero-divide is not.
int trapDivision() {
    g_sink = static_cast<double>(1 / g_longZero);
    return 0;
}
int readNowhere() {
    return *g_nowhere;
}
int executeNothing() {
    asm volatile("ud2");
    return 0;
}

// Clocks that never agree.
psResult wavering(int loops, long long* clocks) {
    static bool slow = false;
    slow = !slow;
    *clocks = (slow ? 30000LL : 10000LL) * loops;
    return PS_OK;
}
// A clock that stands still.
psResult standing(int, long long* clocks) {
    *clocks = 0;
    return PS_OK;
}
psResult steady(int loops, long long* clocks) {
    *clocks = 10000LL * loops;
    return PS_OK;
}
psResult noting(int loops, long long* clocks) {
    steady(loops, clocks);
    return PS_NOTE;
}

template <class T = Test>
void add(const char* function, const char* info, psCallFunc call, psLoopFunc loop = nullptr) {
    psRegTest(new T(call, nullptr, loop, nullptr, function, "tests/example/results", info));
}

[[maybe_unused]] const bool g_registered = [] {
    add<UnmeasuredTest>("result00", "Unmeasured", succeed);
    add("result01", "Success", nullptr, steady);
    add("result02", "Wavering", nullptr, wavering);
    add("result03", "FlagsLeft", divideByZero);
    add<RepeatedTest>("result04", "Repeated", succeed);
    add("result05", "Remark", noteStatus);
    add("result06", "Note", nullptr, noting);
    add("result07", "NoClocks", nullptr, standing);
    add<NoDataTest>("result08", "NoData", succeed);
    add("result09", "Failure", fail);
    add("result10_segv", "ReadNowhere", readNowhere);
    add("result10_fpe", "TrapDivision", trapDivision);
    add("result10_ill", "IllegalCode", executeNothing);
    add<ThrowingTest>("result10_throw", "Throwing", succeed);
    add("result11", "NothingToCall", nullptr);
    return true;
}();

} // namespace
