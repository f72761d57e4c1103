// The end of a test in which an earlier process of the run ended: in the form of a test that faults
// in this process, and with a line of the table, as nothing else there tells of the combination.

#include "pscstream.h"
#include "psrecordwriter.h"
#include "psreporttest.h"
#include "psrunwatch.h"
#include "pstable.h"
#include "pstest.h"
#include "pstestrun.h"

psRunWatch* g_runWatch = nullptr;

void psTest::reportLost(const psLostTest& lost) {
    psTellRecordWriters([this](psRecordWriter& writer) { writer.testBegins(*this); });
    beginRun();
    m_startTime = lost.startTime;
    m_measured = lost.hasMeasured;
    m_clocksInCalls = lost.clocksInCalls;
    raiseResult(PS_EXCEPTION);
    g_ostrm << PS_ERR << lost.message << " in " << lost.label << "\n" << PS_END;
    if (!lost.lastError.empty()) {
        g_ostrm << PS_ERR << "-- last on standard error: " << lost.lastError << "\n" << PS_END;
    }
    if (!lost.combination.empty()) {
        g_ostrm << psResultLevel(PS_EXCEPTION) << "-- " << psResultWord(PS_EXCEPTION)
                << " on test parameters:\n"
                << m_function << ": " << lost.combination << " \n"
                << PS_END;
    }
    putLostRow(lost);
    endRun();
    const double seconds = difftime(m_endTime, m_startTime);
    psTellRecordWriters([&](psRecordWriter& writer) { writer.testEnds(*this, m_result, seconds); });
}

void psTest::putLostRow(const psLostTest& lost) {
    if (lost.cells.empty()) {
        psStep("funcToCstrm", [&] { funcToCstrm(); });
    }
    for (const psString& cell : lost.cells) {
        g_cstrm.setNextColm(cell);
    }
    g_cstrm.skipToColm(m_numParmsColm);
    psMeasurement m;
    m.result = PS_EXCEPTION;
    m.unit = getUnit();
    m.comment = lost.word;
    if (lost.cells.empty()) { // no other cell tells where it was
        m.comment << " in " << lost.label << (lost.combination.empty() ? "" : " at ")
                  << lost.combination;
    }
    psResultToCStream(g_cstrm, *this, m);
    g_cstrm.lineOut(m_numParmsColm + m_numResultColm);
}

// Function and parameter cells of the prepared combination, as its line will have them, less what
// only a measurement tells.
psStringList psTest::combinationCells() {
    funcToCstrm();
    psMeasurement m;
    addKeys(m.values);
    if (m.values.empty()) {
        for (const psParameter* parm : m_parms) {
            parm->toCStream(g_cstrm);
        }
    } else {
        psValuesToCStream(g_cstrm, m);
    }
    g_cstrm.skipToColm(m_numParmsColm);
    psStringList cells;
    psString cell;
    for (int i = 0; i < m_numParmsColm && g_cstrm.getColm(i, cell); ++i) {
        cells.append(cell);
    }
    g_cstrm.tableFlush();
    return cells;
}
