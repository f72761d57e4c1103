#include "psloaded.h"

#include <elf.h>
#include <link.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
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

// "libntkdc.so" of "libntkdc.so.12".
std::string withoutVersion(const std::string& name) {
    return name.substr(0, name.find(".so") + 3);
}

// Why the loader passed over a file; empty when it is as good as any.
psString faultOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    Elf64_Ehdr header = {};
    if (!in.read(reinterpret_cast<char*>(&header), sizeof header)) {
        return "it cannot be read";
    }
    return header.e_machine == EM_X86_64 && header.e_ident[EI_CLASS] == ELFCLASS64
               ? psString()
               : psString("it is for another kind of processor");
}

// The loader is silent about a file that it does not take, as long as it finds another one. Empty
// when nothing in the directory is like the library of this name.
psString passedOverText(const fs::path& directory, const psString& name) {
    std::error_code failure;
    const fs::path wanted = directory / name.c_str();
    psString reason;
    fs::path file = wanted;
    if (fs::exists(fs::symlink_status(wanted, failure))) {
        reason = faultOf(wanted);
    } else {
        std::set<fs::path> others;
        for (const auto& entry : fs::directory_iterator(directory, failure)) {
            if (withoutVersion(entry.path().filename()) == withoutVersion(name.c_str())) {
                others.insert(entry.path());
            }
        }
        if (!others.empty()) {
            file = *others.rbegin();
            reason = "the program needs " + name;
        }
    }
    return reason.empty() ? reason
                          : "-- LD_LIBRARY_PATH: " + psString(file.c_str()) +
                                " was passed over: " + reason + "\n";
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
    std::set<std::string> taken; // names that an earlier directory gave
    psString found;
    psString missed;
    for (const psString& directory : directories) {
        const fs::path searched = canonicalDir(directory.c_str());
        bool used = false;
        psString passedOver;
        for (const psString& file : files) {
            const psString name = file.getFileName();
            if (directoryOf(file) != searched) {
                passedOver +=
                    taken.count(name.c_str()) ? "" : passedOverText(directory.c_str(), name);
                continue;
            }
            used = true;
            taken.insert(name.c_str());
            if (searched != own) {
                found << "-- " << name << " was loaded from " << file << "\n";
            }
        }
        if (!used && passedOver.empty()) {
            missed << "-- LD_LIBRARY_PATH: none of the measured libraries was found in "
                   << directory << "\n";
        }
        missed << passedOver;
    }
    return found + missed;
}
