#pragma once

#include "ps.h"
#include "pssettings.h"

// What the keys of the option table share.

// Until where a session has to go for a key to matter. A session that stops earlier (help, version,
// list of the tests) passes the key over and says so.
enum psOptionUse : int {
    PS_USED_IN_RUN = 1,  // only when tests are run
    PS_USED_IN_LIST = 2, // also when they are listed
};

template <psOptionUse Use, psOption::Info Info> psString psInfoWhenUsed(const psString& argument) {
    return psSession::isExit(Use) ? psSession::getExitInfo() : Info(argument);
}

template <psOptionUse Use, psOption::Apply Apply>
void psApplyWhenUsed(const psString& argument, psSession* session) {
    if (!psSession::isExit(Use)) {
        Apply(argument, session);
    }
}

// Adds a key that matters only as far as Use says.
template <psOptionUse Use, psOption::Info Info, psOption::Apply Apply>
void psAddOption(psOptionList& options, char key, const psString& help, const psString& detail,
                 bool hidden = false) {
    options.initOption(key, help, &psInfoWhenUsed<Use, Info>, &psApplyWhenUsed<Use, Apply>, detail,
                       hidden);
}

// A key that sets a count of at least 1. An argument without a number keeps the value.
struct psCountKey {
    int psSettings::*setting;
    const char* meaning;     // stands before the number in the info text
    const char* ignoredText; // for an argument without a count
};

// False, and count untouched, when argument gives no count.
bool psReadCount(const psString& argument, int& count);

template <const psCountKey& Key> psString psCountInfo(const psString& argument) {
    int count = g_settings.*Key.setting;
    return psReadCount(argument, count) ? psString(Key.meaning) + psText(count)
                                        : psString(Key.ignoredText);
}

template <const psCountKey& Key> void psSetCount(const psString& argument, psSession*) {
    psReadCount(argument, g_settings.*Key.setting);
}

constexpr const char* psIgnoredLoopsText = "ignored: incorrect number of loops";

// Whether the command line of the running session has the key.
bool psIsKeyGiven(char key);

// Name and value of a "-d" key; false when argument is no <name>=<value>.
bool psSplitPreset(const psString& argument, psString& name, psString& value);

// What the files of the parameters registered with psRegInputParm are used for.
constexpr const char* psInputUse = "the input data of the tests";

// What the file is already used for; null when it is free.
const psFileUses::Use* psUseOfFile(const psString& path);

// The detail text of the keys that set a count.
psString psCountText(char key, const psString& argumentName);
// Detail texts. keys: as they stand in the sentence, such as "-F".
psString psLastKeyText(const psString& keys); // "... then only the last key is valid\n"
psString psAllFilesText(const psString& keys, const psString& verb); // "... will be <verb>\n ..."
// Where the file of an empty file name lies: in the directory of dirKey, with this extension.
psString psDefaultPathText(char dirKey, const psString& extension);

// The keys of the harness. Each fills its part of the table, in the order of the help.
void psInitInputOptions(psOptionList& options);     // B A d i I P
void psInitOutputOptions(psOptionList& options);    // o O L J r R q Q u U x g
void psInitDirectoryOptions(psOptionList& options); // n p l
void psInitSelectOptions(psOptionList& options);    // f t m k F
void psInitMeasureOptions(psOptionList& options);   // Y H W T S C s
void psInitHelpOptions(psOptionList& options);      // e v @ h c j ?

// The names of "-L" and the levels that they stand for, together.
int psOutputLevels(const psString& names);
