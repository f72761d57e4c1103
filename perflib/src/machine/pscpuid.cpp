#include "pscpuid.h"

#include <string.h>

#include <algorithm>
#include <iterator>

#include <ntkcore.h>

namespace {

constexpr unsigned extendedLeaves = 0x80000000;

bool ask(psCpuidReader read, unsigned leaf, unsigned subleaf, unsigned (&registers)[4]) {
    unsigned words[4] = {leaf, 0, subleaf, 0};
    const bool answered = read(words);
    for (int i = 0; i < 4; ++i) {
        registers[i] = answered ? words[i] : 0;
    }
    return answered;
}

// The first leaf of a range has the number of the last one in EAX; one outside the range is not
// valid.
unsigned lastOfRange(psCpuidReader read, unsigned firstLeaf) {
    unsigned registers[4];
    ask(read, firstLeaf, 0, registers);
    const bool inRange = (registers[0] & extendedLeaves) == firstLeaf;
    return inRange ? registers[0] : 0;
}

} // namespace

bool psReadCpuid(unsigned registers[4]) {
    Ntk64u marker;
    static_assert(sizeof marker == sizeof NTK_GET_INFO_MARKER - 1);
    memcpy(&marker, NTK_GET_INFO_MARKER, sizeof marker);
    return ntkGetCpuFeatures(&marker, registers) >= 0;
}

unsigned long long psSavedStates(psCpuidReader read) {
    constexpr int osxsaveBit = 27;
    if (!CPUID(1, 0, read).getBit(CPUID::ECX, osxsaveBit)) {
        return 0; // the instruction would be illegal
    }
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return static_cast<unsigned long long>(high) << 32 | low;
}

CPUID::CPUID(unsigned leaf, unsigned subleaf, psCpuidReader read) {
    const unsigned largest = leaf < extendedLeaves ? largestLeaf(read) : largestExtendedLeaf(read);
    if (leaf <= largest) {
        m_hasData = ask(read, leaf, subleaf, m_registers);
    }
}

unsigned CPUID::getBits(Register reg, int high, int low) const {
    const unsigned above = high == 31 ? 0 : ~0u << (high + 1);
    return (m_registers[reg] & ~above) >> low;
}

psString CPUID::text(std::initializer_list<Register> registers) const {
    psString characters;
    for (const Register reg : registers) {
        for (int index = 0; index < 4; ++index) {
            const auto c = static_cast<char>(getByte(reg, index));
            if (c >= ' ' && c <= '~') {
                characters += c;
            }
        }
    }
    return characters;
}

bool CPUID::operator==(const CPUID& other) const {
    return std::equal(std::begin(m_registers), std::end(m_registers), other.m_registers);
}

unsigned CPUID::largestLeaf(psCpuidReader read) {
    return lastOfRange(read, 0);
}

unsigned CPUID::largestExtendedLeaf(psCpuidReader read) {
    return lastOfRange(read, extendedLeaves);
}

bool CPUID::hasTopologyExtensions(psCpuidReader read) {
    return CPUID(0x80000001, 0, read).getBit(ECX, 22) != 0;
}
