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

} // namespace

const Processor thisProcessor = {identifyHere, savedStatesHere};

Registers leafOrZero(const Processor& processor, Ntk32u leaf, Ntk32u subleaf) {
    // The largest leaf of the standard or the extended range. On a processor without extended
    // leaves it is below all of them.
    const Ntk32u largest = processor.identify(leaf & 0x80000000U, 0).eax;
    return largest < leaf ? Registers{} : processor.identify(leaf, subleaf);
}

} // namespace ntk
