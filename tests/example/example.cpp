// What the tests of this program have in common: the hooks into the measured library, the shared
// parameters, the columns of the table. All of it is registered before main runs.

#include "example.h"

#include <gnu/libc-version.h>

psStepIterator<int> g_length;
psIterator<NtkiSize> g_size;

namespace {

// The functions of the library, for the list of what tests cover ("-e+").
const char* const libraryFunctions[] = {"memchr", "memcmp", "memcpy", "memmove", "memset"};

// Names and values; called once, before they are read from command line, settings or console.
void setParameters() {
    g_length.init(65536, 1048576, 4, PS_STEP_MUL, "Length");
    g_size.init({256, 256}, "Size");
}

const char* statusText(NtkStatus status) {
    return status < 0 ? "the function has failed" : "the function has a remark";
}

// The services that the harness takes from a library. Those of the machine come with the harness;
// what is left out here has a fallback.
void setEnvironment() {
    ntk_GetCpuFeatures = ntkGetCpuFeatures;
    ntk_GetEnabledCpuFeatures = ntkGetEnabledCpuFeatures;
    ntk_GetStatusString = statusText;
}

const NtkLibraryVersion* libraryVersion() {
    static const NtkLibraryVersion version = {"C library", gnu_get_libc_version(), "installed"};
    return &version;
}

// What a status that a call returns means for its test: below 0 a failure, above it a note.
psResult resultOfStatus(int status) {
    return kxTest::checkStatus(status, psTestList::m_pCurrentTest->functionName());
}

[[maybe_unused]] const bool g_registered = [] {
    psRegNtkEnvironment(setEnvironment);
    psRegNtkVersion(libraryVersion);
    psTool::m_pCheckStatus = resultOfStatus;
    psRegParm(g_length);
    psRegParm(g_size);
    psRegParmColumn("Data");
    psRegQKeys();
    psRegHotFunction("memcpy"); // what users call most often
    for (const char* const function : libraryFunctions) {
        psRegLibFunction(function);
    }
    return psRegParmFunc(setParameters);
}();

} // namespace
