#include "psfreqcache.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "psinfo.h"
#include "psatomicfile.h"
#include "psstream.h"

namespace {

// An absolute path, as the base directories of a user have to be.
psString directoryOf(const char* variable) {
    const char* const value = getenv(variable);
    return value && *value == '/' ? psString(value) : psString();
}

psString firstLineOf(const psString& path) {
    i_stream file(path, PS_OPEN_READ, false);
    psString line;
    return file.isOpen() && file.getline(line) ? line : psString();
}

} // namespace

psString psFrequencyCachePath() {
    psString base = directoryOf("XDG_CACHE_HOME");
    if (base.empty()) {
        const psString home = directoryOf("HOME");
        base = home.empty() ? home : home + "/.cache";
    }
    return base.empty() ? base : base + "/ntkperf/frequency";
}

psString psFrequencyCacheKey() {
    const psString boot = firstLineOf("/proc/sys/kernel/random/boot_id");
    return boot.empty() ? boot : boot + " " + psCpuBrand();
}

// One line: the key, "=", the MHz.
int psReadFrequency(const psString& path, const psString& key) {
    constexpr int highestMHz = 100000; // what is beyond was not written by this program
    const psString line = path.empty() || key.empty() ? psString() : firstLineOf(path);
    const psString front = key + "=";
    if (!line.startsWith(front)) {
        return 0;
    }
    const psString number = line.substr(front.length());
    int mhz = 0;
    if (psIsNumber(number, mhz)) {
        mhz << number;
    }
    return mhz > 0 && mhz <= highestMHz ? mhz : 0;
}

void psWriteFrequency(const psString& path, const psString& key, int mhz) {
    if (path.empty() || key.empty() || mhz <= 0) {
        return;
    }
    std::error_code failure;
    std::filesystem::create_directories(path.getFileDir().c_str(), failure);
    if (failure) {
        return;
    }
    psAtomicFile file(path);
    file.write(key + "=" + psText(mhz) + "\n");
    file.commit();
}
