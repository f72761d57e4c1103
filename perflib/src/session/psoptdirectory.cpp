// Keys for the directories of files. The session evaluates them before it applies any key, so that
// their place on the command line does not matter; here they only report what is in force.
#include "psoptionutil.h"

namespace {

// Output files are also written by a session that only lists, the signal file by every one.
bool isOutputUsed() {
    return !psSession::isExit(PS_USED_IN_LIST) || psIsKeyGiven('g');
}

bool isInputUsed() {
    return !psSession::isExit(PS_USED_IN_RUN);
}

// Argument files are read when the directories are set already.
psString inForceText(bool used, char key, const char* what, const psString& asked,
                     const psString& inForce) {
    if (!used) {
        return psSession::getExitInfo();
    }
    const bool onLine = !psIsKeyGiven(key) || pSession->keys().isOnLine(key);
    const psString text = psString(what) + " is " + inForce;
    if (asked == inForce) {
        return text;
    }
    return "ignored: " + (onLine ? text : "-" + psString(key) + " key in argument file, " + text);
}

psString titleInfo(const psString& argument) {
    const psString asked = argument.empty() ? psSession::m_exePath.getFileTitle() : argument;
    return inForceText(isInputUsed() || isOutputUsed(), 'n', "default title name", asked,
                       psSession::m_defName);
}

psString inputInfo(const psString& argument) {
    return inForceText(isInputUsed(), 'p', "default directory for input files",
                       psSession::genDirName(argument), psSession::m_inDir);
}

psString outputInfo(const psString& argument) {
    return inForceText(isOutputUsed(), 'l', "default directory for output files",
                       psSession::genDirName(argument), psSession::m_outDir);
}

void applyNothing(const psString&, psSession*) {}

} // namespace

void psInitDirectoryOptions(psOptionList& options) {
    options.initOption('n', "-n<title-name>   = default title name for ini-file and output files\n",
                       titleInfo, applyNothing,
                       "This key sets default file name for input and output files defined by \n"
                       "    -i, -I, -o, -O, -r, -R, -u, -U, -g, -q keys\n" +
                           psLastKeyText("-n"));
    options.initOption(
        'p', "-p<dir-name>     = default directory for input files i.e. ini & test data files\n",
        inputInfo, applyNothing,
        "This key sets default file directory for input files defined by -i, -I keys\n"
        "    and also for data files opened in a test by i_stream class\n" +
            psLastKeyText("-p"));
    options.initOption('l', "-l<dir-name>     = default directory for output files (listings)\n",
                       outputInfo, applyNothing,
                       "This key sets default file directory for output files defined by \n"
                       "    -o, -O, -r, -R, -u, -U, -g, -q keys\n" +
                           psLastKeyText("-l"));
}
