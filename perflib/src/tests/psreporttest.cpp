#include "psreporttest.h"

#include <cstdlib>
#include <typeinfo>

#include <cxxabi.h>

#include "psctrl87.h"
#include "psreportformat.h"
#include "pssettings.h"
#include "pstest.h"

psReportTestTitle::psReportTestTitle(const psTest& test) {
    m_items.set("Function", test.functionName());
    m_items.set("Test", test.info().name);
    m_items.set("Source", test.sourceName());
    if (!test.info().second.empty()) {
        m_items.set("Description", test.info().second);
    }
    m_items.set("Start", psReportFormat::getDateStr(test.startTime()));
}

psOStream& operator<<(psOStream& out, const psReportTestTitle& report) {
    return out << psReportFormat::sepLine() << psReportFormat().getItems(report.items());
}

psCStream& operator<<(psCStream& table, const psReportTestTitle&) {
    return table;
}

psString psWithoutNamespaces(const psString& typeName) {
    int begin = 0;
    int depth = 0; // of template arguments, whose namespaces do not end the name
    for (int i = 0; i < typeName.length(); ++i) {
        depth += (typeName[i] == '<') - (typeName[i] == '>');
        if (depth == 0 && typeName[i] == ':') {
            begin = i + 1;
        }
    }
    return typeName.substr(begin);
}

static psString className(const psTest& test) {
    const char* const mangled = typeid(test).name();
    char* const demangled = abi::__cxa_demangle(mangled, nullptr, nullptr, nullptr);
    const psString name = demangled ? demangled : mangled;
    free(demangled);
    return psWithoutNamespaces(name);
}

// Control and status of both units. A "?" in a status marks a flag that should not be there.
static void appendCtrlWords(psStringList& cells, const psCtrlWords& words) {
    if (!words.recorded()) {
        for (int i = 0; i < 4; ++i) {
            cells.append("");
        }
        return;
    }
    const tsSSXBase& ssx = psSSX::instance().unit(); // made when the words were recorded
    cells.append(ts87Base::strCW(words.cw87).trimmed());
    cells.append(ts87Base::strSW(words.sw87).trimmed());
    cells.append(ssx.strCW(words.ssx).trimmed());
    cells.append(ssx.strExceptionState(words.ssx).trimmed());
}

psReportTestResult::psReportTestResult(psTest& test)
    : m_result(test.result()), m_measuredNothing(!test.hasMeasured()) {
    const double seconds = difftime(test.endTime(), test.startTime());
    m_cells.append(test.functionName());
    m_cells.append(className(test));
    appendCtrlWords(m_cells, test.ctrlWords());
    m_cells.append(test.info().name);
    m_cells.append(psFormat("%.0f", seconds));
    m_cells.append(test.sourceName());
    m_cells.append(psResultShortName(test.result()));
    m_cells.append(g_settings.programPath);

    const psString outcome = psResultWord(test.result());
    m_text = psReportFormat().getPieceItem("Result",
                                           outcome + ", " + psReportFormat::getTimeStr(seconds));
    if (m_measuredNothing) {
        m_text += "--No measurements have been done\n";
    }
}

// Where the result itself is not wanted, a bad one is still told with the test's name: the errors
// before it do not all have one.
psOStream& operator<<(psOStream& out, const psReportTestResult& report) {
    if (report.result() >= PS_ACCUR_WARN && !out.accepts(PS_NORMAL)) {
        out << psResultLevel(report.result()) << "-- " << report.cells().front() << ": "
            << psResultWord(report.result()) << "\n"
            << PS_END;
    }
    return out << report.text();
}

static void putLine(psCStream& table, const psStringList& cells) {
    for (const psString& cell : cells) {
        table.setNextColm(cell);
    }
    table.lineOut(0);
}

psCStream& operator<<(psCStream& table, const psReportTestResult& report) {
    if (report.isHeader()) {
        psStringList names;
        psString("Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),"
                 "SrcName,Result,ExeName")
            .parse(names, ",");
        putLine(table, names);
    } else {
        putLine(table, report.cells());
    }
    return table;
}
