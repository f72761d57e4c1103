// The files that the tests of a session read: no output may take the place of one. Which they are
// has to be known before the first output is opened, and so before any parameter is read.

#include <sys/stat.h>

#include "ps.h"
#include "psinifile.h"
#include "psoptionutil.h"

namespace {

// The value that "-d" sets, the last one; false when there is none.
bool presetOf(const psCommandList& commands, const psString& wanted, psString& value) {
    bool isSet = false;
    for (const psCommandKey& command : commands) {
        psString name, text;
        if (command.key() == 'd' && psSplitPreset(command.arg(), name, text) && name == wanted) {
            value = text;
            isSet = true;
        }
    }
    return isSet;
}

// A pipe is left alone: what is read of it here is not there for the session.
void readSettings(const psCommandList& commands, psIniFile& settings) {
    psString name;
    for (const psCommandKey& command : commands) {
        if (command.key() == 'i' || command.key() == 'I') {
            name = psSession::genInPath(command.arg(), ".ini");
        }
    }
    struct stat file;
    if (stat(name.c_str(), &file) == 0 && S_ISREG(file.st_mode)) {
        settings.open(name, false);
    }
}

void addFiles(psFileUses& uses, const psString& list, char key) {
    psStringList files;
    list.parse(files, ";");
    for (const psString& file : files) {
        uses.add(file.trimmed(), psInputUse, key);
    }
}

} // namespace

// What is answered at the console is not known yet: psFileIterator refuses to read an output.
void psSession::noteInputFiles() {
    if (!g_pInputParms) {
        return;
    }
    psIniFile settings;
    readSettings(m_commands, settings);
    for (const psInputParm& parm : *g_pInputParms) {
        psString preset;
        if (presetOf(m_commands, parm.name, preset)) {
            addFiles(m_fileUses, preset, 'd');
            continue;
        }
        for (const psString& file : parm.files) {
            m_fileUses.add(file, psInputUse, 0);
        }
        for (const psSectionItem* const section : settings.sections()) {
            if (const psValueItem* const item = section->m_values.find(parm.name)) {
                addFiles(m_fileUses, item->m_value, 'i');
            }
        }
    }
}
