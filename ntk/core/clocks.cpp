// Clock readers.
//
// The processor runs ahead: RDTSC alone may read the counter while earlier instructions are still
// at work and after later ones have begun, a leak of tens of clocks at either end of a span. The
// fence used is LFENCE, the cheapest that stops it: nothing after it begins before everything
// ahead of it has completed. (CPUID, the classic choice, costs over a hundred clocks, and under a
// hypervisor thousands. Where a processor's LFENCE orders loads only, Linux sets the switch that
// gives it this meaning.)
//
// - Start needs both sides. The fence ahead keeps what came before out of the span; the fence
//   behind keeps the measured code from starting before the counter is read.
// - Stop needs the fence ahead only. What comes after it is not part of the span, so it may begin
//   early.
// - RDTSCP waits by itself for everything ahead of it to be executed and so replaces the first
//   fence, but not the second.
//
// Stores are complete for LFENCE once they are queued; they may reach the cache after the reading.
// Waiting for that (MFENCE) would cost more than it is worth and charge the measured code with
// emptying the queue that every later piece of code profits from.

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
