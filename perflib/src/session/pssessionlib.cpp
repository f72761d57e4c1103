// The measured library at the start of a session: address randomisation, processor features,
// version.

#include <sys/personality.h>

#include <cstdlib>

#include "ps.h"
#include "psblockspace.h"
#include "pscpufeatures.h"
#include "psloaded.h"

namespace {
// Of <linux/personality.h>: address-space randomisation is switched off.
constexpr int noRandomisation = 0x40000;

const char* aslrText(int personalityFlags) {
    if (personalityFlags == -1) {
        return "\nERROR: personality() failed\n";
    }
    if (personalityFlags & noRandomisation) {
        return "\nAddress space layout randomization (ASLR) is disabled.\n";
    }
    return "\nWARNING: Address space layout randomization (ASLR) is enabled. "
           "Results can be unstable.\n";
}
} // namespace

void psSession::prepareLibrary() {
    if (ntkEnvironment) {
        g_ostrm << PS_NORMAL << aslrText(personality(0)) << PS_END;
        if (m_cpuFeatures) {
            applyFeatures();
        } else {
            ntk_Init();
        }
        setNtkEnvironment();
    }
    collectLibInfo();
    guardBlocks();
    const char* const searchPath = getenv("LD_LIBRARY_PATH");
    g_ostrm << PS_NORMAL
            << psLibraryOriginText(psLoadedLibraries(), psOwnLibraryDir(),
                                   searchPath ? searchPath : "")
            << PS_END;
}

// A page without access beside each test block, to find the call that writes beyond its buffers.
void psSession::guardBlocks() {
    const char* const wanted = getenv("NTKPERF_GUARD");
    psGuard guard = psGuard::none;
    if (wanted == nullptr || *wanted == 0) {
        return;
    }
    if (!psGuardFromText(wanted, guard)) {
        g_ostrm << PS_ERR << "-- NTKPERF_GUARD: \"" << wanted
                << "\" is not known, no pages are guarded: use pages-after or pages-before\n"
                << PS_END;
        return;
    }
    psSetGuard(guard);
    g_ostrm << PS_NORMAL << "-- NTKPERF_GUARD: a page without access "
            << (guard == psGuard::pagesAfter ? "after" : "before")
            << " each test block. The figures are not to be compared with others\n"
            << PS_END;
}

// The number and the library's text of a status that is not 0.
void psSession::reportLibraryStatus(NtkStatus status) {
    g_ostrm << "--NTK FAIL. "
            << "status = " << status << ": " << ntk_GetStatusString(status) << "\n";
}

void psSession::applyFeatures() {
    g_ostrm << PS_ERR << "\n--calling ntkSetCpuFeatures( ntkCpuFeatures "
            << "= " << psFormat("%#8llx", m_cpuFeatures).substr(0, 63) << " )\n";
    const NtkStatus status = ntk_SetCpuFeatures(m_cpuFeatures);
    if (status == 0) {
        g_ostrm << "--status = ntkStsNoErr\n";
    } else {
        reportLibraryStatus(status);
    }
    if (status < 0) {
        g_ostrm << "--calling ntkInit()\n";
        const NtkStatus initStatus = ntk_Init();
        if (initStatus < 0) {
            reportLibraryStatus(initStatus);
        }
    }
    g_ostrm << PS_END;
}

// What "-T" left enabled, so that tables of several kernels can be told apart by their titles.
static psString enabledFeaturesText() {
    const unsigned long long enabled = ntk_GetEnabledCpuFeatures();
    psString text = "-T:";
    for (const psCpuFeature& feature : psCpuFeatures()) {
        if (feature.mask && (enabled & feature.mask) == feature.mask) {
            text << " " << feature.label;
        }
    }
    return text;
}

void psSession::collectLibInfo() {
    if (!ntkVersionList) {
        return;
    }
    for (const NtkLibraryVersion* const version : psLibraryVersions()) {
        psRegLibInfo(psString(version->name) + ", " + version->version + ", " + version->buildDate);
    }
    if (m_cpuFeatures) {
        psRegLibInfo(enabledFeaturesText());
    }
    g_ostrm << PS_NORMAL << "Brask NTK libraries information has been set into PS\n" << PS_END;
}
