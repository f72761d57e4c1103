#pragma once

#include <ntkdc.h>

#include <kx.h>

// The hooks into the compression library. Every benchmark file has its own copy and registers it,
// so that any one of them makes a whole program; registering the same pair again is harmless.

namespace {

bool hasRdtscp() {
    Ntk64u mask = 0;
    static_assert(sizeof mask + 1 == sizeof NTK_GET_INFO_MARKER);
    __builtin_memcpy(&mask, NTK_GET_INFO_MARKER, sizeof mask); // the registers alone are asked for
    Ntk32u registers[4] = {0x80000001, 0, 0, 0};
    ntkGetCpuFeatures(&mask, registers);
    return (registers[3] >> 27 & 1) != 0;
}

// Fills the entry points of the library's core and chooses the clock readers.
void kxSetNtkEnvironment() {
    ntk_GetCpuFeatures = ntkGetCpuFeatures;
    ntk_GetEnabledCpuFeatures = ntkGetEnabledCpuFeatures;
    ntk_Init = ntkInit;
    ntk_SetCpuFeatures = ntkSetCpuFeatures;
    ntk_GetMaxCacheSizeB = ntkGetMaxCacheSizeB;
    ntk_GetStatusString = ntkGetStatusString;
    const bool rdtscp = hasRdtscp();
    ntk_StartCpuClocks = rdtscp ? ntkStartTscp : ntkStartTsc;
    ntk_StopCpuClocks = rdtscp ? ntkStopTscp : ntkStopTsc;
}

const NtkLibraryVersion* kxGetNtkVersion_ntkdc() {
    return ntkdcGetLibVersion();
}

[[maybe_unused]] void registerHooks() {
    psRegNtkEnvironment(kxSetNtkEnvironment);
    psRegNtkVersion(kxGetNtkVersion_ntkdc);
}

} // namespace
