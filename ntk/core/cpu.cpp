// Processor features, the set of them that is enabled, and the cache size.
//
// The state is two words: what the machine has, and what is enabled of it. Either is `unknown`
// until the first query, so that no static initialiser has to run before the first call. Threads
// that query at the same time store the same value; if another thread changes the enabled set in
// between, its change is kept, because the initial value only ever replaces `unknown`.

#include "ntkcore.h"

#include <atomic>
#include <cstring>

#include "cachesize.h"
#include "features.h"

namespace {

constexpr Ntk64u unknown = ~0ULL;

constinit std::atomic<Ntk64u> s_machine{unknown};
constinit std::atomic<Ntk64u> s_enabled{unknown};

Ntk64u machineFeatures() {
    Ntk64u features = s_machine.load(std::memory_order_relaxed);
    if (features == unknown) {
        features = ntk::featuresOf(ntk::thisProcessor);
        s_machine.store(features, std::memory_order_relaxed);
    }
    return features;
}

Ntk64u enableAllUnlessChosen() {
    const Ntk64u all = machineFeatures();
    Ntk64u enabled = unknown;
    if (s_enabled.compare_exchange_strong(enabled, all, std::memory_order_relaxed)) {
        return all;
    }
    return enabled;
}

bool holdsMarker(const Ntk64u* pFeatures) {
    return std::memcmp(pFeatures, NTK_GET_INFO_MARKER, sizeof *pFeatures) == 0;
}

void replaceByIdentification(Ntk32u registers[4]) {
    const ntk::Registers r = ntk::thisProcessor.identify(registers[0], registers[2]);
    registers[0] = r.eax;
    registers[1] = r.ebx;
    registers[2] = r.ecx;
    registers[3] = r.edx;
}

} // namespace

NtkStatus ntkInit(void) {
    s_enabled.store(machineFeatures(), std::memory_order_relaxed);
    return ntkStsNoErr;
}

NtkStatus ntkGetCpuFeatures(Ntk64u* pFeatures, Ntk32u registers[4]) {
    if (pFeatures == nullptr) {
        return ntkStsNullPtr;
    }
    if (registers != nullptr) {
        replaceByIdentification(registers);
        if (holdsMarker(pFeatures)) {
            return ntkStsNoErr;
        }
    }
    *pFeatures = machineFeatures();
    return ntkStsNoErr;
}

Ntk64u ntkGetEnabledCpuFeatures(void) {
    const Ntk64u enabled = s_enabled.load(std::memory_order_relaxed);
    return enabled != unknown ? enabled : enableAllUnlessChosen();
}

NtkStatus ntkSetCpuFeatures(Ntk64u features) {
    const Ntk64u available = machineFeatures();
    s_enabled.store(features & available, std::memory_order_relaxed);
    return (features & ~available) == 0 ? ntkStsNoErr : ntkStsFeaturesUnavailable;
}

NtkStatus ntkGetMaxCacheSizeB(int* pSizeBytes) {
    if (pSizeBytes == nullptr) {
        return ntkStsNullPtr;
    }
    const int sizeBytes = ntk::maxCacheSizeBytes(ntk::thisProcessor);
    if (sizeBytes <= 0) {
        return ntkStsNoProcessorInfo;
    }
    *pSizeBytes = sizeBytes;
    return ntkStsNoErr;
}
