// What the shared objects export, their dynamic section, and their version records.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ntkcore.h"
#include "ntkdc.h"
#include "ntks.h"

namespace {

struct Library {
    const char* file;
    const char* soname; // as readelf shows it
    const char* someExport;
    const NtkLibraryVersion* version;
};

const Library libraries[] = {
    {NTK_CORE_FILE, "[libntkcore.so.12]", "ntkStopTscp", ntkcoreGetLibVersion()},
    {NTK_S_FILE, "[libntks.so.12]", "ntksCopy_8u", ntksGetLibVersion()},
    {NTK_DC_FILE, "[libntkdc.so.12]", "ntksDecodeLZ4_8u", ntkdcGetLibVersion()},
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

TEST(SharedObjects, ExportOnlyTheirPrefix) {
    for (const Library& library : libraries) {
        bool hasSomeExport = false;
        for (const std::string& line :
             outputLines("nm -D --defined-only '" + std::string(library.file) + "'")) {
            const std::string name = line.substr(line.rfind(' ') + 1);
            EXPECT_EQ(name.rfind("ntk", 0), 0U) << library.file << " exports " << name;
            hasSomeExport = hasSomeExport || name == library.someExport;
        }
        EXPECT_TRUE(hasSomeExport) << library.file;
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
