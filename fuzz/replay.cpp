// Runs a target on stored inputs, without a fuzzer: every file named, and every file in a folder
// named.
//
//   fuzz_TARGET FILE|FOLDER...
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "fuzz.h"

namespace {

// In an order that does not change.
std::set<std::filesystem::path> filesOf(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        files.insert(entry.path());
    }
    return files;
}

bool replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "can't read %s\n", path.c_str());
        return false;
    }
    // Named before, as a finding ends the process.
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const fuzz::Block block(Bytes(bytes.begin(), bytes.end()));
    LLVMFuzzerTestOneInput(block.data(), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv) try {
    int count = 0;
    bool isWhole = true;
    for (int i = 1; i < argc; ++i) {
        for (const std::filesystem::path& file : filesOf(argv[i])) {
            isWhole = replay(file) && isWhole;
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "no inputs: name files, or folders with files\n");
    }
    return isWhole && count > 0 ? 0 : 1;
} catch (const std::exception& fault) {
    std::fprintf(stderr, "%s\n", fault.what());
    return 1;
}
