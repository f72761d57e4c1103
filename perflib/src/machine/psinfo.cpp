#include "psinfo.h"

#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>

#include <ntkcore.h>

#include "pscpucache.h"

namespace {

constexpr unsigned cacheLeaf = 4;
constexpr unsigned brandLeaves = 0x80000002; // three of them, 16 characters each
constexpr int numBrandLeaves = 3;

int largestDescribedCache(psCpuidReader read) {
    int largest = 0;
    if (CPUID::largestLeaf(read) >= cacheLeaf) {
        for (const psCpuCache& cache : psCpuCaches(read)) {
            largest = std::max(largest, cache.bytes);
        }
    }
    return largest;
}

psString withSingleBlanks(const psString& text) {
    psStringList words;
    text.parse(words, " ");
    psString joined;
    for (const psString& word : words) {
        joined << (joined.empty() ? "" : " ") << word;
    }
    return joined;
}

} // namespace

psString psOS() {
    utsname names;
    if (uname(&names) != 0) {
        return {};
    }
    psString text;
    text << names.sysname << " (" << names.release << ", " << names.version << ")";
    return text;
}

psString psHost() {
    char name[1024] = {};
    return gethostname(name, sizeof name - 1) == 0 ? psString(name) : psString();
}

int psGetNumOfProcessors() {
    return std::max(1, static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)));
}

psString psCpuBrand(psCpuidReader read) {
    psString text;
    for (unsigned i = 0; i < numBrandLeaves; ++i) {
        const CPUID part(brandLeaves + i, 0, read);
        text += part.text({CPUID::EAX, CPUID::EBX, CPUID::ECX, CPUID::EDX});
    }
    return withSingleBlanks(text);
}

int psMaxCacheSizeB(psCacheSizeQuery query, psCpuidReader read) {
    int bytes = 0;
    if (query(&bytes) == ntkStsNoErr && bytes > 0) {
        return bytes;
    }
    return largestDescribedCache(read);
}

int psGetMaxCacheSizeB() {
    return psMaxCacheSizeB(ntkGetMaxCacheSizeB, psReadCpuid);
}

long psInvoluntarySwitches() {
    rusage usage{};
    return getrusage(RUSAGE_THREAD, &usage) == 0 ? usage.ru_nivcsw : 0;
}
