// How many logical processors and cores a package has is reported in different places:
// - Leaves 0x1F and 0xB list levels, each with the logical processors below it: first the threads
//   of a core, last the package. The numbers are exact.
// - Leaf 0x80000008 has the logical processors of the package where it is not reserved; from
//   family 0x17 on leaf 0x8000001E has the threads of a core.
// - Leaves 1 and 4 report how many ids are reserved for logical processors and cores.

#include "pscputopology.h"

namespace {

// In EBX of a level with this type come the threads of a core; higher types are groups of cores.
constexpr unsigned threadLevel = 1;
constexpr unsigned maxLevels = 8;

struct Levels {
    int threadsPerCore = 0;
    int perPackage = 0;
};

int field(const CPUID& answer, CPUID::Register reg, int high, int low) {
    return static_cast<int>(answer.getBits(reg, high, low));
}

Levels levelsOf(unsigned leaf, psCpuidReader read) {
    Levels levels;
    for (unsigned subleaf = 0; subleaf < maxLevels; ++subleaf) {
        const CPUID level(leaf, subleaf, read);
        const unsigned type = level.getByte(CPUID::ECX, 1);
        if (type == 0) {
            break;
        }
        (type == threadLevel ? levels.threadsPerCore : levels.perPackage) =
            field(level, CPUID::EBX, 15, 0);
    }
    return levels;
}

Levels levelsOf(psCpuidReader read) {
    const Levels levels = levelsOf(0x1f, read);
    return levels.perPackage > 0 ? levels : levelsOf(0xb, read);
}

// Cores of different kinds have different numbers of threads: a division would be wrong.
bool isHybrid(psCpuidReader read) {
    return CPUID(7, 0, read).getBit(CPUID::EDX, 15) != 0;
}

int threadsPerCore(const CPUID& leaf1, psCpuidReader read) {
    constexpr int firstFamilyWithThreads = 0x17; // before it the field counts cores
    const bool isReported =
        CPUID::hasTopologyExtensions(read) && psSignatureOf(leaf1).family >= firstFamilyWithThreads;
    return isReported ? field(CPUID(0x8000001e, 0, read), CPUID::EBX, 15, 8) + 1 : 1;
}

void countByLevels(psCpuThreads& threads, const Levels& levels, bool hybrid) {
    threads.logical.count = levels.perPackage;
    if (levels.threadsPerCore > 0 && !hybrid) {
        threads.cores.count = levels.perPackage / levels.threadsPerCore;
    }
}

void countByReservedIds(psCpuThreads& threads, const CPUID& leaf1, psCpuidReader read) {
    threads.logical = {field(leaf1, CPUID::EBX, 23, 16), true};
    const CPUID firstCache(4, 0, read);
    if (firstCache.getBits(CPUID::EAX, 4, 0) != 0) {
        threads.cores = {field(firstCache, CPUID::EAX, 31, 26) + 1, true};
    }
}

} // namespace

// The family is extended where all bits of its base field are set. The extended model counts from
// family 6 on: one maker defines it for 6 and 15, another for 15, a third uses it with family 7;
// elsewhere it is 0.
psCpuSignature psSignatureOf(const CPUID& leaf1) {
    constexpr int extendedFamilyMark = 0xf;
    const int family = field(leaf1, CPUID::EAX, 11, 8);
    const int model = field(leaf1, CPUID::EAX, 7, 4);
    const int extendedFamily = family == extendedFamilyMark ? field(leaf1, CPUID::EAX, 27, 20) : 0;
    const int extendedModel = family >= 6 ? field(leaf1, CPUID::EAX, 19, 16) : 0;
    return {family + extendedFamily, (extendedModel << 4) + model, field(leaf1, CPUID::EAX, 3, 0),
            field(leaf1, CPUID::EAX, 13, 12), field(leaf1, CPUID::EBX, 7, 0)};
}

psCpuThreads psThreadsOf(psCpuidReader read) {
    constexpr int multithreadingBit = 28;
    const CPUID leaf1(1, 0, read);
    psCpuThreads threads;
    threads.supported = leaf1.getBit(CPUID::EDX, multithreadingBit) != 0;
    const Levels levels = levelsOf(read);
    const int lastThread = field(CPUID(0x80000008, 0, read), CPUID::ECX, 7, 0); // 0: reserved
    if (!threads.supported) {
        threads.logical.count = threads.cores.count = 1;
    } else if (levels.perPackage > 0) {
        countByLevels(threads, levels, isHybrid(read));
    } else if (lastThread > 0) {
        threads.logical.count = lastThread + 1;
        threads.cores.count = threads.logical.count / threadsPerCore(leaf1, read);
    } else {
        countByReservedIds(threads, leaf1, read);
    }
    return threads;
}
