#include "psreport.h"

#include "psbase.h"
#include "pscputick_gcc.h"
#include "psinfo.h"
#include "psnamemap.h"
#include "psreportformat.h"

psReportTitle::psReportTitle(const psTestList& tests) {
    m_items.set("Processor", psProcessorText(psCpuBrand(), psGetNumOfProcessors(),
                                             psCpuTicker::knownFreq(), psGetMaxCacheSizeB()));
    m_items.set("OS", psOS());
    m_items.set("Computer", psHost());
    m_items.set("Library", g_pLibInfo ? psJoined(*g_pLibInfo, "; ") : psString("none"));
    m_items.set("Start", psReportFormat::getDateStr(tests.startTime()));
}

psOStream& operator<<(psOStream& out, const psReportTitle& report) {
    return out << psReportFormat::firstLine() << psReportFormat().getItems(report.items())
               << psReportFormat::lastLine();
}

psCStream& operator<<(psCStream& table, const psReportTitle& report) {
    for (const psDataItem& item : report.items()) {
        table.setNextColm(item.name);
        table.setNextColm(item.value);
        table.lineOut(0);
    }
    return table;
}

void psTitleToSummary(psCStream& summary, const psReportTitle& report) {
    psReportFormat format;
    format.setEndLine(false);
    for (const psDataItem& item : report.items()) {
        summary.setNextColm(format.getPieceItem(item.name, item.value));
    }
    summary.lineOut(0);
}
