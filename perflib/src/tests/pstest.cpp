#include "pstest.h"

#include "psbase.h"
#include "pscacheiterator.h"
#include "pscond.h"
#include "pscstream.h"
#include "psctrl87.h"
#include "psctrlstatus.h"
#include "psinit.h"
#include "psistream.h"
#include "pslastsubject.h"
#include "psmissing.h"
#include "psreporttest.h"
#include "psreserve.h"
#include "psrunwatch.h"
#include "pssettings.h"
#include "pssignal.h"
#include "pssignalactions.h"
#include "pstestformat.h"
#include "pstestrun.h"
#include "psturns.h"

psResult psTest::m_currentResult = PS_UNDEFINED;
constinit bool& psTest::m_cache = g_settings.cacheMode;
constinit bool& psTest::m_unmasked = g_settings.unmasked;
constinit bool& psTest::m_pressing = g_settings.pressing;
constinit int& psTest::m_hot = g_settings.hot;
constinit int& psTest::m_vectorNum = g_vectorNum;
constinit int& psTest::m_vectorShift = g_vectorShift;
int psTest::m_numParmsColm = 0;
int psTest::m_numResultColm = 0;
constinit psRunFigures psTest::m_figures;

namespace {
// The text before the first "/" of text, which loses it and the "/".
psString cutPiece(psString& text) {
    const int slash = text.find("/");
    const psString piece = slash == psString::npos ? text : text.substr(0, slash);
    text = slash == psString::npos ? psString() : text.substr(slash + 1);
    return piece;
}

// The form of the line for a failed call.
psString noFunctionText(const psString& name) {
    return "--NTK FAIL. " + psNoFunctionText(name);
}

// Of the exception being handled; a test may throw anything.
struct Ending {
    psString text;
    psResult result = PS_EXCEPTION;
};
Ending ending() {
    try {
        throw;
    } catch (const psMissingFunction& e) {
        return {noFunctionText(e.name()), PS_FUNC_FAIL};
    } catch (const std::exception& e) {
        return {e.what()};
    } catch (...) {
        return {psException(psString("unknown")).msg()};
    }
}
} // namespace

psTestInfo::psTestInfo(const psString& text) {
    psString rest = text;
    name = cutPiece(rest);
    second = cutPiece(rest);
    macro = rest;
}

psTest::psTest(psCallFunc call, psCallFunc init, psLoopFunc loop, psStatFunc stat,
               const psString& function, const psString& source, const psString& info)
    : m_startTime(time(nullptr)), m_endTime(m_startTime), m_function(function),
      m_source(source.getFileName()), m_info(info), m_loop(loop), m_stat(stat), m_call(call),
      m_init(init) {
    psTest::initSettings();
}

psTest::psTest(psLoopFunc loop, psStatFunc stat, const psString& function, const psString& source,
               const psString& info)
    : psTest(nullptr, nullptr, loop, stat, function, source, info) {}

psTest::psTest(psOldFunc custom, const psString& function, const psString& source,
               const psString& info)
    : psTest(nullptr, nullptr, nullptr, nullptr, function, source, info) {
    m_custom = custom;
}

psTest::~psTest() {
    delete m_cacheIterator;
}

void psTest::initSettings() {
    m_currentResult = PS_UNDEFINED;
    m_noCombination = true;
    m_deprecated = false;
    forgetParms();
}

void psTest::forgetParms() {
    delete m_cacheIterator;
    m_cacheIterator = nullptr;
    m_cacheInvalid = false;
    m_parms.clear();
}

bool psTest::tobeRun(const psConditions& conditions) {
    return conditions.tobeRun(this) && (m_hot != 2 || isHotLine());
}

int psTest::compareFunc(const psTest* other) const {
    return m_function.compare(other->m_function);
}

bool psTest::isHotLine() {
    if (!g_pHotList) {
        return false;
    }
    for (const psString& name : *g_pHotList) {
        if (name == m_function) {
            return true;
        }
    }
    return false;
}

bool psTest::setIniSection(const psString& function) {
    if (m_pressing && !g_istrm.sectionExist(function)) {
        return false;
    }
    g_istrm.setSection(function);
    return true;
}

void psTest::parmsFromIstrm() {
    g_istrm.setAsking(true);
    for (psParameter* parm : m_parms) {
        parm->fromIStream(g_istrm);
    }
}

void psTest::regCacheParm(psIterator<int>& parm, psObject* object,
                          bool (*setter)(psParameter*, int, int, bool)) {
    if (wantsCacheIterator()) {
        regCacheIterator(new psCacheIteratorInt(parm, object, setter));
    } else {
        regParm(parm);
    }
}

void psTest::regCacheIterator(psCacheIterator* iterator) {
    m_cacheIterator = iterator;
    regParm(*iterator);
}

void psTest::beginRun() {
    m_result = PS_OK;
    m_currentResult = PS_UNDEFINED;
    m_measured = false;
    m_clocksInCalls = 0;
    m_ctrlWords = {};
    m_tool.copySettings(g_tool);
    // Tests of this kind are initialised before each run, so that flags can be avoided.
    if (m_info.macro.contains("Ibs")) {
        m_tool.checkCtrlStatus = true;
    }
    forgetParms();
}

