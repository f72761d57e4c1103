#include "libraries.h"

#include <algorithm>
#include <filesystem>

#include "usage.h"

namespace fs = std::filesystem;

namespace compare {

void checkLibraries(const std::string& directory) {
    static const char* const files[] = {"libntkdc.so.12", "libntks.so.12", "libntkcore.so.12"};
    std::error_code error;
    if (!fs::is_directory(directory, error)) {
        throw UsageError(directory +
                         (fs::exists(directory, error) ? " is no directory" : " does not exist") +
                         "; name a directory with a build of the measured library, or own");
    }
    const bool hasOne = std::any_of(std::begin(files), std::end(files), [&](const char* file) {
        return fs::exists(fs::path(directory) / file, error);
    });
    if (!hasOne) {
        throw UsageError(directory + " holds none of libntkdc.so.12, libntks.so.12 and "
                                     "libntkcore.so.12; name the directory they are in, or own");
    }
}

std::string programFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path().string() + "/";
}

std::string ownLibraries() {
    return fs::path(programFolder() + "../lib").lexically_normal();
}

} // namespace compare
