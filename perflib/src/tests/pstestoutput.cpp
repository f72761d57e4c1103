// What a test writes about itself: text lines, table cells.

#include "pstest.h"

#include <cmath>

#include "psbase.h"
#include "pscacheiterator.h"
#include "pscstream.h"
#include "psctrl87.h"
#include "psctrlstatus.h"
#include "pssettings.h"
#include "psrecordwriter.h"
#include "pstable.h"
#include "pstestformat.h"
#include "pstestrun.h"

psString psTest::formatClocks(double clocks) {
    return psFormatClocks(clocks);
}

psString psTest::perfString(bool rate) {
    if (!rate) {
        return formatClocks(m_tool.funcClocks / getDivisor());
    }
    if (!isFloatFunction() || m_tool.funcClocks <= 0) {
        return "";
    }
    return formatClocks(psCpuTicker::getFreq() * getFlops() / m_tool.funcClocks);
}

// The unit follows the accuracy in a column of its own, a blank in between.
psString psTest::testResultString() {
    const psMeasurement m = record(PS_UNDEFINED);
    psString text;
    if (m.times.hasAccuracy) {
        text += "acc=" + sFormat(psTool::getAccuracyStr(m.times.accuracy), 5);
    }
    text += sFormat(" " + m.unit, -10);
    const double clocks = m.clocksPerUnit(); // of a call on no units there are none
    text += "perf=" + sFormat(std::isfinite(clocks) ? psText(clocks) : "-", 8) + " clocks";
    return text;
}

psString psTest::getCacheComment(const psString& separator) {
    if (!m_cacheIterator) {
        return "";
    }
    return m_cacheIterator->getComment() + separator;
}

psString psTest::getComment() {
    return m_deprecated ? psString("deprecated") : getCacheComment(" ") + m_tool.methodInfo;
}

void psTest::setDeprecatedFlag(bool on) {
    m_deprecated = false;
    for (psParameter* parm : m_parms) {
        parm->setDeprecatedFlag(on);
        m_deprecated = m_deprecated || parm->isDeprecatedParm();
    }
}

void psTest::setTimingResult(double clocks, const psString& comment) {
    m_tool.setFuncTicks(clocks);
    m_tool.methodInfo = comment;
}

// The methods that the test offers, joined by ", ".
static psString methodList(std::initializer_list<std::pair<bool, const char*>> methods) {
    psString text;
    for (const auto& [offered, name] : methods) {
        if (offered) {
            text += (text.empty() ? psString() : psString(", ")) + name;
        }
    }
    return text;
}

psString psTest::regInfo() {
    psString text = "   Test has been registered";
    if (!m_info.macro.empty()) {
        text += " by " + m_info.macro + " macro";
    }
    const psString methods = methodList({{m_loop, "loopMethod"},
                                         {m_stat, "statMethod"},
                                         {m_custom, "oldMethod"},
                                         {m_call, "funcCall"},
                                         {m_init, "funcInit"}});
    if (!m_loop && !m_stat && !m_custom && !m_call) {
        return text + " without any function to call.\n No standard timing method is available";
    }
    text += " with " + methods + ".\n   ";
    if (m_call && m_tool.harnessCalls) {
        text += "funcCall with Set&Use";
    } else if (m_call && !m_loop && !m_stat) {
        text += "funcCall";
    } else if (m_loop || m_stat) {
        text += m_loop && (m_tool.method == PS_MANUAL || !m_stat) ? "loopMethod" : "statMethod";
    } else {
        text += "oldMethod";
    }
    return text + " is called for measuring.";
}

void psTest::outputRegInfo() {
    g_ostrm << PS_DETAIL << regInfo() << "\n" << PS_END;
}

void psTest::outputConst() {
    psStep("constToOstrm", [&] { constToOstrm(); });
}

void psTest::parmsToOstrm() {
    for (const psParameter* parm : m_parms) {
        parm->toOStream(g_ostrm);
    }
}

void psTest::putTextParms() {
    psStep("parmsToOstrm", [&] {
        g_ostrm << m_function << ": ";
        parmsToOstrm();
        g_ostrm << "\n";
    });
}

void psTest::putTextParms(MessageLevel level) {
    g_ostrm << level;
    putTextParms();
    g_ostrm << PS_END;
}

void psTest::putTextError(psResult r) {
    if (r < PS_ACCUR_WARN) {
        return;
    }
    g_ostrm << psResultLevel(r) << "-- " << psResultWord(r) << " on test parameters:\n";
    putTextParms();
    g_ostrm << PS_END;
}

