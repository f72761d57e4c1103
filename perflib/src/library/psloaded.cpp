#include "psloaded.h"

#include <link.h>

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
    if (failure) {
        return psString();
    }
    const fs::path folder = program.parent_path();
    const fs::path beside = folder / "../lib";
    for (const fs::path& directory :
         {beside, folder / NTK_PROGRAMS_TO_LIBRARIES, folder / NTK_WORKERS_TO_LIBRARIES}) {
        if (fs::exists(directory / NTK_CORE_SONAME, failure)) {
            return directory.c_str();
        }
    }
    return beside.c_str();
}

psString psLibraryOriginText(const psStringList& files, const psString& ownDir,
                             const psString& searchPath) {
    const fs::path own = canonicalDir(ownDir.c_str());
    psStringList directories;
    searchPath.parse(directories, ":");
    psString found;
    psString missed;
    for (const psString& directory : directories) {
        const fs::path searched = canonicalDir(directory.c_str());
        bool used = false;
        for (const psString& file : files) {
            const bool isHere = directoryOf(file) == searched;
            used = used || isHere;
            if (isHere && searched != own) {
                found << "-- " << file.getFileName() << " was loaded from " << file << "\n";
            }
        }
        if (!used) {
            missed << "-- LD_LIBRARY_PATH: none of the measured libraries was found in "
                   << directory << "\n";
        }
    }
    return found + missed;
}
