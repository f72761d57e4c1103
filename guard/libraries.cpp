#include "libraries.h"

#include <elf.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>

#include "child.h"

namespace guard {

namespace {

constexpr const char* loadingText = "error while loading shared libraries: ";

// "libntkdc.so.12" of "ntkperf: error while loading shared libraries: libntkdc.so.12: cannot ...".
std::string libraryOf(const std::string& line) {
    const size_t begin = line.find(loadingText);
    if (begin == std::string::npos) {
        return {};
    }
    const std::string rest = line.substr(begin + strlen(loadingText));
    return rest.substr(0, rest.find(':'));
}

std::string directoryOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

// The loader looks into folders for kinds of processors first, whether they are there or not.
bool isBelowAnother(const std::string& path, const std::vector<std::string>& paths) {
    const std::string directory = directoryOf(path);
    return std::any_of(paths.begin(), paths.end(), [&](const std::string& other) {
        const std::string above = directoryOf(other);
        return above.size() < directory.size() && directory.starts_with(above);
    });
}

} // namespace

bool isLoaderError(const std::string& line) {
    return line.find(loadingText) != std::string::npos ||
           line.find(": symbol lookup error: ") != std::string::npos;
}

std::vector<std::string> triedPaths(const std::string& debugText, const std::string& library) {
    static const std::string mark = "trying file=";
    std::vector<std::string> all;
    std::istringstream lines(debugText);
    for (std::string line; std::getline(lines, line);) {
        const size_t begin = line.find(mark);
        const std::string path = begin == std::string::npos ? "" : line.substr(begin + mark.size());
        if (path.ends_with("/" + library) && std::find(all.begin(), all.end(), path) == all.end()) {
            all.push_back(path);
        }
    }
    std::vector<std::string> paths;
    for (const std::string& path : all) {
        if (access(path.c_str(), F_OK) == 0 || !isBelowAnother(path, all)) {
            paths.push_back(path);
        }
    }
    return paths;
}

std::string verdictOf(const std::string& path) {
    if (access(path.c_str(), F_OK) != 0) {
        return "is not there";
    }
    Elf64_Ehdr header = {};
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(&header), sizeof header);
    if (!file && file.gcount() == 0) {
        return "cannot be read";
    }
    if (memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return "is no library";
    }
    return header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_machine != EM_X86_64
               ? "is for another kind of processor"
               : "is there, but cannot be used";
}

// The loader lists what it would load and starts nothing.
std::vector<TriedFile> triedFiles(const std::vector<std::string>& words, const std::string& line) {
    const std::string library = libraryOf(line);
    std::vector<TriedFile> files;
    if (library.empty() || library.find('/') != std::string::npos) {
        return files;
    }
    const std::string text = errorsOf(words, {"LD_TRACE_LOADED_OBJECTS=1", "LD_DEBUG=libs"});
    for (const std::string& path : triedPaths(text, library)) {
        files.push_back({path, verdictOf(path)});
    }
    return files;
}

} // namespace guard
