#include "pslibrary.h"

#include "psostream.h"

constinit psHook ntkEnvironment = nullptr;

NtkStatus (*ntk_GetCpuFeatures)(Ntk64u*, Ntk32u[4]) = nullptr;
Ntk64u (*ntk_GetEnabledCpuFeatures)() = nullptr;
NtkStatus (*ntk_GetMaxCacheSizeB)(int*) = nullptr;
const char* (*ntk_GetStatusString)(NtkStatus) = nullptr;
NtkStatus (*ntk_Init)() = nullptr;
NtkStatus (*ntk_SetCpuFeatures)(Ntk64u) = nullptr;
NtkStatus (*ntk_SetNumThreads)(int) = nullptr;
NtkStatus (*ntk_GetNumThreads)(int*) = nullptr;

namespace {

NtkStatus s_ntkGetCpuFeatures(Ntk64u*, Ntk32u*) {
    return ntkStsNotImplemented;
}

Ntk64u s_ntkGetEnabledCpuFeatures() {
    return 0;
}

const char* s_ntkGetStatusString(NtkStatus status) {
    if (status == ntkStsNoErr) {
        return "OK";
    }
    return status > 0 ? "Note" : "Fail";
}

NtkStatus s_ntkInit() {
    return ntkStsNotImplemented;
}

NtkStatus s_ntkSetCpuFeatures(Ntk64u) {
    return ntkStsNotImplemented;
}

NtkStatus s_ntkSetNumThreads(int) {
    return ntkStsNotImplemented;
}

NtkStatus s_ntkGetNumThreads(int*) {
    return ntkStsNotImplemented;
}

template <class Function> void fill(Function*& entry, Function* fallback) {
    if (!entry) {
        entry = fallback;
    }
}

} // namespace

bool psRegNtkEnvironment(psHook fillsEntryPoints) {
    ntkEnvironment = fillsEntryPoints;
    return true;
}

void setNtkEnvironment() {
    if (ntkEnvironment) {
        ntkEnvironment();
        g_ostrm << PS_NORMAL << "\nBrask NTK Core library functions have been integrated into PS\n"
                << PS_END;
    }
    fill(ntk_GetCpuFeatures, s_ntkGetCpuFeatures);
    fill(ntk_GetEnabledCpuFeatures, s_ntkGetEnabledCpuFeatures);
    fill(ntk_GetMaxCacheSizeB, ntkGetMaxCacheSizeB);
    fill(ntk_GetStatusString, s_ntkGetStatusString);
    fill(ntk_Init, s_ntkInit);
    fill(ntk_SetCpuFeatures, s_ntkSetCpuFeatures);
    fill(ntk_SetNumThreads, s_ntkSetNumThreads);
    fill(ntk_GetNumThreads, s_ntkGetNumThreads);
}