void psTest::putTextResult(psResult r) {
    if (psIsFail(r)) {
        return;
    }
    g_ostrm << PS_NORMAL << "-- performance:\n"
            << testResultString() << "\n"
            << psDisturbanceText(record(r)) << PS_END_FLUSH;
}

void psTest::outputResult(psResult r) {
    m_record.reset(); // a fault may have left one
    m_record = std::make_unique<psMeasurement>(record(r));
    putTextError(r);
    putTextResult(r);
    if (m_deprecated) {
        putTableResult_Deprecated(r);
    } else {
        putTableResult(r);
    }
    m_figures.count(*m_record);
    psTellRecordWriters([this](psRecordWriter& writer) { writer.write(*m_record); });
    m_record.reset();
}

void psTest::funcToCstrm() {
    g_cstrm << m_function << psString();
}

psString psTest::combination() const {
    psMeasurement m;
    m.parameters = parameterValues();
    return m.combination();
}

psNamedValues psTest::parameterValues() const {
    psNamedValues values;
    for (const psParameter* parm : m_parms) {
        parm->addTo(values);
    }
    return values;
}

psMeasurement psTest::record(psResult r) {
    if (m_record) {
        return *m_record;
    }
    psMeasurement m;
    m.function = m_function;
    m.source = m_source;
    m.types = typeNames();
    m.parameters = parameterValues();
    addValues(m.values);
    m.times = m_tool.times();
    m.unitsPerCall = getDivisor();
    m.unit = getUnit();
    m.flopsPerCall = isFloatFunction() ? getFlops() : 0;
    m.result = r;
    m.comment = getComment();
    m.deprecated = m_deprecated;
    m.hot = isHotLine();
    return m;
}

// A test that adds no values has its parameters as they come in the columns.
void psTest::parmsToCstrm() {
    const psMeasurement m = record(PS_UNDEFINED);
    if (!m.values.empty()) {
        psValuesToCStream(g_cstrm, m);
        return;
    }
    for (const psParameter* parm : m_parms) {
        parm->toCStream(g_cstrm);
    }
}

void psTest::parmsNameToCstrm() {
    for (const psParameter* parm : m_parms) {
        parm->nameToCStream(g_cstrm);
    }
}

// Function and parameter cells fill exactly their columns, so that results never shift.
void psTest::putTableParms() {
    psStep("funcToCstrm", [&] { funcToCstrm(); });
    psStep("parmsToCstrm", [&] { parmsToCstrm(); });
    g_cstrm.skipToColm(m_numParmsColm);
}

void psTest::resultToCstrm(psResult r) {
    psResultToCStream(g_cstrm, *this, record(r));
}

void psTest::putTableResult(psResult r) {
    putTableParms();
    psStep("resultToCstrm", [&] { resultToCstrm(r); });
    g_cstrm.lineOut(m_numParmsColm + m_numResultColm);
}

void psTest::putTableResult_Deprecated(psResult r) {
    putTableParms();
    psResultToCStream(g_cstrm, *this, record(r));
    g_cstrm.lineOut(m_numParmsColm + m_numResultColm);
}

// The line of the test's own parameter names, for those who asked for it.
void psTest::putTableName() {
    if (g_settings.nameMode == 0) {
        return;
    }
    psStep("funcToCstrm", [&] { funcToCstrm(); });
    psStep("parmsNameToCstrm", [&] { parmsNameToCstrm(); });
    if (g_settings.nameMode & 2) {
        psString cell;
        for (int i = 0; i < g_cstrm.nextColm() && g_cstrm.getColm(i, cell); i++) {
            g_nstrm.setNextColm(cell);
        }
        g_nstrm.lineOut(0);
    }
    if (g_settings.nameMode & 1) {
        g_cstrm.lineOut(0);
    } else {
        g_cstrm.tableFlush();
    }
}

void psTest::initCtrlStatus() {
    ps87::instance().init();
    psSSX::instance().init();
}

psResult psTest::checkCtrlStatus() {
    m_ctrlWords.cw87 |= ps87::instance().cw();
    m_ctrlWords.sw87 |= ps87::instance().sw();
    m_ctrlWords.ssx |= psSSX::instance().word();
    bool bad87 = false;
    bool badSSX = false;
    if (!psBadCtrlStatus(bad87, badSSX)) {
        return PS_OK;
    }
    psPrintCtrlStatus(bad87, badSSX);
    return PS_STATUS_WARN;
}
