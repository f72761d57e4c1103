#include "table.h"

#include <algorithm>
#include <charconv>

#include "cells.h"
#include "lines.h"
#include "titles.h"
#include "columns.h"

namespace report {

namespace {

constexpr long long mostStrangeLines = 1000;
constexpr int mostQuoted = 40; // columns

std::string quoted(std::string_view cell) {
    return "'" + common::shortened(common::printable(std::string(cell)), mostQuoted) + "'";
}

// "nLps=27 acc=7.3%", "nCalls=12".
long long callsOf(std::string_view comment) {
    for (const std::string_view name : {"nLps=", "nCalls="}) {
        if (const std::size_t at = comment.find(name); at != std::string_view::npos) {
            long long calls = 0;
            std::from_chars(comment.data() + at + name.size(), comment.data() + comment.size(),
                            calls);
            return calls;
        }
    }
    return 0;
}

void setComment(Measurement& row, std::string_view cell) {
    row.comment = cell;
    row.calls = callsOf(cell);
    row.isDeprecated = cell.starts_with("deprecated");
}

struct Known {
    const char* name;
    bool isNumber;
    void (*set)(Measurement& row, std::string_view cell);
};

// All that names no combination. A cell that is empty ("-") is not handed over.
constexpr Known knownColumns[] = {
    {"Function", false, [](Measurement& row, std::string_view cell) { row.function = cell; }},
    {"Types", false, [](Measurement& row, std::string_view cell) { row.types = cell; }},
    {"Ratio", true,
     [](Measurement& row, std::string_view cell) {
         row.values.push_back({"Ratio", *numberOf(cell)});
     }},
    {"Clocks", true,
     [](Measurement& row, std::string_view cell) { row.clocksPerUnit = numberOf(cell); }},
    {"Unit", false, [](Measurement& row, std::string_view cell) { row.unit = cell; }},
    {"Rate", true,
     [](Measurement& row, std::string_view cell) {
         row.values.push_back({"Rate", *numberOf(cell)});
     }},
    {"Result", false, [](Measurement& row, std::string_view cell) { row.result = cell; }},
    {"Comment", false, setComment},
    {"Interest", false, [](Measurement& row, std::string_view cell) { row.isHot = cell == "+"; }},
    {"Spread", true,
     [](Measurement& row, std::string_view cell) { row.spread = *numberOf(cell) / 100; }},
};

bool isWord(std::string_view cell) {
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    };
    return !cell.empty() && std::all_of(cell.begin(), cell.end(), [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9');
    });
}

// A function, its types, and the names of its parameters; a broken row has a number among them, or
// one of the cells that are "-".
bool isParameterNames(const std::vector<std::string_view>& cells) {
    return cells.size() > 2 && std::all_of(cells.begin() + 2, cells.end(), [](const auto& cell) {
               return isWord(cell) && !numberOf(cell.substr(0, 1));
           });
}

bool isNameLine(const std::vector<std::string_view>& cells) {
    return cells.front() == "Function" &&
           std::find(cells.begin(), cells.end(), "Clocks") != cells.end();
}

} // namespace

bool TableReader::isHopeless() const {
    return !m_hasNames && m_strange > mostStrangeLines;
}

void TableReader::take(std::string_view line, bool isWhole, long long number) {
    if (line.empty()) {
        return;
    }
    split(line, m_cells);
    if (isTitle(m_cells.front()) && (isWhole || m_cells.size() > 1)) {
        takeTitle(m_cells, line);
    } else if (isNameLine(m_cells)) {
        takeNames();
    } else if (m_columns.empty()) {
        ++m_strange;
    } else if (m_cells.size() < m_columns.size()) {
        takeShort(line, isWhole, number);
    } else {
        takeRow(number);
    }
}

void TableReader::takeTitle(const std::vector<std::string_view>& cells, std::string_view line) {
    if (!m_columns.empty()) {
        endRun(); // the titles of one that was added
    }
    const std::string_view name = cells.front();
    addTitle(name, line.substr(std::min(line.size(), name.size() + 1)), m_run.facts);
}

void TableReader::takeNames() {
    if (!m_run.measurements.empty()) {
        endRun(); // tables that were put together without their titles
    }
    m_hasNames = true;
    m_columns.clear();
    m_run.columns.clear();
    for (const std::string_view cell : m_cells) {
        const auto* const known =
            std::find_if(std::begin(knownColumns), std::end(knownColumns),
                         [&](const Known& column) { return cell == column.name; });
        if (known != std::end(knownColumns)) {
            m_columns.push_back({std::string(cell), known->set, known->isNumber});
        } else {
            m_columns.push_back({std::string(trimmed(cell)), nullptr, false});
            m_run.columns.push_back(m_columns.back().name);
        }
    }
}

// What is shorter than the columns.
void TableReader::takeShort(std::string_view line, bool isWhole, long long number) {
    if (const std::size_t titles = line.find("Processor,"); titles != std::string_view::npos) {
        // The last line of a run that was killed, with the next run behind it.
        m_run.isComplete = false;
        endRun();
        take(line.substr(titles), isWhole, number);
    } else if (!isWhole) {
        m_run.isComplete = false;
    } else if (!isParameterNames(m_cells)) {
        m_lost.add(number, "it has " + std::to_string(m_cells.size()) + " cells in place of " +
                               std::to_string(m_columns.size()));
    }
}

void TableReader::takeRow(long long number) {
    if (m_cells.size() > m_columns.size()) {
        m_lost.add(number, "it has " + std::to_string(m_cells.size()) + " cells in place of " +
                               std::to_string(m_columns.size()));
        return;
    }
    Measurement row;
    row.parameters.reserve(m_run.columns.size());
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        const Column& column = m_columns[i];
        const std::string_view cell = trimmed(m_cells[i]);
        if (cell == "-" || cell.empty()) {
            continue;
        }
        if (column.isNumber && !numberOf(cell)) {
            m_lost.add(number, column.name + " is " + quoted(cell) + ", which is no number");
            return;
        }
        if (column.set) {
            column.set(row, cell);
        } else {
            row.parameters.push_back({column.name, valueOf(cell)});
        }
    }
    m_run.measurements.push_back(std::move(row));
}

void TableReader::endRun() {
    m_run.file = m_file;
    if (!m_run.isComplete) {
        m_into.notes.push_back(m_file + ": the last line of the run of " + m_run.facts.started +
                               " is broken, so it was killed; the rows before it are read");
    }
    if (!m_run.measurements.empty()) {
        m_into.runs.push_back(std::move(m_run));
    } else if (m_lost.sentence(m_file, "row").empty()) {
        m_into.problems.push_back(
            m_file + " has a table without rows" +
            (m_run.facts.started.empty() ? "" : ", of " + m_run.facts.started) +
            ": nothing was measured, or the run was killed before");
    }
    m_run = Run();
    m_columns.clear();
}

void TableReader::finish() {
    if (!m_hasNames) {
        throw Unreadable(m_file + " is no performance table: no line of it names the columns "
                                  "(Function, ... Clocks, ...); give the file of -r or of -x");
    }
    endRun();
    if (const std::string lost = m_lost.sentence(m_file, "row"); !lost.empty()) {
        m_into.problems.push_back(lost);
    }
}

} // namespace report
