#pragma once

#include <string_view>
#include <vector>

#include "reading.h"

namespace report {

// Performance tables, line by line: title lines, a name line, rows, and the same again where a run
// was added. The columns are found by their names. Lines of the names of a test's parameters (-q+)
// are passed over, the last line of a run that was killed may be broken.
class TableReader {
public:
    TableReader(const std::string& file, Reading& into) : m_file(file), m_into(into) {}

    void take(std::string_view line, bool isWhole, long long number);
    // After the last line. Throws Unreadable when there was no table.
    void finish();

    // So many lines without a name line that none is to be expected.
    bool isHopeless() const;

private:
    using Setter = void (*)(Measurement& row, std::string_view cell);
    struct Column {
        std::string name;
        Setter set = nullptr; // null: it names the combination
        bool isNumber = false;
    };

    void takeTitle(const std::vector<std::string_view>& cells, std::string_view line);
    void takeNames();
    void takeRow(long long number);
    void takeShort(std::string_view line, bool isWhole, long long number);
    void endRun();

    std::string m_file;
    Reading& m_into;
    std::vector<std::string_view> m_cells;
    std::vector<Column> m_columns; // of the present run; empty before its name line
    Run m_run;
    bool m_hasNames = false;
    long long m_strange = 0; // lines before a name line that are no titles
    LostLines m_lost;
};

} // namespace report
