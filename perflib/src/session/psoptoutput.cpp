// Keys for what is written and where: log, tables, signal file, and how much of it.
#include "pscstream.h"
#include "psjsonrecords.h"
#include "psoptionutil.h"
#include "pstool.h"

namespace {

// A kind of output file. What stands in it completes "create file X and write ...".
struct OutputFile {
    char createKey, appendKey;
    const char* content;
    const char* extension;        // of a name without a dot
    const char* defaultExtension; // of the default name
    bool (*open)(const psString& path, bool append);
};

template <psCStream& Table> bool addTable(const psString& path, bool append) {
    return Table.addStream(path, append);
}

bool addLog(const psString& path, bool append) {
    return g_ostrm.addStream(path, append);
}

constexpr OutputFile logFile = {'o', 'O', "console output", ".txt", ".txt", addLog};
constexpr OutputFile resultFile = {'r', 'R', "PS results", ".csv", ".csv", addTable<g_cstrm>};
constexpr OutputFile nameFile = {'q',         0,           "function parameter name lines",
                                 "_name.csv", "_name.csv", addTable<g_nstrm>};
constexpr OutputFile summaryFile = {'u',    'U',        "summary table",
                                    ".csv", "_sum.csv", addTable<g_ustrm>};
bool addRecords(const psString& path, bool append) {
    return g_records.addStream(path, append);
}
constexpr OutputFile recordsFile = {'x', 0, "records for programs", ".jsonl", ".jsonl", addRecords};
constexpr const char* signalUse = "the end signal";

psString outputPath(const OutputFile& file, const psString& argument) {
    return psSession::genOutPath(argument,
                                 argument.empty() ? file.defaultExtension : file.extension);
}

template <const OutputFile& File, bool Append> psString fileInfo(const psString& argument) {
    const psString path = outputPath(File, argument);
    if (const psFileUses::Use* const use = psUseOfFile(path)) {
        return psFileInUseText(path, *use);
    }
    return Append ? psString("add ") + File.content + " to file " + path
                  : "create file " + path + " and write " + File.content;
}

// A second key for what the file receives anyway is passed over. A file that is used for something
// else ends the session, before anything in it is lost.
void rejectConflict(psFileUses::Use& use, const OutputFile& file, psSession* session) {
    if (use.purpose == file.content) {
        return;
    }
    use.conflicting = true;
    session->unopenedFile();
    if (use.purpose == signalUse) {
        session->dropSignal();
    }
}

template <const OutputFile& File, bool Append>
void openFile(const psString& argument, psSession* session) {
    const psString path = outputPath(File, argument);
    if (psFileUses::Use* const use = session->fileUses().find(path)) {
        rejectConflict(*use, File, session);
    } else {
        session->fileUses().add(path, File.content, Append ? File.appendKey : File.createKey);
        session->openOutput(path, Append, File.open);
    }
}

template <psOptionUse Use, const OutputFile& File, bool Append>
void addFileOption(psOptionList& options, char key, const psString& help, bool hidden = false) {
    const psString keys = "-" + psString(key);
    psAddOption<Use, fileInfo<File, Append>, openFile<File, Append>>(
        options, key, help,
        psDefaultPathText('l', File.defaultExtension) +
            psAllFilesText(keys, Append ? "opened" : "created"),
        hidden);
}

// Bits of an output level and what each lets through.
constexpr struct {
    int bit;
    const char* text;
} levelTexts[] = {
    {PS_ERR, "errors"},
    {PS_WARN, "warnings"},
    {PS_NORMAL, "performance for each parameter set"},
    {PS_DETAIL, "detailed course of performance measurement"},
    {PS_TRACE, "PS function call tracing"},
    {PS_DATA, "vectors data before and after ntk function call"},
};

psString levelInfo(const psString& argument) {
    const int levels = psOutputLevels(argument);
    const psString names = "ERR, WARN, PERF, INFO, TRACE or DATA";
    if (!levels) {
        return "ignored: incorrect level of output, " + names + " is expected";
    }
    psString text;
    for (const auto& level : levelTexts) {
        if (levels & level.bit) {
            text += text.empty() ? "output " : " & ";
            text += level.text;
        }
    }
    return argument.isBad() ? text + " (not all names are one of " + names + ")" : text;
}

void addLevel(const psString& argument, psSession* session) {
    session->addLevelMode(psOutputLevels(argument));
}

bool isNameLines(const psString& argument) {
    return argument == "+";
}

psString nameInfo(const psString& argument) {
    if (!isNameLines(argument)) {
        return fileInfo<nameFile, false>(argument);
    }
    return psIsKeyGiven('r') || psIsKeyGiven('R')
               ? "write function parameter name lines to csv-file"
               : "ignored: neither of -r and -R key present";
}

void openNames(const psString& argument, psSession* session) {
    if (isNameLines(argument)) {
        psSession::m_nameMode |= 1;
    } else {
        psSession::m_nameMode |= 2;
        openFile<nameFile, false>(argument, session);
    }
}

psString nameExitInfo(const psString&) {
    return psIsKeyGiven('q') ? "exit after function parameter name table creation"
                             : "ignored: no -q key present";
}

void setNameExit(const psString&, psSession* session) {
    if (session->keys().isGiven('q')) {
        psSession::m_nameExit = true;
    }
}

psString signalInfo(const psString& argument) {
    const psString path = psSession::genOutPath(argument, ".end");
    const psFileUses::Use* const use = psUseOfFile(path);
    return use ? psFileInUseText(path, *use) : "create file " + path + " at the end of PS work";
}

void setSignal(const psString& argument, psSession* session) {
    const psString path = psSession::genOutPath(argument, ".end");
    if (psFileUses::Use* const use = session->fileUses().find(path)) {
        use->conflicting = true;
        session->unopenedFile();
        return;
    }
    session->setSglName(argument);
    session->fileUses().add(path, signalUse, 'g');
}

constexpr psCountKey extLoops = {
    &psSettings::extLoops, "set number of external measurement loops to ", psIgnoredLoopsText};

constexpr const char* levelDetail =
    "ERR  : output errors\n"
    "WARN : output errors & warnings\n"
    "PERF : output errors & warnings & performance for each parameter set\n"
    "INFO : output errors & warnings & performance for each parameter set &\n"
    "       detailed course of performance measurement\n"
    "TRACE: output errors & warnings & performance for each parameter set &\n"
    "       PS function call tracing\n"
    "DATA : output errors & warnings & performance for each parameter set &\n"
    "       vectors data before and after ntk function call\n"
    "If several -L keys present in command line then all modes are combined\n";

void initLogOptions(psOptionList& options) {
    addFileOption<PS_USED_IN_LIST, logFile, false>(
        options, 'o', "-o[<file-name>]  = create txt-file and write console output\n");
    addFileOption<PS_USED_IN_LIST, logFile, true>(
        options, 'O', "-O[<file-name>]  = add console output to txt-file\n");
    psAddOption<PS_USED_IN_RUN, levelInfo, addLevel>(
        options, 'L',
        "-L<ERR|WARN|PERF|INFO|TRACE|DATA> = set detail level of the console output\n",
        levelDetail);
    psAddOption<PS_USED_IN_RUN, psCountInfo<extLoops>, psSetCount<extLoops>>(
        options, 'J', "-J[<min-loops>]  = number of external measurement loops\n",
        "No timing method needs this number at present\n" + psCountText('J', "min-loops"));
}

void initRecordOptions(psOptionList& options) {
    addFileOption<PS_USED_IN_RUN, recordsFile, false>(
        options, 'x',
        "-x[<file-name>]  = create jsonl-file and write records for programs, a JSON object a "
        "line\n",
        true);
}

void initTableOptions(psOptionList& options) {
    addFileOption<PS_USED_IN_LIST, resultFile, false>(
        options, 'r', "-r[<file-name>]  = create csv-file and write PS results\n");
    addFileOption<PS_USED_IN_LIST, resultFile, true>(
        options, 'R', "-R[<file-name>]  = add PS results to csv-file\n");
    psAddOption<PS_USED_IN_RUN, nameInfo, openNames>(
        options, 'q',
        "-q[<file-name>]  = create csv-file (*_name.csv is default) and write function parameter "
        "name lines\n"
        "-q+              = write function parameter name lines to csv-file of -r, -R\n",
        psDefaultPathText('l', nameFile.defaultExtension) + psAllFilesText("-q", "created") +
            "-q+ key affects only if -r or -R keys are present in command line\n");
    psAddOption<PS_USED_IN_RUN, nameExitInfo, setNameExit>(
        options, 'Q', "-Q               = exit after function parameter name table creation\n",
        "This key affects only if -q or -q+ keys are present in command line\n");
    addFileOption<PS_USED_IN_RUN, summaryFile, false>(
        options, 'u',
        "-u[<file-name>]  = create csv-file and write summary table ('_sum' is added to default "
        "title name)\n");
    addFileOption<PS_USED_IN_RUN, summaryFile, true>(
        options, 'U',
        "-U[<file-name>]  = add summary table to csv-file ('_sum' is added to default title "
        "name)\n");
}

} // namespace

void psInitOutputOptions(psOptionList& options) {
    initLogOptions(options);
    initTableOptions(options);
    initRecordOptions(options);
    // Not tied to a run: the file is written at the end of every session.
    options.initOption('g',
                       "-g[<file-name>]  = create signal file at the end of the whole testing\n",
                       signalInfo, setSignal, psDefaultPathText('l', ".end") + psLastKeyText("-g"));
}
