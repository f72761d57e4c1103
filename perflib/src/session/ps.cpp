#include "ps.h"

#include <csignal>

#include "pscputick_gcc.h"
#include "pscpuidtest.h"
#include "psguarded.h"
#include "psinterruption.h"
#include "psistream.h"
#include "psjsonrecords.h"
#include "psmissing.h"
#include "psremarks.h"
#include "psshowprogress.h"
#include "psoptionutil.h"
#include "psreport.h"
#include "psreportformat.h"
#include "psreporttest.h"
#include "pssettings.h"
#include "pssignalactions.h"
#include "pstable.h"
#include "pstest.h"
#include "pstestformat.h"
#include "psturns.h"

namespace {
constexpr int bannerWidth = 78;

psString blanks(int n) {
    psString text;
    text.resize(n > 0 ? n : 0);
    return text;
}
} // namespace

constinit int& psSession::m_exitLevel = g_settings.exitLevel;
constinit int& psSession::m_nameMode = g_settings.nameMode;
constinit bool& psSession::m_nameExit = g_settings.nameExit;

psString psSession::getExitInfo() {
    switch (m_exitLevel) {
    case 1: return "ignored because of -e option";
    case 2: return "ignored because of -h option";
    case 3: return "ignored because of -v option";
    default: return "ignored";
    }
}

psString psSession::getEnterTitle(const psString& title) {
    psString stars;
    stars.resize(bannerWidth, '*');
    const int length = title.length();
    const int half = (80 - length) >> 1;
    const psString row = " " + stars + "\n";
    return row + " *" + blanks(half - 2) + title + blanks(bannerWidth - (half + length)) + "*\n" +
           row;
}

void psSession::initSession() {
    m_options.clear();
    psInitInputOptions(m_options);
    psInitOutputOptions(m_options);
    psInitDirectoryOptions(m_options);
    psInitSelectOptions(m_options);
    psInitMeasureOptions(m_options);
    psInitHelpOptions(m_options);
}

void psSession::setIniMode(const psString& name, bool write) {
    m_iniName = name;
    m_iniWrite = write;
}

void psSession::setSglName(const psString& argument) {
    m_sglName = genPathName(m_outDir, argument, ".end");
}

void psSession::setHelp(char key, bool hidden) {
    m_helpKey = key;
    m_helpHidden = hidden;
}

int psSession::run(int argc, char** argv) {
    g_ostrm.addConsole();
    psConnectGuard();
    g_ostrm.setOutLevel(PS_OUT_PERF); // until "-L" takes effect, behind the common data
    psStandInForMissingFunctions();
    setNtkEnvironment();
    initSession();
    registerCpuTest();
    pTestList->setStartTime(time(nullptr));
    pTestList->setStartInstant(psTestList::instantNow());
    int result = 0;
    if (prepare(argc, argv)) {
        prepareLibrary();
        if (!sortTests()) {
            return 0;
        }
        result = runTests();
    }
    finish();
    return result;
}

// False: there is nothing more to do.
bool psSession::prepare(int argc, char** argv) {
    return parseCommandLine(argc, argv) && startSession() && !hintOutput();
}

void psSession::registerCpuTest() {
    psRegTest(new __psBraskCpuTest("__psBraskCpu", "Brask CPU information", "perflib/src/ps"));
}

bool psSession::sortTests() {
    if (pTestList && !m_quickMode) {
        g_ostrm << PS_NORMAL << "Sorting functions..." << PS_END_FLUSH;
        pTestList->sortFunc();
        g_ostrm << PS_NORMAL << "\n" << PS_END;
    }
    if (!pTestList) {
        g_ostrm << PS_ERR << "Fail! pTestList is NULL\n" << PS_END_FLUSH;
        return false;
    }
    pTestList->startWithCpuTest();
    return true;
}

// While tests are run; whoever takes turns ends the process when he likes.
static void watchSignals() {
    for (const int code : {SIGPIPE, SIGXFSZ}) { // see psOStream::addConsole
        psKeepSignalAsIs(code);
    }
    if (!g_turnTaker) {
        psInterruption::watch();
    }
}

int psSession::runTests() {
    outputHeader();
    if (m_enumMode <= 1) {
        listTests(m_enumMode);
        pTestList->setEndTime(time(nullptr));
        return 0;
    }
    if (s_parmFunc) {
        s_parmFunc();
    }
    selectTestParameters();
    beginCommonData();
    readCommonData();
    endCommonData();
    g_istrm.setSection(psIStream::commonSection);
    g_istrm.markSectionRead();
    if (!g_pHotList) {
        g_pHotList = new psStringList;
    }
    putTableTitle();
    psShowProgress();
    beginRecords();
    watchSignals();
    const int result = pTestList->runTests(m_conditions);
    pTestList->setEndTime(time(nullptr));
    closeTests();
    return result;
}

// The files that a common parameter names now. What a test's own section or an answer before the
// test puts in its place is told when it is read.
static psStringList inputFiles() {
    psStringList files;
    if (!g_pInputParms || !g_pParmList) {
        return files;
    }
    for (const psParameter* const parm : *g_pParmList) {
        for (const psInputParm& input : *g_pInputParms) {
            if (input.name == parm->name()) {
                parm->defaultString().parse(files, ";");
            }
        }
    }
    for (psString& file : files) {
        file.trim();
    }
    return files;
}

