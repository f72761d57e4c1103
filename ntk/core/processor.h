// What the identification instruction and the operating system tell about a processor, behind two
// functions, so that the arithmetic on it runs on recorded registers too.
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
    // Executes the identification instruction for a leaf and subleaf.
    Registers (*identify)(Ntk32u leaf, Ntk32u subleaf);
    // The vector states that the operating system saves (XCR0). Called only where leaf 1 says that
    // the register can be read.
    Ntk64u (*savedStates)();
};

// The processor that executes this code.
extern const Processor thisProcessor;

// The registers of a leaf, or zeroes where the processor has no such leaf: what the instruction
// gives above the largest one is another leaf's data.
Registers leafOrZero(const Processor& processor, Ntk32u leaf, Ntk32u subleaf);

constexpr bool bit(Ntk32u word, int index) {
    return ((word >> index) & 1U) != 0;
}

} // namespace ntk
