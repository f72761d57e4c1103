// A program that the loader cannot load.
#include <filesystem>
#include <fstream>

#include "guarded.h"

namespace {

namespace fs = std::filesystem;

class GuardLoading : public GuardTest {
protected:
    // A copy of ntkperf, which looks for its libraries in ../lib.
    void SetUp() override {
        fs::create_directories(path("bin"));
        fs::create_directories(path("lib"));
        fs::copy_file(NTK_PERF_FILE, path("bin/ntkperf"));
    }
    Outcome start() const {
        return run({path("bin/ntkperf"), "-v"},
                   {.program = NTK_GUARD_FILE, .environment = {"LD_LIBRARY_PATH="}});
    }
    // The build's libraries, with one of them changed.
    void copyLibraries() const {
        for (const auto& entry : fs::directory_iterator(NTK_LIBRARY_DIRECTORY)) {
            if (entry.path().filename().string().starts_with("libntk")) {
                fs::copy(fs::canonical(entry.path()),
                         path("lib/" + entry.path().filename().string()),
                         fs::copy_options::overwrite_existing);
            }
        }
    }
    void change(const std::function<void(std::string&)>& change,
                const std::string& library = "lib/libntkdc.so.12") const {
        copyLibraries();
        std::string bytes = readFile(path(library));
        change(bytes);
        write(library, bytes);
    }
};

TEST_F(GuardLoading, ALibraryThatItCannotHaveIsNamed) {
    const std::string library = path("lib/libntkdc.so.12");
    const struct {
        std::function<void(std::string&)> change;
        Texts told;
    } cases[] = {
        {nullptr,
         {"error while loading shared libraries: libntkdc.so.12: cannot open shared object file",
          "lib/libntkdc.so.12 is not there\n"}},
        {[](std::string& bytes) { bytes[18] = '\xB7'; }, // AArch64
         {"error while loading shared libraries: libntkdc.so.12: cannot open shared object file",
          "lib/libntkdc.so.12 is for another kind of processor\n"}},
        {[](std::string& bytes) { bytes.resize(10); },
         {"error while loading shared libraries: ", "lib/libntkdc.so.12: file too short\n"}},
        {[](std::string& bytes) { bytes = std::string(9999, 'x'); },
         {"error while loading shared libraries: ", "lib/libntkdc.so.12: invalid ELF header\n"}},
    };
    for (const auto& c : cases) {
        if (c.change) {
            change(c.change);
        }
        const Outcome outcome = start();
        EXPECT_EQ(outcome.status, 127);
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(hasOnce(outcome.errors, "could not be started, and nothing was measured"));
        for (const std::string& words : c.told) {
            EXPECT_GE(timesIn(outcome.errors, words), 1) << outcome.errors;
        }
        EXPECT_EQ(timesIn(outcome.errors, "going on"), 0);
    }
    copyLibraries();
    EXPECT_EQ(start().status, 0);
}

// Of the few that the harness itself needs.
TEST_F(GuardLoading, AMissingFunctionOfTheCoreIsNamed) {
    const auto rename = [](std::string& bytes) {
        bytes[bytes.find(std::string("\0ntkInit", 8) + '\0') + 1] = 'x';
    };
    change(rename, "lib/libntkcore.so.12");
    const Outcome outcome = start();
    EXPECT_EQ(outcome.status, 127);
    EXPECT_TRUE(hasOnce(outcome.errors, "could not be started, and nothing was measured"));
    EXPECT_GE(timesIn(outcome.errors, "undefined symbol: ntkInit\n"), 1) << outcome.errors;
}

} // namespace
