// The settings file of a session, and warnings of names that nothing reads.

#include <string_view>
#include <unordered_set>

#include "ps.h"
#include "psistream.h"
#include "pstest.h"

// False: the settings cannot be written, which ends the session. Settings that cannot be read are
// done without. A missing file is as good as an empty one, and the report of the command line names
// it, but one that exists should have been read.
bool psSession::openSettings() {
    if (m_iniName.empty() || g_istrm.setIniFile(m_iniName, m_iniWrite)) {
        return true;
    }
    if (m_iniWrite) {
        g_ostrm << PS_ERR << "FATAL FAIL: can't open ini-file for writing\n" << PS_END_FLUSH;
        return false;
    }
    if (!psIsMissing(m_iniName)) {
        psReportOpenFailure(m_iniName, PS_OPEN_READ);
    }
    return true;
}

// Before those that no selected test uses are left out: a settings file serves any selection.
void psSession::declareCommonParms() {
    g_istrm.setSection(psIStream::commonSection);
    for (const psParameter* const parm : *g_pParmList) {
        g_istrm.declareName(parm->name());
    }
}

// A name that nothing asked for is most likely misspelt: the run did not measure what the user
// wanted.
void psSession::warnUnusedPresets() {
    if (g_istrm.isWriting()) { // and presets are not used at all
        return;
    }
    for (const psString& name : g_istrm.unusedPresets()) {
        g_ostrm << PS_WARN << "-- Parameter " << name
                << " was set by -d key but no test asked for it\n"
                << PS_END;
    }
}

static void warnUnusedValues(const psValues& values, const psString& place, const char* fault) {
    for (const psValueItem* const item : values) {
        if (!item->m_declared) {
            g_ostrm << PS_WARN << "-- Parameter " << item->m_key << " was set " << place
                    << " of ini-file " << g_istrm.settings().name() << " " << fault << "\n"
                    << PS_END;
        }
    }
}

static std::unordered_set<std::string_view> testFunctions() {
    std::unordered_set<std::string_view> names;
    for (const psTest* const test : *pTestList) {
        names.insert(test->functionName().c_str());
    }
    return names;
}

// Sections of tests that were not run are passed over: a settings file serves any selection. One
// that no test can have is a mistake.
void psSession::warnUnusedSettings() {
    const psIniFile& ini = g_istrm.settings();
    const auto functions = testFunctions();
    warnUnusedValues(ini.strayValues(), "before the first section", "and is not used");
    for (const psSectionItem* const section : ini.sections()) {
        if (section->m_read) {
            warnUnusedValues(section->m_values, "in section " + section->m_name,
                             "but no test asked for it");
        } else if (!functions.contains(section->m_name.c_str())) {
            g_ostrm << PS_WARN << "-- Section " << section->m_name << " was found in ini-file "
                    << ini.name() << " but no test has this name\n"
                    << PS_END;
        }
    }
}
