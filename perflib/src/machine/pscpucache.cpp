// Two leaves list the caches, one per subleaf, in the same layout: leaf 4 on most processors, and
// 0x8000001D on those that leave leaf 4 empty.

#include "pscpucache.h"

namespace {

constexpr unsigned standardCacheLeaf = 4;
constexpr unsigned extendedCacheLeaf = 0x8000001d;

// No processor has as many; a hypervisor may answer every subleaf.
constexpr unsigned maxListedCaches = 32;

// False when the size is no int.
bool isSizeAnInt(const psCpuCache& cache, long long sets, int& bytes) {
    return !__builtin_mul_overflow(cache.ways, cache.partitions, &bytes) &&
           !__builtin_mul_overflow(bytes, cache.lineBytes, &bytes) &&
           !__builtin_mul_overflow(bytes, sets, &bytes);
}

// Counts are stored less one. False: the answer describes no cache.
bool decode(const CPUID& answer, psCpuCache& cache) {
    const auto count = [&](CPUID::Register reg, int high, int low) {
        return static_cast<int>(answer.getBits(reg, high, low)) + 1;
    };
    cache.kind = static_cast<int>(answer.getBits(CPUID::EAX, 4, 0));
    cache.level = static_cast<int>(answer.getBits(CPUID::EAX, 7, 5));
    cache.selfInitializing = answer.getBit(CPUID::EAX, 8) != 0;
    cache.fullyAssociative = answer.getBit(CPUID::EAX, 9) != 0;
    cache.maxThreads = count(CPUID::EAX, 25, 14);
    cache.ways = count(CPUID::EBX, 31, 22);
    cache.partitions = count(CPUID::EBX, 21, 12);
    cache.lineBytes = count(CPUID::EBX, 11, 0);
    cache.ownFlushOnly = answer.getBit(CPUID::EDX, 0) != 0;
    cache.inclusive = answer.getBit(CPUID::EDX, 1) != 0;
    const long long sets = 1LL + answer.get(CPUID::ECX);
    cache.sets = static_cast<int>(sets);
    return cache.kind != 0 && isSizeAnInt(cache, sets, cache.bytes);
}

psList<psCpuCache> listOf(unsigned leaf, psCpuidReader read) {
    psList<psCpuCache> caches;
    for (unsigned subleaf = 0; subleaf < maxListedCaches; ++subleaf) {
        const CPUID answer(leaf, subleaf, read);
        const bool isRepeated = subleaf > 0 && answer == CPUID(leaf, subleaf - 1, read);
        psCpuCache cache;
        if (isRepeated || !decode(answer, cache)) { // repeated: the subleaf is ignored
            break;
        }
        caches.append(cache);
    }
    return caches;
}

} // namespace

psList<psCpuCache> psCpuCaches(psCpuidReader read) {
    const psList<psCpuCache> caches = listOf(standardCacheLeaf, read);
    const bool useExtended = caches.empty() && CPUID::hasTopologyExtensions(read);
    return useExtended ? listOf(extendedCacheLeaf, read) : caches;
}
