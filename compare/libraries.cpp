#include "libraries.h"

#include <algorithm>
#include <filesystem>

#include "usage.h"

namespace fs = std::filesystem;

namespace compare {

void checkLibraries(const std::string& directory) {
    static const char* const files[] = {NTK_DC_SONAME, NTK_S_SONAME, NTK_CORE_SONAME};
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
        throw UsageError(directory + " holds none of " NTK_DC_SONAME ", " NTK_S_SONAME
                                     " and " NTK_CORE_SONAME
                                     "; name the directory they are in, or own");
    }
}

OwnBuild ownBuild() {
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    const bool isInstalled = !fs::exists(folder / "ntkturns");
    const auto place = [&](const char* built, const char* installed) {
        return (folder / (isInstalled ? installed : built)).lexically_normal();
    };
    const fs::path libraries = place("../lib", NTK_PROGRAMS_TO_LIBRARIES);
    return {place("", NTK_PROGRAMS_TO_WORKERS) / "ntkturns", libraries, libraries / NTK_DC_SONAME};
}

} // namespace compare
