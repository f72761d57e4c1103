// What the shared objects export, their dynamic section, and their version records.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ntkcore.h"
#include "ntkdc.h"
#include "ntks.h"

namespace {

struct Library {
    const char* file;
    const char* soname;  // as readelf shows it
    const char* headers; // a pattern of the shell
    const NtkLibraryVersion* version;
};

const Library libraries[] = {
    {NTK_CORE_FILE, "[libntkcore.so.12]", "ntkcore.h", ntkcoreGetLibVersion()},
    {NTK_S_FILE, "[libntks.so.12]", "ntks.h", ntksGetLibVersion()},
    {NTK_DC_FILE, "[libntkdc.so.12]", "ntkdc*.h", ntkdcGetLibVersion()},
};

std::vector<std::string> outputLines(const std::string& command) {
    std::vector<std::string> lines;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    char line[512];
    while (pipe != nullptr && fgets(line, sizeof line, pipe.get()) != nullptr) {
        lines.emplace_back(line);
        lines.back().pop_back();
    }
    return lines;
}

// The last words of the lines that a command prints.
std::set<std::string> lastWords(const std::string& command) {
    std::set<std::string> words;
    for (const std::string& line : outputLines(command)) {
        words.insert(line.substr(line.rfind(' ') + 1));
    }
    return words;
}

// Neither a function that no caller knows of, nor one of C++ or of a library inside.
TEST(SharedObjects, ExportWhatTheirHeadersDeclare) {
    for (const Library& library : libraries) {
        const std::set<std::string> declared =
            lastWords(std::string("sed -nE 's/^NTK_API [^(]*[ *]([A-Za-z0-9_]+)\\(.*/\\1/p' '") +
                      NTK_INCLUDE_DIRECTORY "/'" + library.headers);
        EXPECT_GE(declared.size(), 3u) << library.headers;
        EXPECT_EQ(lastWords("nm -D --defined-only '" + std::string(library.file) + "'"), declared)
            << library.file;
    }
}

TEST(SharedObjects, HaveTheirNamesAndYieldToTheLoadersPath) {
    for (const Library& library : libraries) {
        std::string dynamic;
        for (const std::string& line :
             outputLines("readelf -d '" + std::string(library.file) + "'")) {
            dynamic += line;
        }
        EXPECT_NE(dynamic.find(library.soname), std::string::npos);
        EXPECT_EQ(dynamic.find("(RPATH)"), std::string::npos) << dynamic;
    }
}

TEST(SharedObjects, NameThemselvesWithoutCommas) {
    for (const Library& library : libraries) {
        for (const char* const text :
             {library.version->name, library.version->version, library.version->buildDate}) {
            EXPECT_STRNE(text, "");
            EXPECT_EQ(std::strchr(text, ','), nullptr) << text;
        }
    }
    EXPECT_STREQ(ntkdcGetLibVersion()->name, "ntkDC");
}

} // namespace
