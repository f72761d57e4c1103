#include "psloaded.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "files.h"
#include "psmissing.h"

TEST(LibraryOrigin, IsToldWhenItIsNotTheOwnBuild) {
    const std::string top = testPath("origin");
    for (const char* directory : {"/own", "/other", "/empty"}) {
        std::filesystem::create_directories(top + directory);
    }
    std::filesystem::remove(top + "/link");
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
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psLibraryOriginText(c.files, path(c.ownDir), c.searchPath.c_str()).c_str(),
                  c.text);
    }
}

TEST(MissingFunction, IsToldWithTheFilesOfTheLibrary) {
    EXPECT_STREQ(psMissingFunctionText("ntkGetCpuFeatures").c_str(), "");
    const psString text = psMissingFunctionText("ntksNoSuchFunction_8u");
    EXPECT_TRUE(text.startsWith("the library has no function ntksNoSuchFunction_8u ("))
        << text.c_str();
    EXPECT_TRUE(text.contains("/libntkcore.so.12)")) << text.c_str();
    psStandInForMissingFunctions();
    EXPECT_FALSE(psIsMissingFunction("ntkGetCpuFeatures"));
}
