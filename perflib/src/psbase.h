#pragma once

#include <ntkcore.h>

#include "psparameter.h"
#include "pstestlist.h"

// What the files of a harness program register before main, and the hooks into the measured
// library. Everything may be called from static initialisers of any file, in any order; lists keep
// the order of the calls. Objects stay their owner's, except tests.

class psSession;
class psTool;

using psHook = void (*)();
using psVersionHook = const NtkLibraryVersion* (*)();
using psTimingHook = void (*)(psTool&);

void psRegTest(psTest* test); // takes ownership
void psRegParm(psParameter& parm);
bool psRegParmFunc(psHook fillsCommonParms);  // called once, before common parameters are read
void psRegCmdLine(const psString& arguments); // adds to the built-in command line
bool psRegNtkEnvironment(psHook fillsEntryPoints);
void psRegNtkVersion(psVersionHook hook);
bool psRegTimingMethod(psTimingHook hook);
void psRegHotFunction(const psString& name);
bool psRegSession(psSession* session);
bool psRegQKeys(); // offers the parameter-name keys "-q" and "-Q"
// A line of library information for the report titles; an equal line is kept once.
void psRegLibInfo(const psString& info);
// A function of the measured library, for the listing of what tests cover; an equal name is kept
// once.
void psRegLibFunction(const psString& name);
// The next parameter column of the performance table has this name. Without any, the table has
// a few unnamed ones.
void psRegParmColumn(const psString& name);

extern psTestList* pTestList;
extern psList<psParameter*>* g_pParmList;
extern psHook s_parmFunc;
extern psString* pCmdLine; // begins with a blank
extern psHook ntkEnvironment;
extern psList<psVersionHook>* ntkVersionList;
extern psTimingHook initTimingMethod;
extern psStringList* g_pHotList;
extern psSession* pSession;
extern bool qKeys;
extern psStringList* g_pLibInfo;
extern psStringList* g_pLibFunctions;
extern psStringList* g_pParmColumns;

// Entry points of the library's core, filled by the environment hook; those that it leaves empty
// get a stand-by from setNtkEnvironment, so that a harness without a library runs too.
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
