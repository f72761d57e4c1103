// Processors describe their caches in one of three places. Leaf 4 lists them, one per subleaf, on
// most. Where that leaf is empty, extended leaf 0x8000001D holds the same list in the same layout,
// if the processor has the topology extensions.
// Older processors have neither and give whole sizes of levels 2 and 3 in leaf 0x80000006.

#include "cachesize.h"

#include <algorithm>
#include <climits>

namespace ntk {

namespace {

constexpr Ntk32u standardCacheLeaf = 4;
constexpr Ntk32u extendedCacheLeaf = 0x8000001dU;
constexpr Ntk32u wholeSizesLeaf = 0x80000006U;

// No processor has as many caches; a broken hypervisor may never end its list.
constexpr Ntk32u maxListedCaches = 32;

// Ways, partitions, line size and sets are each stored less one, in 10, 10, 12 and 32 bits. Their
// product can reach 2^64; cut at INT_MAX before the last factor it stays below, and is still at
// least INT_MAX where it was. All of them zero: a hypervisor has left the cache's kind and hidden
// the rest.
Ntk64u listedCacheBytes(const Registers& r) {
    if (r.ebx == 0 && r.ecx == 0) {
        return 0;
    }
    const Ntk64u ways = (r.ebx >> 22) + 1;
    const Ntk64u partitions = ((r.ebx >> 12) & 0x3ffU) + 1;
    const Ntk64u lineBytes = (r.ebx & 0xfffU) + 1;
    const Ntk64u sets = static_cast<Ntk64u>(r.ecx) + 1;
    return std::min<Ntk64u>(ways * partitions * lineBytes, INT_MAX) * sets;
}

Ntk64u largestListedBytes(const Processor& processor, Ntk32u leaf) {
    constexpr Ntk32u cacheType = 0x1f;
    Ntk64u largest = 0;
    for (Ntk32u subleaf = 0; subleaf < maxListedCaches; ++subleaf) {
        const Registers r = leafOrZero(processor, leaf, subleaf);
        if ((r.eax & cacheType) == 0) {
            break;
        }
        largest = std::max(largest, listedCacheBytes(r));
    }
    return largest;
}

bool hasTopologyExtensions(const Processor& processor) {
    constexpr int topologyExtensions = 22;
    return bit(leafOrZero(processor, 0x80000001U, 0).ecx, topologyExtensions);
}

// Level 2 in KiB, level 3 in units of 512 KiB.
Ntk64u largestWholeSizeBytes(const Processor& processor) {
    const Registers r = leafOrZero(processor, wholeSizesLeaf, 0);
    const Ntk64u level2 = static_cast<Ntk64u>(r.ecx >> 16) << 10;
    const Ntk64u level3 = static_cast<Ntk64u>(r.edx >> 18) << 19;
    return std::max(level2, level3);
}

} // namespace

int maxCacheSizeBytes(const Processor& processor) {
    Ntk64u bytes = largestListedBytes(processor, standardCacheLeaf);
    if (bytes == 0 && hasTopologyExtensions(processor)) {
        bytes = largestListedBytes(processor, extendedCacheLeaf);
    }
    if (bytes == 0) {
        bytes = largestWholeSizeBytes(processor);
    }
    return static_cast<int>(std::min<Ntk64u>(bytes, INT_MAX));
}

} // namespace ntk
