#include "psloaded.h"

#include <link.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace {
namespace fs = std::filesystem;

// The directory as the file system has it; empty when there is none.
fs::path canonicalDir(const fs::path& directory) {
    std::error_code failure;
    const fs::path path = fs::canonical(directory, failure);
    return failure ? fs::path() : path;
}

fs::path directoryOf(const psString& file) {
    return canonicalDir(fs::path(file.c_str()).parent_path());
}

int collect(dl_phdr_info* object, size_t, void* files) {
    const psString name = object->dlpi_name;
    if (name.getFileName().startsWith("libntk")) {
        static_cast<psStringList*>(files)->append(name);
    }
    return 0;
}

} // namespace

psStringList psLoadedLibraries() {
    psStringList files;
    dl_iterate_phdr(collect, &files);
    return files;
}

psString psOwnLibraryDir() {
    std::error_code failure;
    const fs::path program = fs::read_symlink("/proc/self/exe", failure);
    return failure ? psString() : (program.parent_path() / ".." / "lib").c_str();
}

psString psLibraryOriginText(const psStringList& files, const psString& ownDir,
                             const psString& searchPath) {
    psString text;
    const fs::path own = canonicalDir(ownDir.c_str());
    for (const psString& file : files) {
        if (directoryOf(file) != own) {
            text << "-- " << file.getFileName() << " was loaded from " << file << "\n";
        }
    }
    psStringList directories;
    searchPath.parse(directories, ":");
    for (const psString& directory : directories) {
        const fs::path searched = canonicalDir(directory.c_str());
        const bool used = std::any_of(files.begin(), files.end(), [&](const psString& file) {
            return directoryOf(file) == searched;
        });
        if (!used) {
            text << "-- LD_LIBRARY_PATH: none of the measured libraries was found in " << directory
                 << "\n";
        }
    }
    return text;
}
