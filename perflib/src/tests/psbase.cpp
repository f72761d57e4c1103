#include "psbase.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "psmissing.h"

// Plain pointers without initialisers to run: they are null before the first static initialiser
// of any file, and the first call that needs a list makes it.
constinit psTestList* pTestList = nullptr;
constinit psList<psParameter*>* g_pParmList = nullptr;
constinit psHook s_parmFunc = nullptr;
constinit psString* pCmdLine = nullptr;
constinit psList<psVersionHook>* ntkVersionList = nullptr;
constinit psTimingHook initTimingMethod = nullptr;
constinit psStringList* g_pHotList = nullptr;
constinit psSession* pSession = nullptr;
constinit bool qKeys = false;
constinit psStringList* g_pLibInfo = nullptr;
constinit psStringList* g_pLibFunctions = nullptr;
constinit psStringList* g_pParmColumns = nullptr;
constinit psList<psRecordWriter*>* g_pRecordWriters = nullptr;
constinit psList<psInputParm>* g_pInputParms = nullptr;

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

// The names of a list, so that adding one does not walk over the others.
class ListedNames {
public:
    void appendOnce(psStringList& list, const psString& name) {
        if (&list != m_list || static_cast<size_t>(list.count()) != m_names.size()) {
            index(list);
        }
        if (m_names.insert(name.c_str()).second) {
            list.append(name);
        }
    }

private:
    void index(const psStringList& list) {
        m_list = &list;
        m_names.clear();
        for (const psString& name : list) {
            m_names.insert(name.c_str());
        }
    }

    const psStringList* m_list = nullptr;
    std::unordered_set<std::string> m_names;
};

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
    static auto& names = *new ListedNames; // outlives whoever registers
    names.appendOnce(made(g_pLibFunctions), name);
}

void psRegParmColumn(const psString& name) {
    made(g_pParmColumns).append(name);
}

void psRegRecordWriter(psRecordWriter& writer) {
    made(g_pRecordWriters).append(&writer);
}

psList<const NtkLibraryVersion*> psLibraryVersions() {
    psList<const NtkLibraryVersion*> versions;
    if (!ntkVersionList) {
        return versions;
    }
    for (const psVersionHook hook : *ntkVersionList) {
        try {
            const NtkLibraryVersion* const version = hook();
            if (version && std::find(versions.begin(), versions.end(), version) == versions.end()) {
                versions.append(version);
            }
        } catch (const psMissingFunction&) { // the build is without it
        }
    }
    return versions;
}

void psRegInputParm(const psString& name, const psStringList& files) {
    made(g_pInputParms).append({name, files});
}
