// The library that slows chosen functions: what it hands on, and what it refuses.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "../scratch.h"
#include "ntkdc.h"
#include "process.h"

namespace fs = std::filesystem;

namespace {

// A folder that holds the library and, if there is one, its slower.txt.
class Slower : public testing::Test {
protected:
    Slower() { fs::copy_file(NTK_SLOWER_FILE, m_folder / "libntkdc.so.12"); }

    void write(const std::string& amounts) const {
        std::ofstream(m_folder / "slower.txt") << amounts;
    }
    void* load() const {
        void* const library = dlopen((m_folder / "libntkdc.so.12").c_str(), RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(library, nullptr) << dlerror();
        return library;
    }
    Outcome start() const {
        return runCommand({.program = NTK_PERF_FILE,
                           .arguments = {"-?"},
                           .environment = {"LD_LIBRARY_PATH=" + m_folder.string()}});
    }

    const TemporaryDirectory m_directory;
    const fs::path m_folder = m_directory.path();
};

TEST_F(Slower, HandsOnEveryFunctionOfTheLibrary) {
    void* const library = load();
    const Outcome names =
        runCommand({.program = "/usr/bin/nm", .arguments = {"-D", "--defined-only", NTK_DC_FILE}});
    ASSERT_EQ(names.status, 0) << names.errors;
    std::istringstream lines(names.output);
    int count = 0;
    for (std::string address, kind, name; lines >> address >> kind >> name;) {
        if (kind == "T" && name.starts_with("ntk")) {
            EXPECT_NE(dlsym(library, name.c_str()), nullptr) << name;
            ++count;
        }
    }
    EXPECT_GT(count, 60);
    dlclose(library);
}

TEST_F(Slower, ASlowedCallGivesWhatTheRealOneGives) {
    write("# a remark\n\nntksEncodeLZ4Dict_8u 1000\n  ntksCRC32_8u   7\n");
    void* const library = load();
    const auto set = reinterpret_cast<long (*)(const char*, long)>(dlsym(library, "ntkSlowerSet"));
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set("ntksCRC32_8u", 7), 7);
    EXPECT_EQ(set("ntksAdler32_8u", 0), 0);
    EXPECT_EQ(set("ntksNone", 1), -1);

    const auto crc = reinterpret_cast<decltype(&ntksCRC32_8u)>(dlsym(library, "ntksCRC32_8u"));
    Ntk32u checksum = 0;
    EXPECT_EQ(crc(reinterpret_cast<const Ntk8u*>("123456789"), 9, &checksum), ntkStsNoErr);
    EXPECT_EQ(checksum, 0xcbf43926U);
    EXPECT_EQ(crc(nullptr, 9, &checksum), ntkStsNullPtr);

    // Eight arguments: two of them lie on the stack.
    const auto symbol = [library](const char* name) { return dlsym(library, name); };
    Ntk8u table[1 << 18];
    int size = 0;
    reinterpret_cast<decltype(&ntksEncodeLZ4HashTableGetSize_8u)>(
        symbol("ntksEncodeLZ4HashTableGetSize_8u"))(&size);
    ASSERT_LE(size, int{sizeof table});
    reinterpret_cast<decltype(&ntksEncodeLZ4DictHashTableInit_8u)>(
        symbol("ntksEncodeLZ4DictHashTableInit_8u"))(table, 6);
    const Ntk8u dictionary[] = "a dictionary of some bytes";
    Ntk8u block[64];
    int length = sizeof block;
    EXPECT_EQ(reinterpret_cast<decltype(&ntksEncodeLZ4Dict_8u)>(symbol("ntksEncodeLZ4Dict_8u"))(
                  dictionary + 2, 0, 6, block, &length, table, dictionary, -1),
              ntkStsBadSize);
    EXPECT_EQ(reinterpret_cast<decltype(&ntksEncodeLZ4Dict_8u)>(symbol("ntksEncodeLZ4Dict_8u"))(
                  dictionary + 2, 0, 6, block, &length, table, nullptr, 0),
              ntkStsNoErr);
    EXPECT_EQ(length, 7);
    dlclose(library);
}

TEST_F(Slower, AProgramOfTheLibraryStartsWithIt) {
    fs::create_directory(m_folder / "the real");
    fs::create_symlink(NTK_DC_FILE, m_folder / "the real" / "one.so");
    write("library the real/one.so\nntksCRC32_8u 7\n");
    const Outcome outcome = start();
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Slower, WhatItCannotDoEndsTheProgramWithTheReason) {
    struct Case {
        std::string amounts;
        const char* reason;
    };
    const std::string core = fs::path(NTK_DC_FILE).replace_filename("libntkcore.so.12").string();
    const Case cases[] = {
        {"ntksNone 3\n", "the library has no function ntksNone"},
        {"ntksCRC32_8u\n", "'ntksCRC32_8u' is not FUNCTION NUMBER"},
        {"ntksCRC32_8u -1\n", "'ntksCRC32_8u -1' is not FUNCTION NUMBER"},
        {"ntksCRC32_8u 7 8\n", "'ntksCRC32_8u 7 8' is not FUNCTION NUMBER"},
        {"library libntkdc.so.12\n", "libntkdc.so.12 is this library itself"},
        {"library none.so\n", "none.so: cannot open shared object file"},
        {"library " + core + "\n", "libntkcore.so.12 has no ntk"},
    };
    for (const Case& c : cases) {
        write(c.amounts);
        const Outcome outcome = start();
        EXPECT_EQ(outcome.status, 2) << c.amounts;
        EXPECT_NE(outcome.errors.find(c.reason), std::string::npos) << outcome.errors;
    }
}

} // namespace
