#include "psreport.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <unordered_set>

#include "psbase.h"
#include "pstest.h"
#include "pstestformat.h"

namespace {

constexpr const char* serviceWords[] = {"Init",   "Close",        "Alloc",       "Malloc",  "Free",
                                        "PutVal", "RotateCenter", "ResizeShift", "DrawText"};

// Getters and setters are services too; "Get_" and "Set_" are parts of the names of others.
constexpr const char* accessWords[] = {"Get", "Set"};

constexpr const char* nothingSelected = "-- No test meets the conditions";

bool isService(const psString& function) {
    for (const char* const word : serviceWords) {
        if (function.contains(word)) {
            return true;
        }
    }
    for (const char* const word : accessWords) {
        if (function.contains(word) && !function.contains(psString(word) + "_")) {
            return true;
        }
    }
    return false;
}

// To be asked once for each of ten thousand tests.
using Names = std::unordered_set<std::string_view>;

psStringList row(std::initializer_list<psString> cells) {
    psStringList list;
    for (const psString& cell : cells) {
        list.append(cell);
    }
    return list;
}

// The width of each column.
psList<int> widthsOf(const psList<psStringList>& rows) {
    psList<int> widths;
    for (const psStringList& cells : rows) {
        auto width = widths.begin();
        for (const psString& cell : cells) {
            if (width == widths.end()) {
                width = widths.insert(width, 0);
            }
            *width = std::max(*width, cell.length());
            ++width;
        }
    }
    return widths;
}

// The number in front stands to the right, the names to the left, the last one unpadded.
psString lineText(const psStringList& cells, const psList<int>& widths) {
    psString line;
    auto width = widths.begin();
    for (const psString& cell : cells) {
        const bool isNumber = &cell == &cells.front();
        line << (isNumber ? sFormat(cell, *width) : "  " + sFormat(cell, -*width));
        ++width;
    }
    while (line.length() > 0 && line[line.length() - 1] == ' ') {
        line.resize(line.length() - 1);
    }
    return line;
}

} // namespace

psStringList createFuncList(const psStringList& names) {
    psStringList functions;
    for (const psString& name : names) {
        if (!isService(name)) {
            functions.append(name);
        }
    }
    return functions;
}

psReportList::psReportList(const psTestList& tests, const psConditions& conditions, int mode) {
    if (mode < 0) {
        addNames(tests, conditions);
        return;
    }
    addTests(tests, conditions);
    if (mode > 0) {
        addFunctions(tests);
    }
}

void psReportList::addTable(const psList<psStringList>& rows) {
    const psList<int> widths = widthsOf(rows);
    for (const psStringList& cells : rows) {
        m_rows.append(cells);
        m_lines.append(lineText(cells, widths));
    }
}

void psReportList::addTests(const psTestList& tests, const psConditions& conditions) {
    psList<psStringList> rows;
    rows.append(row({"   #", "Function", "Test", "Source"}));
    for (psTest* test : tests) {
        if (test && test->tobeRun(conditions)) {
            rows.append(row({psText(rows.count()), test->functionName(), test->info().name,
                             test->sourceName()}));
        }
    }
    addTable(rows);
    if (rows.count() == 1) {
        m_lines.append(nothingSelected);
    }
}

void psReportList::addFunctions(const psTestList& tests) {
    Names covered;
    for (const psTest* test : tests) {
        if (test) {
            covered.insert(test->functionName().c_str());
        }
    }
    psList<psStringList> rows;
    rows.append(row({"   #", "Function", "Exist"}));
    for (const psString& name :
         createFuncList(g_pLibFunctions ? *g_pLibFunctions : psStringList())) {
        rows.append(row({psText(rows.count()), name, covered.contains(name.c_str()) ? "+" : ""}));
    }
    m_lines.append("");
    addTable(rows);
    if (rows.count() == 1) {
        m_lines.append("-- No library functions have been registered");
    }
}

void psReportList::addNames(const psTestList& tests, const psConditions& conditions) {
    Names listed;
    for (psTest* test : tests) {
        if (test && test->tobeRun(conditions) &&
            listed.insert(test->functionName().c_str()).second) {
            m_lines.append(test->functionName());
            m_rows.append(row({test->functionName()}));
        }
    }
    if (m_lines.empty()) {
        m_lines.append(nothingSelected);
    }
}

psOStream& operator<<(psOStream& out, const psReportList& report) {
    for (const psString& line : report.lines()) {
        out << line << "\n";
    }
    return out;
}

psCStream& operator<<(psCStream& table, const psReportList& report) {
    for (const psStringList& cells : report.rows()) {
        for (const psString& cell : cells) {
            table.setNextColm(cell);
        }
        table.lineOut(0);
    }
    return table;
}
