// Keys for sessions that only print help, a list or the version, for argument files, and those kept
// for developers.
#include "psoptionutil.h"
#include "pstool.h"

namespace {

int listMode(const psString& argument) {
    return argument == "-" ? -1 : argument == "+" ? 1 : 0;
}

psString listInfo(const psString& argument) {
    static constexpr const char* const texts[] = {
        "enumerate function names of tests and exit",
        "enumerate tests and exit",
        "enumerate tests and library functions and exit",
    };
    return texts[listMode(argument) + 1];
}

void setList(const psString& argument, psSession* session) {
    session->setEnumMode(listMode(argument));
}

// Of help, list and version, in this order, the session gives only the first one asked for.
bool isSupersededByHelpOrList() {
    constexpr int versionOnly = 3;
    return psSession::isExit(PS_USED_IN_RUN) && psSession::m_exitLevel != versionOnly;
}

psString versionInfo(const psString&) {
    return isSupersededByHelpOrList() ? psSession::getExitInfo()
                                      : "type the version number of the Performance System";
}

void askVersion(const psString&, psSession* session) {
    if (!isSupersededByHelpOrList()) {
        session->setVersion();
    }
}

// Reached by a "-@" inside an argument file only: those on the command line have been replaced by
// their content.
psString fileInfo(const psString&) {
    return "ignored: -@ key in argument file";
}

void applyNothing(const psString&, psSession*) {}

psString helpInfo(const psString& argument, char fullKey, const psString& which) {
    if (argument.empty()) {
        return "type short help" + which;
    }
    return argument[0] == fullKey ? "type extended help" + which
                                  : "type extended help of key -" + argument.substr(0, 1);
}

psString shownHelpInfo(const psString& argument) {
    return helpInfo(argument, 'h', "");
}

psString hiddenHelpInfo(const psString& argument) {
    return helpInfo(argument, '?', " with hidden keys");
}

template <bool Hidden> void askHelp(const psString& argument, psSession* session) {
    session->setHelp(argument.empty() ? char{1} : argument[0], Hidden);
}

constexpr psCountKey milliseconds = {&psSettings::milliseconds,
                                     "set min number of ms for 1 measurement to ",
                                     "ignored: incorrect number of milliseconds"};
constexpr psCountKey minLoops = {&psSettings::minCalls,
                                 "set minimal number of measurement loops to ", psIgnoredLoopsText};

constexpr const char* fileDetail =
    "This key works as if command line is extended by the file content\n"
    "    where <new line> symbol is converted to <space symbol>.\n"
    "Several -@ keys may present in command line.\n";

constexpr const char* iterationDetail = "This key affects only Auto and Iterative timing methods\n";

constexpr const char* listDetail = "Only tests that meet -f, -t, -m and -HO keys are enumerated\n";

void initHiddenOptions(psOptionList& options) {
    psAddOption<PS_USED_IN_RUN, psCountInfo<milliseconds>, psSetCount<milliseconds>>(
        options, 'c', "-c[<num-ms>]     = set min number of ms for 1 measurement\n",
        iterationDetail + psCountText('c', "num-ms"), true);
    psAddOption<PS_USED_IN_RUN, psCountInfo<minLoops>, psSetCount<minLoops>>(
        options, 'j', "-j[<min-loops>]  = minimal number of measurement loops\n",
        iterationDetail + psCountText('j', "min-loops"), true);
    options.initOption('?',
                       "-?               = type short help with hidden keys and exit\n"
                       "-??              = type extended help with hidden keys and exit\n"
                       "-?<key>          = type extended help of the key and exit\n",
                       hiddenHelpInfo, askHelp<true>, psLastKeyText("-?"), true);
}

} // namespace

void psInitHelpOptions(psOptionList& options) {
    psAddOption<PS_USED_IN_LIST, listInfo, setList>(
        options, 'e',
        "-e               = enumerate tests and exit\n"
        "-e+              = enumerate tests and library functions and exit\n"
        "-e-              = enumerate function names of tests and exit\n",
        listDetail + psLastKeyText("-e"));
    options.initOption(
        'v', "-v               = type the version number of the Performance System and exit\n",
        versionInfo, askVersion, "");
    options.initOption('@', "-@<file-name>    = read command line options from specified file\n",
                       fileInfo, applyNothing, fileDetail);
    options.initOption('h',
                       "-h               = type short help and exit\n"
                       "-hh              = type extended help and exit\n"
                       "-h<key>          = type extended help of the key and exit\n",
                       shownHelpInfo, askHelp<false>, psLastKeyText("-h"));
    initHiddenOptions(options);
}
