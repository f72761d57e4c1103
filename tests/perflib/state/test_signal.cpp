#include "pssignal.h"

#include <sys/resource.h>

#include <algorithm>
#include <string>

#include <ntkcore.h>

#include "fpu_words.h"

#include "psctrl87.h"

// Faults are made by single instructions: nothing here for a sanitizer to object to.
namespace {

void divideIntegers() {
    asm volatile("idivl %%ecx" ::"a"(1), "d"(0), "c"(0));
}
void readNothing() {
    asm volatile("movl (%%rax), %%eax" ::"a"(0) : "memory");
}
void runUndefined() {
    asm volatile("ud2");
}

// Leaves the x87 trap to the next x87 instruction.
void leaveTrap87() {
    ts87Base().enableExceptions();
    asm volatile("fld1\n\tfldz\n\tfdivrp");
}
void divide87() {
    leaveTrap87();
    asm volatile("fwait");
}
void divideSSX() {
    tsSSXBase(true).enableExceptions();
    asm volatile("divsd %1, %0" ::"x"(1.0), "x"(0.0));
}

// Never returns: the frames fill the stack long before the last call.
[[gnu::noinline]] int fillStack(int depth) {
    volatile char frame[4096];
    frame[0] = static_cast<char>(depth);
    return depth == 0 ? 0 : fillStack(depth - 1) + frame[0];
}
void overflowStack() {
    rlimit limit;
    getrlimit(RLIMIT_STACK, &limit);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, 16 << 20);
    setrlimit(RLIMIT_STACK, &limit);
    fillStack(1 << 16);
}

template <int Code> void raiseIt() {
    raise(Code);
}

const char* const storageText = "--NTK. Signal: Illegal storage access.";
const char* const fpText =
    "--NTK. Signal: FP fail, such as overflow, division by zero, invalid operation.";
const char* const illegalText = "--NTK. Signal: Illegal instruction.";

const struct Fault {
    const char* name;
    void (*raise)();
    int code;
    const char* message;
} faults[] = {
    {"divideIntegers", divideIntegers, SIGFPE, fpText},
    {"readNothing", readNothing, SIGSEGV, storageText},
    {"runUndefined", runUndefined, SIGILL, illegalText},
    {"divide87", divide87, SIGFPE, fpText},
    {"leaveTrap87", leaveTrap87, SIGFPE, fpText},
    {"divideSSX", divideSSX, SIGFPE, fpText},
    {"overflowStack", overflowStack, SIGSEGV, storageText},
    {"abort", abort, SIGABRT, "--NTK. Signal: Abort (SIGABRT)."},
    {"bus", raiseIt<SIGBUS>, SIGBUS, "--NTK. Signal: Bus error (SIGBUS)."},
    {"trap", raiseIt<SIGTRAP>, SIGTRAP, "--NTK. Signal: Breakpoint or trap (SIGTRAP)."},
    {"sys", raiseIt<SIGSYS>, SIGSYS, "--NTK. Signal: System call that is not allowed (SIGSYS)."}};

// The message of the exception that the guard throws; empty when it throws none.
template <class Body> std::string caught(Body&& body) {
    try {
        tsSignal::guarded(body);
        return "";
    } catch (const psException& e) {
        return e.msg();
    }
}

unsigned control87() {
    return ntkFpuSsx4TS(ntkFpuGetControl, 0, 0) & 0xF3F;
}
unsigned wordSSX() {
    return ntkFpuSsx4TS(ntkSsxGet, 0, 0);
}

using SignalGuard = FpuWords;

} // namespace

TEST_F(SignalGuard, EveryFaultBecomesAnExceptionAnyNumberOfTimes) {
    for (int round = 0; round < 3; ++round) {
        for (const Fault& fault : faults) {
            EXPECT_EQ(caught(fault.raise), fault.message) << fault.name << ", round " << round;
            EXPECT_EQ(tsSignal::code(), fault.code) << fault.name;
        }
    }
    EXPECT_EQ(caught([] {}), "");
}

// The modes of the entry come back, the traps do not, whatever the body had set.
TEST_F(SignalGuard, FaultLeavesTheEntrysModesWithoutTraps) {
    constexpr unsigned control = 0x600 | 0x1F; // down, 53 bits, inexact unmasked
    constexpr unsigned word = 0xA040 | 0x0F80; // flush, down, denormals are zero, inexact unmasked
    for (const Fault& fault : faults) {
        ntkFpuSsx4TS(ntkFpuClear, 0, 0);
        ntkFpuSsx4TS(ntkFpuSetControl, control, 0xF3F);
        ntkFpuSsx4TS(ntkSsxSet, word | 0x05, 0xFFFF);
        const std::string message = caught([&] {
            ntkFpuSsx4TS(ntkFpuSetControl, 0xC00, 0xF00);
            ntkFpuSsx4TS(ntkSsxSet, 0x4000, 0xE040);
            fault.raise();
        });
        EXPECT_EQ(message, fault.message) << fault.name;
        EXPECT_EQ(control87(), control | 0x3F) << fault.name;
        EXPECT_EQ(ntkFpuSsx4TS(ntkFpuGetStatus, 0, 0) & 0x3F, 0u) << fault.name;
        EXPECT_EQ(wordSSX() & ~0x20u, word | 0x1F80) << fault.name; // the checks round inexactly
    }
}

TEST_F(SignalGuard, InnermostGuardTakesTheFault) {
    std::string inner, none;
    volatile int passes = 0;
    const std::string outer = caught([&] {
        inner = caught(readNothing);
        none = caught([] {});
        passes = passes + 1; // a jump to a guard that has ended would come by again
        divideIntegers();
    });
    EXPECT_EQ(inner, storageText);
    EXPECT_EQ(none, "");
    EXPECT_EQ(passes, 1);
    EXPECT_EQ(outer, fpText);
}

TEST_F(SignalGuard, ExceptionsPassThroughAndTakeTheirTrapAlong) {
    const std::string message = caught([] {
        leaveTrap87();
        throw psException(psString("own"));
    });
    EXPECT_EQ(message, "--NTK. Exception: own");
    asm volatile("fwait"); // would fault here
    EXPECT_EQ(caught(runUndefined), illegalText);
}

TEST_F(SignalGuard, FaultOutsideEndsTheProcessByItsSignal) {
    for (const Fault& fault : {faults[0], faults[1], faults[2], faults[6], faults[7], faults[8]}) {
        const auto afterGuards = [&] {
            caught(fault.raise); // its frame is gone: no way back there
            fault.raise();
        };
        EXPECT_EXIT(afterGuards(), testing::KilledBySignal(fault.code), "") << fault.name;
    }
}

TEST(SignalText, FollowsTheCode) {
    const std::pair<int, const char*> cases[] = {
        {11, "Illegal storage access."},
        {8, "FP fail, such as overflow, division by zero, invalid operation."},
        {4, "Illegal instruction."},
        {0, "Unknown exception"},
        {6, "Unknown exception"}};
    for (const auto& [code, text] : cases)
        EXPECT_STREQ(tsSignal::getInfo(code), text);
}