psResult psTest::run() {
    psRenewSignals(); // the test before may have changed them
    const psLastSubject subject(m_function);
    beginRun();
    const psRunCheckpoint checkpoint;
    bool selected = true;
    try {
        tsSignal::guarded([&] { selected = runSteps(); });
    } catch (...) {
        const Ending reason = ending();
        afterException(reason.text, reason.result, checkpoint);
    }
    if (!selected) {
        return PS_UNDEFINED;
    }
    try {
        tsSignal::guarded([&] { endRun(); });
    } catch (...) {
        const Ending reason = ending();
        afterException(reason.text, reason.result, checkpoint);
        m_result = psWorse(m_result, m_currentResult);
    }
    if (m_unmasked) { // a trap outside a test would end the program
        ps87::instance().mask();
        psSSX::instance().mask();
    }
    return m_result;
}

// False: the settings file does not name this test.
bool psTest::runSteps() {
    bool selected = false;
    psStep("setIniSection", [&] { selected = setIniSection(m_function); });
    if (!selected) {
        return false;
    }
    psStep("beginTest", [&] { beginTest(); });
    m_startTime = time(nullptr);
    psStep("testTitle", [&] {
        const psReportTestTitle title(*this);
        psStep("g_ostrm<<testTitle", [&] { g_ostrm << title; });
        psStep("g_ustrm<<testTitle", [&] { g_ustrm << title; });
    });
    if (g_runWatch) {
        g_runWatch->starts(*this);
    }
    measure();
    restoreParms();
    psStep("flushStart", [&] { flushStart(); });
    return true;
}

void psTest::measure() {
    // Before a preparation that may take long. Whoever takes turns asks at each combination.
    if (!g_turnTaker && psIsMissingFunction(m_function)) {
        g_ostrm << PS_ERR << noFunctionText(m_function) << "\n" << PS_END;
        raiseResult(PS_FUNC_FAIL);
        return;
    }
    bool started = false;
    psStep("canStart", [&] { started = canStart(); });
    if (!started) {
        g_ostrm << PS_ERR << "-- Can't start timing\n" << PS_END;
        raiseResult(PS_DATA_FAIL);
        return;
    }
    if (m_cache && !m_cacheIterator) {
        g_ostrm << PS_ERR << "-- Can't run "
                << "In-Outof-Cache"
                << " timing: no program support for function " << m_function << "\n"
                << PS_END;
        return;
    }
    readParms();
    putTableName();
    if (g_istrm.isWriting() || g_settings.nameExit) {
        m_currentResult = PS_OK;
        return;
    }
    outputRegInfo();
    const psTraceScope trace("loopData");
    loopData();
}

void psTest::readParms() {
    for (psParameter* parm : m_parms) {
        m_keptDefinitions.append(parm->keepDefinition());
    }
    psStep("parmsFromIstrm", [&] { parmsFromIstrm(); });
    g_istrm.markSectionRead();
    if (g_runWatch) {
        g_runWatch->parametersRead(*this);
    }
}

// What the test's own section or an answer before it said does not hold for the tests after it,
// which share parameters with it.
void psTest::restoreParms() {
    for (const auto& restore : m_keptDefinitions) {
        restore();
    }
    m_keptDefinitions.clear();
}

void psTest::endRun() {
    m_result = m_currentResult;
    m_endTime = time(nullptr);
    psStep("testResult", [&] {
        const psReportTestResult report(*this);
        g_ostrm << report;
        g_ustrm << report;
        g_ostrm.flush();
        g_cstrm.flush();
        g_ustrm.flush();
    });
    psStep("endTest", [&] { endTest(); });
}

void psTest::afterException(const psString& message, psResult result,
                            const psRunCheckpoint& checkpoint) {
    // A copy: restoreStreams() takes the label away.
    const psString label = g_trace.label(); // NOLINT(performance-unnecessary-copy-initialization)
    raiseResult(result);
    checkpoint.restoreStreams();
    g_ostrm << PS_ERR << message << " in " << label << "\n" << PS_END;
    if (m_dataHeld) {
        m_dataHeld = false;
        try {
            psStep("flushData", [&] { flushData(); });
        } catch (...) {
            const psString second = ending().text;
            checkpoint.restoreStreams();
            g_ostrm << PS_ERR << second << " in flushData\n" << PS_END;
        }
    }
    g_cstrm.tableFlush();
    g_cstrm.linePostponeOut(m_numParmsColm + m_numResultColm);
    deleteReservedVectors();
    checkpoint.releaseBlocks();
    reportDamage("calls");
    restoreParms();
}

void* psTest::allocate(int size, int n, void* tag) {
    return psAllocateVector(size, n, tag);
}

void psTest::deallocate(void* block) {
    psFree(block);
}

void psTest::reserveAllVectors() {
    psReserveBlocks();
}

void psTest::resetAllVectors() {
    psRestoreBlocks();
}

void psTest::deleteReservedVectors() {
    psDropReservedBlocks();
}

bool psTest::badCtrlStatus(bool& bad87, bool& badSSX) {
    return psBadCtrlStatus(bad87, badSSX);
}

void psTest::printCtrlStatus(bool p87, bool pSSX) {
    psPrintCtrlStatus(p87, pSSX);
}

void psTest::clearCtrlStatus() {
    psClearCtrlStatus();
}

void psTest::startAndStop() {
    const psRunCheckpoint checkpoint;
    try {
        psStep("beginTest", [&] { beginTest(); });
        psStep("canStart", [&] { canStart(); });
        psStep("flushStart", [&] { flushStart(); });
    } catch (...) {
        const psString message = ending().text;
        checkpoint.restoreStreams();
        g_ostrm << PS_ERR << message << " in startAndStop of " << m_info.name << " test\n"
                << PS_END;
        checkpoint.releaseBlocks();
    }
}
