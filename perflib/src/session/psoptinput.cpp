// Keys for where parameter values come from: console, command line, settings file.
#include "psistream.h"
#include "psoptionutil.h"
#include "psstream.h"
#include "pstest.h"

namespace {

psString batchInfo(const psString&) {
    return "batch mode";
}

void setBatch(const psString&, psSession* session) {
    session->setBatMode(true);
}

bool isOnlyWriting() {
    return pSession && pSession->keys().isIniWritten();
}

int askModeOf(const psString& argument) {
    int mode = 0;
    mode |= argument.contains("T") ? PS_ASK_TIMING : 0;
    mode |= argument.contains("P") ? PS_ASK_PARAMS : 0;
    mode |= argument.contains("M") ? PS_ASK_MISALIGN : 0;
    return mode ? mode : int{PS_ASK_ALL};
}

psString askInfo(const psString& argument) {
    if (psIsKeyGiven('B')) {
        return "ignored because of -B option";
    }
    if (isOnlyWriting()) {
        return "ignored because of -I option";
    }
    const int mode = askModeOf(argument);
    psString text = "ask";
    text += mode & PS_ASK_TIMING ? ", timing method" : "";
    text += mode & PS_ASK_PARAMS ? ", common parameters" : "";
    text += mode & PS_ASK_MISALIGN ? ", data misalignment" : "";
    text += mode & PS_ASK_TESTS ? ", each test parameters" : "";
    return text + " from console";
}

void addAsk(const psString& argument, psSession* session) {
    session->addAskMode(askModeOf(argument));
}

psString presetInfo(const psString& argument) {
    psString name, value;
    if (!psSplitPreset(argument, name, value)) {
        return "ignored: incorrect parameter setting, <name>=<value> is expected";
    }
    return isOnlyWriting()
               ? psString("ignored because of -I option")
               : "set parameter " + name + " to " + (value.empty() ? "empty value" : value);
}

void setPreset(const psString& argument, psSession*) {
    psString name, value;
    if (psSplitPreset(argument, name, value)) {
        g_istrm.preset(name, value);
    }
}

psString iniPath(const psString& argument) {
    return psSession::genInPath(argument, ".ini");
}

psString readIniInfo(const psString& argument) {
    const psString path = iniPath(argument);
    return "read PS parameters from file " + path +
           (psIsMissing(path) ? ": there is no such file" : "");
}

// The use by the shell, "-@" or the tests of a file that would be replaced.
const psFileUses::Use* useAgainstWriting(const psString& path) {
    const psFileUses::Use* const use = psUseOfFile(path);
    return use && (use->key == '@' || use->key == 0 || use->purpose == psInputUse) ? use : nullptr;
}

psString writeIniInfo(const psString& argument) {
    const psString path = iniPath(argument);
    const psFileUses::Use* const use = useAgainstWriting(path);
    return use ? psFileInUseText(path, *use) : "write PS parameters to file " + path + " and exit";
}

void readIni(const psString& argument, psSession* session) {
    session->setIniMode(iniPath(argument), false);
}

void writeIni(const psString& argument, psSession* session) {
    const psString path = iniPath(argument);
    if (useAgainstWriting(path)) {
        session->unopenedFile();
    } else {
        session->setIniMode(path, true);
    }
}

psString pressingInfo(const psString&) {
    const char* const text = "read tested function names from ini-file";
    return psIsKeyGiven('i') || psIsKeyGiven('I')
               ? psString(text)
               : psString(text) + ": no test will be run without -i or -I key";
}

void setPressing(const psString&, psSession*) {
    psTest::m_pressing = true;
}

constexpr const char* askDetail =
    "Timing  : adjust timing method at the very beginning\n"
    "Params  : adjust common parameters for all tests at the very beginning\n"
    "Misalign: adjust memory misalignment at the very beginning\n"
    "All     : adjust all above-listed and adjust test parameters\n"
    "          before each test running\n"
    "Certain parameter may be adjusted from console only if it is not defined\n"
    "    by -d key or in ini-file\n"
    "If -A has no mode then -AAll mode is implemented\n"
    "If several -A keys present in command line then all modes are combined\n"
    "If both -A and -B key present in command line then -B key is performed\n"
    "If neither of -A and -B key present in command line then\n"
    "    -ATimingParams is performed\n";

constexpr const char* presetDetail =
    "Any parameter asked from console or written in ini-file may be set by -d key\n"
    "Data set by -d option has the highest priority\n"
    "-d key may be used several times in command line\n";

constexpr const char* pressingDetail =
    "Only tests of functions that have own section in ini-file will be run\n"
    "This key needs -i or -I key in command line: no test is run without ini-file\n";

} // namespace

void psInitInputOptions(psOptionList& options) {
    psAddOption<PS_USED_IN_RUN, batchInfo, setBatch>(
        options, 'B', "-B               = batch mode (no console input)\n",
        "If both -B and -A key present in command line then -B key is performed\n");
    psAddOption<PS_USED_IN_RUN, askInfo, addAsk>(
        options, 'A', "-A<Timing|Params|Misalign|All> = set detail level of the console input\n",
        askDetail);
    psAddOption<PS_USED_IN_RUN, presetInfo, setPreset>(
        options, 'd', "-d<name>=<value> = set PS parameter value\n", presetDetail);
    psAddOption<PS_USED_IN_RUN, readIniInfo, readIni>(
        options, 'i', "-i[<file-name>]  = read PS parameters from ini-file\n",
        psDefaultPathText('p', ".ini") + psLastKeyText("-i"));
    psAddOption<PS_USED_IN_RUN, writeIniInfo, writeIni>(
        options, 'I', "-I[<file-name>]  = write PS parameters to ini-file and exit\n",
        psDefaultPathText('p', ".ini") + psLastKeyText("-I"));
    psAddOption<PS_USED_IN_RUN, pressingInfo, setPressing>(
        options, 'P', "-P               = read tested function names from ini-file\n",
        pressingDetail);
}
