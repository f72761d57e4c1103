// bench_many_tests: a program of the harness with as many tests as MANY_TESTS says, each of a call
// that does nothing, at each value of the parameter Length. What a run costs is then the harness's.
#include <cstdlib>

#include "kx.h"
#include "kxtiming.h"

namespace {

psStepIterator<int> g_length;
int g_calls = 0;

class ManyTest : public kxTest {
public:
    using kxTest::kxTest;
    bool canStart() override {
        regParm(g_length);
        return true;
    }
};

int tcall_nothing() {
    return ++g_calls, 0;
}
KX_TIMING(nothing)

[[maybe_unused]] const bool g_registered = [] {
    const char* const text = std::getenv("MANY_TESTS");
    const int tests = text ? std::atoi(text) : 1;
    for (int i = 0; i < tests; ++i) {
        psRegTest(new ManyTest(tcall_nothing, nullptr, tim_nothing_loop, tim_nothing_stat,
                               psFormat("many%07d", i), "bench/cost/manytests",
                               "ManyTest//KX_REG"));
    }
    psRegParm(g_length);
    psRegParmColumn("Length");
    return psRegParmFunc([] { g_length.init(1, 1, 2, PS_STEP_MUL, "Length"); });
}();

} // namespace
