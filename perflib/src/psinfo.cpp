#include "psinfo.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>

#include <ntkcore.h>

namespace {

constexpr unsigned cacheLeaf = 4;
constexpr unsigned brandLeaves = 0x80000002; // three of them, 16 characters each
constexpr int numBrandLeaves = 3;

// Ways, partitions, line size and sets of one leaf 4 answer; negative when the product is no int.
int cacheBytes(const CPUID& cache) {
    const unsigned factors[] = {cache.getBits(CPUID::EBX, 31, 22),
                                cache.getBits(CPUID::EBX, 21, 12), cache.getBits(CPUID::EBX, 11, 0),
                                cache.get(CPUID::ECX)};
    int bytes = 1;
    for (const unsigned factor : factors) {
        if (__builtin_mul_overflow(bytes, 1LL + factor, &bytes)) {
            return -1;
        }
    }
    return bytes;
}

int largestDescribedCache(psCpuidReader read) {
    int largest = 0;
    for (unsigned subleaf = 0;; ++subleaf) {
        const CPUID cache(cacheLeaf, subleaf, read); // zeros: no such leaf, or the list ends
        const bool isCache = cache.getBits(CPUID::EAX, 4, 0) != 0;
        const int bytes = isCache ? cacheBytes(cache) : -1;
        if (bytes < 0) {
            break;
        }
        largest = std::max(largest, bytes);
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
        for (const CPUID::Register reg : {CPUID::EAX, CPUID::EBX, CPUID::ECX, CPUID::EDX}) {
            for (int byte = 0; byte < 4; ++byte) {
                const char c = static_cast<char>(part.getByte(reg, byte));
                if (c != '\0') {
                    text += c;
                }
            }
        }
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
