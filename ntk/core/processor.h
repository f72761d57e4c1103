// What CPUID and the operating system report about a processor, as two functions, so that tests can
// evaluate recorded registers.
#pragma once

#include "ntkdefs.h"

namespace ntk {

struct Registers {
    Ntk32u eax;
    Ntk32u ebx;
    Ntk32u ecx;
    Ntk32u edx;
};

struct Processor {
    // Executes CPUID for a leaf and subleaf.
    Registers (*identify)(Ntk32u leaf, Ntk32u subleaf);
    // The vector states that the operating system saves (XCR0). Called only if leaf 1 says that the
    // register can be read.
    Ntk64u (*savedStates)();
};

// The processor that executes this code.
extern const Processor thisProcessor;

// The registers of a leaf, or zeroes if the processor has no such leaf: above the largest one,
// CPUID may return the data of another leaf.
Registers leafOrZero(const Processor& processor, Ntk32u leaf, Ntk32u subleaf);

constexpr bool bit(Ntk32u word, int index) {
    return ((word >> index) & 1U) != 0;
}

} // namespace ntk
