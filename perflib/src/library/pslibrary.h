#pragma once

#include <ntkcore.h>

// The measured library as the harness sees it.

using psHook = void (*)();

// The hook that fills the entry points below. May be called from any static initialiser.
bool psRegNtkEnvironment(psHook fillsEntryPoints);
extern psHook ntkEnvironment;

// Entry points of the library's core, filled by the environment hook; those that it leaves empty
// get a fallback from setNtkEnvironment, so that a harness without a library runs too.
extern NtkStatus (*ntk_GetCpuFeatures)(Ntk64u* features, Ntk32u registers[4]);
extern Ntk64u (*ntk_GetEnabledCpuFeatures)();
extern NtkStatus (*ntk_GetMaxCacheSizeB)(int* sizeBytes);
extern const char* (*ntk_GetStatusString)(NtkStatus status);
extern NtkStatus (*ntk_Init)();
extern NtkStatus (*ntk_SetCpuFeatures)(Ntk64u features);
extern NtkStatus (*ntk_SetNumThreads)(int threads);
extern NtkStatus (*ntk_GetNumThreads)(int* threads);

// Calls the environment hook, then fills what is empty.
void setNtkEnvironment();
