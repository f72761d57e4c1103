#include "writer.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <ostream>
#include <utility>
#include <vector>

#include "catalog.h"

namespace corpus {

namespace fs = std::filesystem;

namespace {

struct MadeFile {
    fs::path path;
    std::string bytes;
    bool isThere; // with these very bytes
};

[[noreturn]] void fail(const std::string& action, const fs::path& path, const std::string& reason) {
    throw CorpusError("cannot " + action + " " + path.string() + ": " + reason);
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        fail("read", path, std::strerror(errno));
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

// True when the file is there and the same; throws when something else has its name.
bool isThereAlready(const fs::path& path, const std::string& bytes, bool replaceOthers) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) {
        return false;
    }
    if (error) {
        fail("look at", path, error.message());
    }
    if (status.type() != fs::file_type::regular) {
        fail("write", path, "something that is no file has this name");
    }
    const bool same = fs::file_size(path, error) == bytes.size() && readFile(path) == bytes;
    if (!same && !replaceOthers) {
        fail("write", path,
             "a file of this name with other contents is there, perhaps a real corpus. Nothing was "
             "written; choose another directory, or replace the files with --force");
    }
    return same;
}

std::vector<MadeFile> makeFiles(const fs::path& directory, bool replaceOthers) {
    std::vector<MadeFile> files;
    for (const FileKind& kind : catalog()) {
        MadeFile file{directory / kind.name, kind.make(kind.sizeBytes), false};
        file.isThere = isThereAlready(file.path, file.bytes, replaceOthers);
        files.push_back(std::move(file));
    }
    return files;
}

} // namespace

void writeFile(const fs::path& path, std::string_view bytes) {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        fail("write", path, std::strerror(errno));
    }
    const bool complete = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int writeError = errno;
    // What was still buffered meets a full disk only now.
    const bool closed = std::fclose(file) == 0;
    if (!complete || !closed) {
        fail("write", path, std::strerror(complete ? errno : writeError));
    }
}

void replaceFile(const fs::path& path, std::string_view bytes) {
    fs::path temporary = path;
    temporary += ".ntkcorpus-part";
    std::error_code error;
    try {
        writeFile(temporary, bytes);
    } catch (const CorpusError&) {
        fs::remove(temporary, error);
        throw;
    }
    fs::rename(temporary, path, error);
    if (error) {
        const std::string reason = error.message();
        fs::remove(temporary, error);
        fail("write", path, reason);
    }
}

MakeResult makeCorpus(const fs::path& directory, bool replaceOthers, std::ostream& log) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) {
        fail("create directory", directory, error.message());
    }
    MakeResult result;
    for (const MadeFile& file : makeFiles(directory, replaceOthers)) {
        if (!file.isThere) {
            replaceFile(file.path, file.bytes);
        }
        ++(file.isThere ? result.unchanged : result.written);
        log << file.path.string() << ": " << file.bytes.size() << " bytes "
            << (file.isThere ? "already there" : "written") << "\n";
    }
    return result;
}

} // namespace corpus
