#pragma once

#include <initializer_list>

#include "psstring.h"

// Executes the processor's identification instruction: on entry registers[0] is the leaf and
// registers[2] the subleaf, on return they hold EAX, EBX, ECX, EDX. False: no answer.
using psCpuidReader = bool (*)(unsigned registers[4]);

// Through the library.
bool psReadCpuid(unsigned registers[4]);

// The register states that the operating system saves, one bit each as XGETBV gives them; 0 where
// it has not enabled that instruction.
unsigned long long psSavedStates(psCpuidReader read = psReadCpuid);

// One answer of the identification instruction. A leaf above the largest one that the processor
// supports is not asked for (the answer would be that of another leaf) and reads as zeros.
class CPUID {
public:
    enum Register { EAX, EBX, ECX, EDX };

    explicit CPUID(unsigned leaf, unsigned subleaf = 0, psCpuidReader read = psReadCpuid);

    bool hasData() const { return m_hasData; }
    unsigned get(Register reg) const { return m_registers[reg]; }
    // The bits high to low, shifted down; 31 >= high >= low >= 0.
    unsigned getBits(Register reg, int high, int low) const;
    unsigned getBit(Register reg, int bit) const { return getBits(reg, bit, bit); }
    unsigned getByte(Register reg, int index) const {
        return getBits(reg, 8 * index + 7, 8 * index);
    }

    // Their bytes as characters, those that cannot be printed left out.
    psString text(std::initializer_list<Register> registers) const;
    // The same registers.
    bool operator==(const CPUID& other) const;

    static unsigned largestLeaf(psCpuidReader read = psReadCpuid);
    static unsigned largestExtendedLeaf(psCpuidReader read = psReadCpuid);
    // Whether leaves 0x8000001D (caches) and 0x8000001E (threads of a core) are defined.
    static bool hasTopologyExtensions(psCpuidReader read = psReadCpuid);

private:
    unsigned m_registers[4] = {};
    bool m_hasData = false;
};
