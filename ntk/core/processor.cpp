#include "processor.h"

#include <cpuid.h>

namespace ntk {

namespace {

Registers identifyHere(Ntk32u leaf, Ntk32u subleaf) {
    Registers r{};
    __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
    return r;
}

Ntk64u savedStatesHere() {
    Ntk32u low = 0;
    Ntk32u high = 0;
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (static_cast<Ntk64u>(high) << 32) | low;
}

}  // namespace

const Processor thisProcessor = {identifyHere, savedStatesHere};

Registers leafOrZero(const Processor& processor, Ntk32u leaf, Ntk32u subleaf) {
    const Ntk32u range = leaf & 0x80000000U;
    const Ntk32u largest = processor.identify(range, 0).eax;
    // A processor without extended leaves answers with other data, whose top bit is not set.
    if ((largest & 0x80000000U) != range || largest < leaf) {
        return Registers{};
    }
    return processor.identify(leaf, subleaf);
}

}  // namespace ntk
