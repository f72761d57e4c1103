#include "command.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <stdexcept>

#include "catalog.h"

namespace corpus {

namespace fs = std::filesystem;

namespace {

constexpr const char* kUsage =
    "usage: ntkcorpus [--force] DIR\n"
    "Writes fourteen stand-ins for the files of the benchmark corpus into the directory DIR,\n"
    "which is created when it is missing. Each has the name and size of the real file and about\n"
    "its packing ratio; the bytes are the same on every machine.\n"
    "  --force       replace files of these names that have other contents\n"
    "  -h,--help     print this text\n"
    "  -V,--version  print the version\n"
    "\n"
    "Exit status: 0 the files are there; 1 one could not be written, or has other contents and\n"
    "--force was not given; 2 a wrong command line.\n";

[[noreturn]] void fail(const std::string& action, const fs::path& path, const std::string& reason) {
    throw std::runtime_error("cannot " + action + " " + path.string() + ": " + reason);
}

// True when the file is there and the same; throws when something else has its name.
bool isThereAlready(const fs::path& path, const std::string& bytes, bool replaceOthers) {
    if (!fs::exists(path)) {
        return false;
    }
    if (!fs::is_regular_file(path)) {
        fail("write", path, "something that is no file has this name");
    }
    std::ifstream file(path, std::ios::binary);
    const bool isSame = std::string(std::istreambuf_iterator<char>(file), {}) == bytes;
    if (!isSame && !replaceOthers) {
        fail("write", path,
             "a file of this name with other contents is there, perhaps a real corpus. Nothing was "
             "written; choose another directory, or replace the files with --force");
    }
    return isSame;
}

// The file gets its name when it is complete: an interrupted run leaves no half file of that name.
void replaceFile(const fs::path& path, const std::string& bytes) {
    const fs::path part = path.string() + ".ntkcorpus-part";
    std::ofstream file(part, std::ios::binary);
    file << bytes;
    file.close(); // what was still buffered meets a full disk only now
    if (!file || std::rename(part.c_str(), path.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        fs::remove(part);
        fail("write", path, reason);
    }
}

// All files are looked at before the first is written: one of them may be the user's real corpus.
void makeCorpus(const fs::path& directory, bool replaceOthers, std::ostream& log) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) {
        fail("create directory", directory, error.message());
    }
    std::map<fs::path, std::string> missing; // the contents of each
    for (const FileKind& kind : catalog()) {
        const std::string bytes = kind.make();
        if (!isThereAlready(directory / kind.name, bytes, replaceOthers)) {
            missing[directory / kind.name] = bytes;
        }
    }
    for (const auto& [path, bytes] : missing) {
        replaceFile(path, bytes);
        log << path.string() << ": " << bytes.size() << " bytes written\n";
    }
    log << missing.size() << " files written, " << catalog().size() - missing.size()
        << " already there, in " << directory.string() << "\n";
}

} // namespace

int runCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    bool replaceOthers = false;
    std::string directory;
    for (const std::string& argument : arguments) {
        if (argument == "--help" || argument == "-h") {
            out << kUsage;
            return 0;
        }
        if (argument == "--version" || argument == "-V") {
            out << "ntkcorpus " NTK_VERSION "\n";
            return 0;
        }
        if (argument == "--force") {
            replaceOthers = true;
        } else if (argument.empty() || argument[0] == '-' || !directory.empty()) {
            err << "ntkcorpus: unexpected argument '" << argument << "'\n" << kUsage;
            return 2;
        } else {
            directory = argument;
        }
    }
    if (directory.empty()) {
        err << "ntkcorpus: no directory given\n" << kUsage;
        return 2;
    }
    try {
        makeCorpus(directory, replaceOthers, out);
        return 0;
    } catch (const std::exception& error) {
        err << "ntkcorpus: " << error.what() << "\n";
        return 1;
    }
}

} // namespace corpus
