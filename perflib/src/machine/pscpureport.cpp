#include "pscpureport.h"

#include "pscpucache.h"
#include "pscputopology.h"
#include "psinfo.h"
#include "psreportformat.h"

namespace {

constexpr unsigned wholeSizesLeaf = 0x80000006;
constexpr int bytesPerKB = 1024;

constexpr const char* cacheKinds[] = {"", "Data Cache", "Instruction Cache", "Unified Cache"};

psString line(const char* label, const psString& value) {
    return value.empty() ? psString() : psFormat("    %-36s: %s\n", label, value.c_str());
}

psString line(const char* label, int value) {
    return line(label, psText(value));
}

psString line(const char* label, const psPackageCount& number) {
    return number.count == 0
               ? psString()
               : line(label, (number.isUpperLimit ? "at most " : "") + psText(number.count));
}

psString flag(bool isSet, const char* text) {
    return isSet ? psString("    ") + text : psString();
}

// A leaf number; empty for 0, which is that of a range without leaves.
psString leafText(unsigned leaf) {
    return leaf == 0 ? psString() : psFormat("0x%x", leaf);
}

psString head() {
    psString stars;
    stars.resize(79, '*');
    return psReportFormat::firstLine() + stars + "\n    Got by CPUID Instruction Functions\n" +
           "    Information below may be inadequate.\n";
}

psString identification(psCpuidReader read) {
    const psString vendor = CPUID(0, 0, read).text({CPUID::EBX, CPUID::EDX, CPUID::ECX});
    psString text = line("Largest standard leaf", leafText(CPUID::largestLeaf(read)));
    text += line("Largest extended leaf", leafText(CPUID::largestExtendedLeaf(read)));
    text += line("Vendor", vendor);
    text += line("Brand", psCpuBrand(read));
    return text.empty() ? text : head() + "\n" + text;
}

psString signature(const CPUID& leaf1) {
    const psCpuSignature numbers = psSignatureOf(leaf1);
    return "    Processor Identification Signature\n\n" + line("Family", numbers.family) +
           line("Model", numbers.model) + line("Stepping", numbers.stepping) +
           line("Type", numbers.type) + line("Brand id", numbers.brandId);
}

psString threading(psCpuidReader read) {
    const psCpuThreads threads = psThreadsOf(read);
    return "    Multi Threading Features\n\n" +
           line("Multithreading or multi-core", threads.supported ? "supported" : "not supported") +
           line("Logical processors per package", threads.logical) +
           line("Cores per package", threads.cores);
}

psString description(const psCpuCache& cache) {
    return psString("\n    ") + cacheKinds[cache.kind] + "\n" + line("Level", cache.level) +
           line("Size", psText(cache.bytes / bytesPerKB) + " KB") +
           line("Threads sharing it, at most", cache.maxThreads) +
           line("Number of sets", cache.sets) +
           line("Line size", psText(cache.lineBytes) + " bytes") +
           line("Line partitions", cache.partitions) +
           line("Associativity", psText(cache.ways) + "-way") +
           flag(cache.fullyAssociative, "Fully Associative cache\n") +
           flag(cache.selfInitializing, "Self Initializing cache level\n") +
           flag(cache.inclusive, "Cache is inclusive to lower cache levels\n") +
           flag(cache.ownFlushOnly, "WBINVD/INVD behavior on lower level caches\n");
}

// Without those of a reserved kind and those whose size is hidden.
psString caches(psCpuidReader read) {
    psString text;
    for (const psCpuCache& cache : psCpuCaches(read)) {
        if (cache.kind <= psCpuCache::unified && cache.bytes >= bytesPerKB) {
            text += description(cache);
        }
    }
    return text.empty() ? text : "    Deterministic Cache Parameters\n" + text;
}

// The other codes stand for rare numbers of ways or refer to the list of caches, and makers differ
// in which.
psString associativityText(unsigned code) {
    switch (code) {
    case 0: return "Disabled";
    case 1: return "Direct mapped";
    case 2: return "2-Way";
    case 4: return "4-Way";
    case 6: return "8-Way";
    case 8: return "16-Way";
    case 0xf: return "Fully associative";
    default: return psFormat("Other (code %u)", code);
    }
}

psString level2(psCpuidReader read) {
    const CPUID sizes(wholeSizesLeaf, 0, read);
    const unsigned sizeKB = sizes.getBits(CPUID::ECX, 31, 16);
    if (sizeKB == 0) {
        return {};
    }
    return "    Extended L2 Cache Features\n\n" + line("Size", psFormat("%u KB", sizeKB)) +
           line("Line size", psFormat("%u bytes", sizes.getByte(CPUID::ECX, 0))) +
           line("Associativity", associativityText(sizes.getBits(CPUID::ECX, 15, 12)));
}

} // namespace

psString psCpuReport(psCpuidReader read, unsigned long long present, unsigned long long enabled,
                     unsigned long long savedStates) {
    const CPUID leaf1(1, 0, read);
    const bool hasLeaf1 = leaf1.get(CPUID::EAX) != 0; // zeros: hidden
    psString report = identification(read);
    for (const psString& section :
         {hasLeaf1 ? signature(leaf1) : psString(), hasLeaf1 ? threading(read) : psString(),
          caches(read), level2(read), psFeatureFlags(present, enabled, savedStates)}) {
        if (!section.empty()) {
            report += psReportFormat::sepLine() + section;
        }
    }
    return report;
}
