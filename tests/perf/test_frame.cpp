// What all families share: the common parameters and the hooks into the library.

#include "family.h"

#include <cpuid.h>
#include <stdio.h>

#include <memory>
#include <set>
#include <vector>

#include "../registered_tests.h"
#include "dchooks.h"

namespace {
std::string valuesOf(psParameter& parm) {
    std::string values;
    parm.resetIterator();
    while (parm.nextValue()) {
        values += std::string(values.empty() ? "" : " ") + parm.valueString().c_str();
    }
    return values;
}

// The functions to be measured, as the loader sees them in the shared object.
std::set<std::string> exportedFunctions() {
    std::set<std::string> names;
    const std::unique_ptr<FILE, int (*)(FILE*)> lines(
        popen("nm -D --defined-only '" NTK_DC_FILE "'", "r"), pclose);
    char name[512];
    while (lines && fscanf(lines.get(), "%*s %*c %511s", name) == 1) {
        if (std::string(name).rfind("ntks", 0) == 0) {
            names.insert(name);
        }
    }
    return names;
}

using Frame = FamilyTest;
} // namespace

TEST_F(Frame, CommonParameters) {
    regTestParameters(); // other tests gave them values of their own
    const struct {
        psParameter& parm;
        const char *name, *values;
    } cases[] = {
        {g_huffLen, "HuffLength", "1024 2048 4096 8192 16384 32768"},
        {g_codeLen, "CodeLength", "16384 32768 65536 131072 262144"},
        {g_codeFile, "CodeFile",
         "bib book1 book2 geo news obj1 obj2 paper1 paper2 pic progc progl progp trans"},
    };
    auto registered = g_pParmList->begin();
    for (const auto& c : cases) {
        EXPECT_EQ(c.parm.name(), c.name);
        EXPECT_EQ(valuesOf(c.parm), c.values);
        EXPECT_EQ(*registered, &c.parm) << c.name;
        ++registered;
    }
}

TEST_F(Frame, HooksLeadIntoTheLibrary) {
    EXPECT_EQ(ntk_GetCpuFeatures, ntkGetCpuFeatures);
    EXPECT_EQ(ntk_GetEnabledCpuFeatures, ntkGetEnabledCpuFeatures);
    EXPECT_EQ(ntk_Init, ntkInit);
    EXPECT_EQ(ntk_SetCpuFeatures, ntkSetCpuFeatures);
    EXPECT_EQ(ntk_GetMaxCacheSizeB, ntkGetMaxCacheSizeB);
    EXPECT_EQ(ntk_GetStatusString, ntkGetStatusString);
    EXPECT_EQ(kxGetNtkVersion_ntkdc(), ntkdcGetLibVersion());
    unsigned a = 0, b = 0, c = 0, d = 0;
    const bool rdtscp = __get_cpuid(0x80000001, &a, &b, &c, &d) && (d & 1U << 27);
    EXPECT_EQ(ntk_StartCpuClocks, rdtscp ? ntkStartTscp : ntkStartTsc);
    EXPECT_EQ(ntk_StopCpuClocks, rdtscp ? ntkStopTscp : ntkStopTsc);
}

TEST_F(Frame, ListedFunctionsAreThoseOfTheLibrary) {
    std::set<std::string> listed;
    for (const psString& name : *g_pLibFunctions) {
        listed.insert(name.c_str());
    }
    EXPECT_EQ(listed, exportedFunctions());
    EXPECT_EQ(listed.count("ntksDecodeLZ4_8u"), 1u);
}

// Their order is that in which users see the tests when they switch sorting off.
TEST_F(Frame, TestsAreRegisteredInTheirOrder) {
    std::vector<std::string> wanted = {"__psOS OS information/", "__psHost Computer information/"};
    for (const RegisteredTest& test : registeredTests()) {
        wanted.push_back(std::string(test.function) + " " + test.className + "/" + test.macro);
    }
    std::vector<std::string> registered;
    for (const psTest* test : *pTestList) {
        const psString text =
            test->functionName() + " " + test->info().name + "/" + test->info().macro;
        registered.push_back(text.c_str());
    }
    EXPECT_EQ(registered, wanted);
}
