#pragma once

#include "pslibrary.h"
#include "psparameter.h"
#include "pstestlist.h"

// What the files of a harness program register before main, and the hooks into the measured
// library. Everything may be called from static initialisers of any file, in any order; lists keep
// the order of the calls. Objects stay their owner's, except tests.

class psRecordWriter;
class psSession;
class psTool;

using psVersionHook = const NtkLibraryVersion* (*)();
using psTimingHook = void (*)(psTool&);

void psRegTest(psTest* test); // takes ownership
void psRegParm(psParameter& parm);
bool psRegParmFunc(psHook fillsCommonParms);  // called once, before common parameters are read
void psRegCmdLine(const psString& arguments); // adds to the built-in command line
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
void psRegRecordWriter(psRecordWriter& writer);
// What the registered hooks tell, each once, less those of a build that lacks the function.
psList<const NtkLibraryVersion*> psLibraryVersions();
// The values of the parameter are names of files that tests read, these if the user gives no
// others: no output of a session may be one of them.
void psRegInputParm(const psString& name, const psStringList& files);

struct psInputParm {
    psString name;
    psStringList files;
};

extern psTestList* pTestList;
extern psList<psParameter*>* g_pParmList;
extern psHook s_parmFunc;
extern psString* pCmdLine; // begins with a blank
extern psList<psVersionHook>* ntkVersionList;
extern psTimingHook initTimingMethod;
extern psStringList* g_pHotList;
extern psSession* pSession;
extern bool qKeys;
extern psStringList* g_pLibInfo;
extern psStringList* g_pLibFunctions;
extern psStringList* g_pParmColumns;
extern psList<psRecordWriter*>* g_pRecordWriters; // null: none
extern psList<psInputParm>* g_pInputParms;        // null: none
