#include "psbase.h"

#include "psostream.h"

// Plain pointers without initialisers to run: they are null before the first static initialiser
// of any file, and the first call that needs a list makes it.
constinit psTestList* pTestList = nullptr;
constinit psList<psParameter*>* g_pParmList = nullptr;
constinit psHook s_parmFunc = nullptr;
constinit psString* pCmdLine = nullptr;
constinit psHook ntkEnvironment = nullptr;
constinit psList<psVersionHook>* ntkVersionList = nullptr;
constinit psTimingHook initTimingMethod = nullptr;
constinit psStringList* g_pHotList = nullptr;
constinit psSession* pSession = nullptr;
constinit bool qKeys = false;
constinit psStringList* g_pLibInfo = nullptr;
constinit psStringList* g_pLibFunctions = nullptr;
constinit psStringList* g_pParmColumns = nullptr;

NtkStatus (*ntk_GetCpuFeatures)(Ntk64u*, Ntk32u[4]) = nullptr;
Ntk64u (*ntk_GetEnabledCpuFeatures)() = nullptr;
NtkStatus (*ntk_GetMaxCacheSizeB)(int*) = nullptr;
const char* (*ntk_GetStatusString)(NtkStatus) = nullptr;
NtkStatus (*ntk_Init)() = nullptr;
NtkStatus (*ntk_SetCpuFeatures)(Ntk64u) = nullptr;
NtkStatus (*ntk_SetNumThreads)(int) = nullptr;
NtkStatus (*ntk_GetNumThreads)(int*) = nullptr;

namespace {

template <class T> T& made(T*& object) {
    if (!object) {
        object = new T;
    }
    return *object;
}

void appendOnce(psStringList& list, const psString& text) {
    for (const psString& item : list) {
        if (item == text) {
            return;
        }
    }
    list.append(text);
}

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

template <class Function> void fill(Function*& entry, Function* standBy) {
    if (!entry) {
        entry = standBy;
    }
}

} // namespace

void psRegTest(psTest* test) {
    made(pTestList).append(test);
}

void psRegParm(psParameter& parm) {
    made(g_pParmList).append(&parm);
}

bool psRegParmFunc(psHook fillsCommonParms) {
    s_parmFunc = fillsCommonParms;
    return true;
}

void psRegCmdLine(const psString& arguments) {
    made(pCmdLine) += " " + arguments;
}

bool psRegNtkEnvironment(psHook fillsEntryPoints) {
    ntkEnvironment = fillsEntryPoints;
    return true;
}

void psRegNtkVersion(psVersionHook hook) {
    made(ntkVersionList).append(hook);
}

bool psRegTimingMethod(psTimingHook hook) {
    initTimingMethod = hook;
    return true;
}

void psRegHotFunction(const psString& name) {
    made(g_pHotList).append(name);
}

bool psRegSession(psSession* session) {
    pSession = session;
    return true;
}

bool psRegQKeys() {
    return qKeys = true;
}

void psRegLibInfo(const psString& info) {
    appendOnce(made(g_pLibInfo), info);
}

void psRegLibFunction(const psString& name) {
    appendOnce(made(g_pLibFunctions), name);
}

void psRegParmColumn(const psString& name) {
    made(g_pParmColumns).append(name);
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
