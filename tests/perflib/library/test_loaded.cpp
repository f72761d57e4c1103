#include "psloaded.h"

#include <elf.h>

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "files.h"

TEST(LibraryOrigin, IsToldWhenItIsNotTheOwnBuild) {
    const std::string top = testPath("origin");
    for (const char* directory : {"/own", "/other", "/empty"}) {
        std::filesystem::create_directories(top + directory);
    }
    std::filesystem::remove(top + "/link");
    for (const char* file : {"/foreign/libntkdc.so.12", "/older/libntkdc.so.11",
                             "/older/libntkdc.so", "/older/libntkdcx.so.12"}) {
        std::filesystem::create_directories((top + file).substr(0, (top + file).rfind('/')));
        std::ofstream(top + file) << std::string(sizeof(Elf64_Ehdr), '\xB7');
    }
    std::filesystem::remove(top + "/broken/libntkdc.so.12");
    std::filesystem::create_directories(top + "/broken");
    std::filesystem::create_symlink("nothing", top + "/broken/libntkdc.so.12");
    std::filesystem::create_directory_symlink(top + "/own", top + "/link");
    const auto path = [&top](const char* name) { return psString((top + name).c_str()); };
    const auto line = [](const std::string& text) { return "-- " + text + "\n"; };
    psStringList own;
    own.append(path("/own/libntkdc.so.12"));
    psStringList mixed = own;
    mixed.append(path("/other/libntks.so.12"));
    const std::string loaded =
        line("libntks.so.12 was loaded from " + top + "/other/libntks.so.12");
    const auto none = [&line](const std::string& directory) {
        return line("LD_LIBRARY_PATH: none of the measured libraries was found in " + directory);
    };
    const auto passed = [&](const std::string& file, const std::string& reason) {
        return line("LD_LIBRARY_PATH: " + top + file + " was passed over: " + reason);
    };
    const struct {
        const psStringList& files;
        const char* ownDir;
        std::string searchPath, text;
    } cases[] = {
        {own, "/own", "", ""},
        {own, "/own/../link", top + "/own:" + top + "/link/", ""}, // the same directory
        {mixed, "/own", top + "/other", loaded},
        {own, "/own", top + "/othr", none(top + "/othr")}, // misspelt
        {mixed, "/own", top + "/empty:" + top + "/other", loaded + none(top + "/empty")},
        {own, "/own", top + "/foreign",
         passed("/foreign/libntkdc.so.12", "it is for another kind of processor")},
        {own, "/own", top + "/broken", passed("/broken/libntkdc.so.12", "it cannot be read")},
        {own, "/own", top + "/older",
         passed("/older/libntkdc.so.11", "the program needs libntkdc.so.12")},
        {mixed, "/own", top + "/foreign:" + top + "/other",
         loaded + passed("/foreign/libntkdc.so.12", "it is for another kind of processor")},
        {own, "/own", top + "/own:" + top + "/foreign", none(top + "/foreign")}, // too late
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psLibraryOriginText(c.files, path(c.ownDir), c.searchPath.c_str()).c_str(),
                  c.text);
    }
}
