// Processors describe their caches in one of three places. On most, leaf 4 lists them, one per
// subleaf. If that leaf is empty, extended leaf 0x8000001D has the same list in the same layout,
// provided that the processor has the topology extensions.
// Older processors have neither and report the total sizes of levels 2 and 3 in leaf 0x80000006.

#include "cachesize.h"

#include <algorithm>
#include <climits>

namespace ntk {

namespace {

constexpr Ntk32u standardCacheLeaf = 4;
constexpr Ntk32u extendedCacheLeaf = 0x8000001dU;
constexpr Ntk32u totalSizesLeaf = 0x80000006U;

// No processor has this many caches; the list of a broken hypervisor may never end.
constexpr Ntk32u maxListedCaches = 32;

// Ways, partitions, line size and sets are each stored minus one, in 10, 10, 12 and 32 bits. Their
// product can reach 2^64; limited to INT_MAX before the last factor it cannot overflow, and is at
// least INT_MAX whenever the product is. If all fields are zero, a hypervisor has hidden everything
// but the type of the cache.
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
Ntk64u largestTotalSizeBytes(const Processor& processor) {
    const Registers r = leafOrZero(processor, totalSizesLeaf, 0);
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
        bytes = largestTotalSizeBytes(processor);
    }
    return static_cast<int>(std::min<Ntk64u>(bytes, INT_MAX));
}

} // namespace ntk
