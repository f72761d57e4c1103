// Readers of the time-stamp counter.
//
// The processor executes out of order: RDTSC alone may read the counter while earlier instructions
// are still executing and after later ones have begun, an error of tens of clocks at either end of
// an interval. The fence used is LFENCE, the cheapest that prevents this: nothing after it begins
// before everything before it has completed. (CPUID, the classic choice, takes over a hundred
// clocks, and under a hypervisor thousands. On processors whose LFENCE only orders loads, Linux
// sets the control bit that makes it serialise dispatch.)
//
// - Start needs both fences. The first keeps earlier code out of the interval; the second keeps the
//   measured code from starting before the counter is read.
// - Stop needs the first fence only. What comes after it is not measured, so it may begin early.
// - RDTSCP itself waits for everything before it to be executed and so replaces the first fence,
// but
//   not the second.
//
// For LFENCE, stores are complete once they are in the store buffer; they may reach the cache after
// the counter is read. Waiting for that (MFENCE) would take longer and charge the measured code for
// draining a buffer that is there to be drained later.

#include "ntkcore.h"

namespace {

constexpr Ntk64u joined(Ntk32u low, Ntk32u high) {
    return (static_cast<Ntk64u>(high) << 32) | low;
}

} // namespace

Ntk64u ntkGetCpuClocks(void) {
    Ntk32u low = 0;
    Ntk32u high = 0;
    asm volatile("rdtsc" : "=a"(low), "=d"(high) : : "memory");
    return joined(low, high);
}

Ntk64u ntkStartTsc(void) {
    Ntk32u low = 0;
    Ntk32u high = 0;
    asm volatile("lfence\n\trdtsc\n\tlfence" : "=a"(low), "=d"(high) : : "memory");
    return joined(low, high);
}

Ntk64u ntkStopTsc(void) {
    Ntk32u low = 0;
    Ntk32u high = 0;
    asm volatile("lfence\n\trdtsc" : "=a"(low), "=d"(high) : : "memory");
    return joined(low, high);
}

Ntk64u ntkStartTscp(void) {
    Ntk32u low = 0;
    Ntk32u high = 0;
    asm volatile("rdtscp\n\tlfence" : "=a"(low), "=d"(high) : : "ecx", "memory");
    return joined(low, high);
}

Ntk64u ntkStopTscp(void) {
    Ntk32u low = 0;
    Ntk32u high = 0;
    asm volatile("rdtscp" : "=a"(low), "=d"(high) : : "ecx", "memory");
    return joined(low, high);
}
