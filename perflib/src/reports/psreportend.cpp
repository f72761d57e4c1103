#include "psreport.h"

#include "psinterruption.h"
#include "psreportformat.h"
#include "pstestlist.h"

namespace {

constexpr const char* heading = "PS Summary";

int sumOf(const psTestList& tests, psResult first, psResult last) {
    int sum = 0;
    for (int result = first; result <= last; ++result) {
        sum += tests.count(static_cast<psResult>(result));
    }
    return sum;
}

} // namespace

// "Failures" counts the notes too: what is not a plain success deserves a look. The results 6 and
// 11, which say nothing exact, are among the undefined ones.
psReportEnd::psReportEnd(const psTestList& tests) {
    const int successes = tests.count(PS_OK);
    const int fails = sumOf(tests, PS_ACCUR_FAIL, PS_EXCEPTION);
    const int notes = sumOf(tests, PS_ACCUR_WARN, PS_FUNC_NOTE);
    const int exceptions = tests.count(PS_EXCEPTION);
    const int badStatuses = tests.count(PS_STATUS_WARN);
    const double seconds = difftime(tests.endTime(), tests.startTime());

    m_items.set(".Number of tests", psText(tests.tests()));
    m_items.set(".Successes      ", psText(successes));
    m_items.set(".Failures       ", psText(notes + fails));
    m_items.set("...Fails        ", psText(fails));
    m_items.set(".....-FAIL      ", psText(fails - exceptions));
    m_items.set(".....-EXCPTFAIL ", psText(exceptions));
    m_items.set("...Notes        ", psText(notes));
    m_items.set(".....-NOTE      ", psText(notes - badStatuses));
    m_items.set(".....-BADSTSWRN ", psText(badStatuses));
    m_items.set("...Undefined    ", psText(tests.tests() - successes - notes - fails));
    m_items.set(".Total time     ", psReportFormat::getTimeStr(seconds));
    // The function that the tests should have started from, when none was reached.
    const psString& missed = psTestList::m_startFunc;
    m_items.set(".-F not reached ", missed.empty() ? psString("NULL") : missed);
    if (psInterruption::wasFollowed()) {
        m_items.set(".Incomplete     ", psString("ended by ") + psInterruption::signalName());
    }
}

psOStream& operator<<(psOStream& out, const psReportEnd& report) {
    return out << psReportFormat::firstLine() << " " << heading << "\n"
               << psReportFormat::sepLine() << psReportFormat().getItems(report.items())
               << psReportFormat::lastLine();
}

psCStream& operator<<(psCStream& table, const psReportEnd& report) {
    table.setNextColm(heading);
    table.lineOut(0);
    for (const psDataItem& item : report.items()) {
        table.setNextColm(item.name);
        table.setNextColm(item.value);
        table.lineOut(0);
    }
    table.setNextColm("END_DATA");
    table.lineOut(0);
    return table;
}
