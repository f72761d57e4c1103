// The walk over the parameter combinations of a test.

#include "pstest.h"

#include "pscacheiterator.h"
#include "pscstream.h"
#include "psdamage.h"
#include "psinterruption.h"
#include "pslastsubject.h"
#include "psrunwatch.h"
#include "pstestformat.h"
#include "pstestrun.h"
#include "psturns.h"

bool psTest::canContinue() {
    if (m_cacheInvalid) {
        return retryCacheSize();
    }
    if (m_parms.empty()) {
        return m_noCombination;
    }
    return m_noCombination ? nextCombination() : stepParms();
}

// The first combination: every parameter on its first value.
bool psTest::nextCombination() {
    for (psParameter* parm : m_parms) {
        if (!parm->firstValue()) {
            return false;
        }
    }
    return true;
}

// An odometer: the last parameter varies fastest, one that runs out starts again and hands on to
// the one before it.
bool psTest::stepParms() {
    for (auto i = m_parms.end(); i != m_parms.begin();) {
        --i;
        if ((*i)->nextValue()) {
            return true;
        }
        if (i != m_parms.begin() && !(*i)->firstValue()) {
            return false;
        }
    }
    return false;
}

bool psTest::retryCacheSize() {
    m_cacheInvalid = false;
    if (m_cacheIterator->repeatValue()) {
        return true;
    }
    m_cacheIterator->outputInfo();
    putTextParms(PS_ERR);
    g_ostrm << PS_ERR << "-- Fail to allocate " << m_cacheIterator->getComment() << " data\n"
            << PS_END;
    raiseResult(PS_DATA_FAIL);
    return false;
}

void psTest::loopData() {
    m_noCombination = true;
    g_cstrm.identicalLinesStart(m_numParmsColm);
    bool isFirst = true;
    for (;;) {
        m_vectorNum = 0;
        bool more = false;
        psStep("canContinue", [&] { more = canContinue(); });
        if (!more) {
            break;
        }
        m_noCombination = false;
        psInterruption::check();
        runCombination(isFirst);
        if (psIsFail(m_currentResult)) {
            break;
        }
    }
    if (m_noCombination) {
        g_ostrm << PS_ERR << "-- One of argument list for timing is empty\n" << PS_END;
        raiseResult(PS_DATA_FAIL);
    }
    endLoop();
}

void psTest::runCombination(bool& isFirst) {
    if (g_turnTaker && !g_turnTaker->wants(m_function, parameterValues())) {
        return;
    }
    if (g_runWatch) {
        g_runWatch->prepares(*this);
    }
    m_dataHeld = true;
    if (prepared(isFirst)) {
        measureCombination();
    }
    if (g_runWatch) {
        g_runWatch->releases(*this);
    }
    psStep("flushData", [&] { flushData(); });
    m_dataHeld = false;
    deleteReservedVectors(); // the next cache validation counts all blocks
    reportDamage("release");
    if (g_turnTaker) {
        g_turnTaker->released();
    }
}

// False: this combination is not measured.
bool psTest::prepared(bool& isFirst) {
    bool ready = false;
    psLastSubject::prepares(m_function, combination());
    psStep("initData", [&] { ready = initData(); });
    psLastSubject::hasPrepared(m_function);
    if (reportDamage("preparation") || !ready) {
        return false;
    }
    setDeprecatedFlag(true);
    if (isFirst) {
        outputConst();
    }
    isFirst = false;
    if (!validCacheSize()) {
        return false;
    }
    putTextParms(PS_NORMAL);
    g_ostrm.flush(); // should a call bring the program down, the log says which
    if (m_tool.harnessCalls) {
        psStep("reserveAllVectors", [&] { reserveAllVectors(); });
    }
    if (m_hot == 2 && !isHotLine()) {
        g_ostrm << PS_NORMAL << "  measuring is omitted: not hot line\n" << PS_END;
        return false;
    }
    return true;
}

bool psTest::validCacheSize() {
    if (!m_cacheIterator) {
        return true;
    }
    m_cacheInvalid = !m_cacheIterator->validateSize();
    return !m_cacheInvalid;
}

void psTest::measureCombination() {
    printAllMemoryBlocks("before function calls");
    if (g_runWatch) {
        g_runWatch->calls(*this);
    }
    initCtrlStatus();
    psResult r = timedResult();
    m_clocksInCalls += m_tool.clocksInCalls;
    m_figures.clocksInCalls += m_tool.clocksInCalls;
    if (r != PS_UNDEFINED && !psIsFail(r) && !hasPossibleResult()) {
        r = PS_FUNC_FAIL;
    }
    if (r == PS_UNDEFINED) {
        g_ostrm << PS_ERR
                << "-- Internal test problem: runTiming() function returns undefined result\n"
                << PS_END;
        raiseResult(PS_FAIL);
    } else {
        m_measured = true;
        printAllMemoryBlocks("after function calls");
    }
    psResult combined = psResultAtLevel(psWorse(checkCtrlStatus(), r), g_ostrm.outLevel());
    if (reportDamage("calls")) {
        combined = psWorse(combined, PS_FUNC_FAIL);
    }
    raiseResult(combined);
    outputResult(r == PS_UNDEFINED ? PS_FAIL : combined);
}

// Whether blocks were written beyond their ends since the last question, in this part of the test:
// a failure of the function. Asked outside of the timed spans.
bool psTest::reportDamage(const char* part) {
    const psList<psBlockDamage> damages = psTakeDamage();
    for (const psBlockDamage& damage : damages) {
        g_ostrm << PS_ERR << "-- Memory fault: the " << part << " of " << m_function
                << " wrote outside of " << psDamageText(damage) << "; with NTKPERF_GUARD=pages-"
                << (damage.over > 0 ? "after" : "before") << " the call that does it faults\n"
                << PS_END;
        raiseResult(PS_FUNC_FAIL);
    }
    return !damages.empty();
}

// With warnings wanted but not the measured values (level 3), the calls themselves may say
// everything that is for a person to see.
psResult psTest::timedResult() {
    const int level = g_ostrm.outLevel();
    if (level == PS_OUT_WARN) {
        g_ostrm.setOutLevel(PS_OUT_PERF);
    }
    psResult r = PS_UNDEFINED;
    psStep("runTiming", [&] { r = runTiming(); });
    g_ostrm.setOutLevel(level);
    return r;
}

psResult psTest::runTiming() {
    if (m_custom) {
        return m_tool.timing(m_custom);
    }
    if (!m_loop && !m_stat && !m_call) {
        return PS_UNDEFINED;
    }
    return m_tool.timing(m_loop, m_stat, m_call, m_init);
}

void psTest::endLoop() {
    if (m_currentResult == PS_UNDEFINED) {
        g_ostrm << PS_ERR << "-- Fail while initialization of function data\n" << PS_END;
        raiseResult(PS_DATA_FAIL);
    }
    g_cstrm.linePostponeOut(m_numResultColm + m_numParmsColm);
    if (!g_cstrm.identicalLinesStop()) {
        return;
    }
    g_ostrm << PS_WARN << "-- Notice: duplicate lines in performance table (csv-file)\n" << PS_END;
    raiseResult(psResultAtLevel(PS_DATA_NOTE, g_ostrm.outLevel()));
}