void psSession::beginRecords() {
    if (!g_pRecordWriters) {
        return;
    }
    psRunPlan plan{pTestList->startTime(),
                   {},
                   inputFiles(),
                   pTestList->countToRun(m_conditions),
                   psContinuesRun()};
    for (const psCommandKey& command : m_commands) {
        if (command.key() != ' ') {
            plan.keys.append("-" + psString(command.key()) + command.arg());
        }
    }
    psTellRecordWriters([&](psRecordWriter& writer) { writer.begin(plan); });
}

void psSession::closeTests() {
    if (psIsSummaryWritten()) {
        return;
    }
    if (!psInterruption::wasFollowed()) { // the tests that were left out may use them
        warnUnusedPresets();
        warnUnusedSettings();
    }
    outputFooter();
    psTellRecordWriters([](psRecordWriter& writer) { writer.end(*pTestList); });
    psNoteSummaryWritten();
}

void psSession::finish() {
    if (pTestList->endTime() == 0) {
        pTestList->setEndTime(time(nullptr));
    }
    g_istrm.closeIniFile();
    g_ostrm.flush(); // who waits for the signal file finds the log whole
    outputSignal();
    psEndGuarded();
    delete pTestList;
    pTestList = nullptr;
    g_ostrm.flush();
    g_records.close();
    g_cstrm.close();
    g_ustrm.close();
    g_nstrm.close();
}

void psSession::beginCommonData() {
    g_ostrm.setOutLevel(PS_OUT_PERF);
}

void psSession::endCommonData() {
    g_ostrm.setOutLevel(m_levelMode ? m_levelMode : int{PS_OUT_PERF});
    if (!(m_askMode & PS_ASK_TESTS)) {
        g_istrm.setIStream(nullptr);
    }
}

void psSession::selectTestParameters() {
    if (!g_pParmList) {
        return;
    }
    declareCommonParms();
    const int askMode = m_askMode;
    const bool batMode = m_batMode;
    m_askMode = 0;
    m_batMode = true;
    pTestList->selectCommonParms(m_conditions, *g_pParmList);
    m_askMode = askMode;
    m_batMode = batMode;
}

void psSession::readCommonData() {
    int reported = psReadTimingMethod(*this);
    reported += psReadTestParameters(*this);
    reported += psReadDataOffset(*this);
    if (reported > 0) {
        g_ostrm << PS_ERR << getEnterTitle("End of common specifications") << PS_END;
    }
}

void psSession::funcTitleToCStream() {
    psFuncTitleToCStream(g_cstrm);
}

void psSession::parmsTitleToCStream() {
    psParmsTitleToCStream(g_cstrm);
}

void psSession::resultTitleToCStream() {
    psResultTitleToCStream(g_cstrm);
}

void psSession::putTableTitle() {
    psSetTableColumns();
    putTableTitleLine();
}

void psSession::putTableTitleLine() {
    funcTitleToCStream();
    parmsTitleToCStream();
    resultTitleToCStream();
    g_cstrm.lineOut(psTest::m_numParmsColm + psTest::m_numResultColm);
}

void psSession::listTests(int mode) {
    const psReportTitle title(*pTestList);
    const psReportList list(*pTestList, m_conditions, mode);
    g_ostrm << PS_ERR << title << list << PS_END;
    g_cstrm << title << list;
}

void psSession::outputHeader() {
    const psReportTitle title(*pTestList);
    g_ostrm << PS_ERR << title << PS_END;
    g_cstrm << title;
    g_nstrm << title;
    psTitleToSummary(g_ustrm, title);
    g_ustrm << psReportTestResult();
}

void psSession::outputFooter() {
    const psReportEnd end(*pTestList);
    g_ostrm << PS_DETAIL
            << psTimeInCallsText(psCpuTicker::knownSeconds(psTest::m_figures.clocksInCalls),
                                 pTestList->secondsSinceStart())
            << PS_END;
    // The counts stay the last thing that is seen.
    g_ostrm << PS_NORMAL << psDisturbanceSummary(psTest::m_figures) << PS_END;
    g_ostrm << PS_WARN << g_remarks.closingText() << PS_END;
    g_ostrm << PS_ERR << end << PS_END_FLUSH;
    g_ustrm << end;
}

void psSession::outputSignal() {
    if (m_sglName.empty()) {
        return;
    }
    o_stream file(m_sglName, PS_OPEN_WRITE | PS_OPEN_FILE);
    const time_t end = pTestList->endTime();
    const double seconds = difftime(end, pTestList->startTime());
    file.write(psReportFormat::getTimeStr(seconds) + "\n" + ctime(&end) + "\n");
    if (!file.flush() || file.failure()) {
        g_ostrm.reportFailure(file);
    }
}

bool psSession::hintOutput() {
    if (!m_helpKey && !m_versionAsked) {
        return false;
    }
    g_ostrm << PS_ERR << "\nBrask NTK. Performance System " << PS_VERSION << ", " << __DATE__
            << "\n"
            << PS_END;
    if (m_helpKey) {
        hint(m_helpKey, m_helpHidden);
    }
    return true;
}
