#include "pscstream.h"

#include <algorithm>

#include "psinit.h"
#include "psostream.h"

// After g_ostrm, on which a table that cannot be written is reported, at the end of the program
// too.
PS_INIT_SECOND psCStream g_cstrm;
PS_INIT_SECOND psCStream g_ustrm;
PS_INIT_SECOND psCStream g_nstrm;

psCStream::~psCStream() {
    close();
}

bool psCStream::addStream(const psString& name, bool append) {
    o_stream* const stream = createOStream(name, append);
    if (stream) {
        addStream(stream);
    }
    return stream != nullptr;
}

void psCStream::addStream(o_stream* stream) {
    m_streams.append(stream);
}

static bool isColumn(int i) {
    return i >= 0 && i < psCStream::maxColumns;
}

void psCStream::setColm(int i, const psString& text) {
    if (isColumn(i)) {
        m_cells[i] = text;
    }
}

void psCStream::setNextColm(const psString& text) {
    if (isColumn(m_nextColumn)) {
        m_cells[m_nextColumn++] = text;
    }
}

bool psCStream::getColm(int i, psString& text) const {
    if (!isColumn(i)) {
        return false;
    }
    text = m_cells[i];
    return true;
}

void psCStream::skipToColm(int i) {
    const int column = std::clamp(i, 0, maxColumns);
    for (int dropped = column; dropped < m_nextColumn; ++dropped) {
        m_cells[dropped] = "";
    }
    m_nextColumn = column;
}

// The cell without what would end it or its line.
static psString cellText(const psString& cell) {
    psString text = cell;
    for (int i = 0; i < text.length(); ++i) {
        if (text[i] == ',' || text[i] == '\n' || text[i] == '\r') {
            text.at(i) = ' ';
        }
    }
    return text;
}

// An empty line still has its first cell, so that no line of a table is blank.
psString psCStream::lineText(int columns) const {
    const int count = std::clamp(columns == 0 ? m_nextColumn : columns, 1, maxColumns);
    psString line;
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            line += ',';
        }
        const bool filled = i < m_nextColumn && !m_cells[i].empty();
        line += filled ? cellText(m_cells[i]) : psString("-");
    }
    line += '\n';
    return line;
}

void psCStream::lineOut(int columns) {
    tableOut(columns);
    m_lineCount++;
    if (m_identicalColumns > 0) {
        m_watched.add(m_lineCount, m_cells, m_identicalColumns);
    }
    tableFlush();
}

void psCStream::tableOut(int columns) {
    if (m_streams.empty() || m_muted) {
        return;
    }
    const psString line = lineText(columns);
    for (o_stream* stream : m_streams) {
        if (!stream->writeWhole(line)) {
            g_ostrm.reportFailure(*stream);
        }
    }
}

void psCStream::tableFlush() {
    for (psString& cell : m_cells) {
        cell = "";
    }
    m_nextColumn = 0;
}

void psCStream::linePostpone() {
    for (int i = 0; i < maxColumns; ++i) {
        m_postponed[i].append(m_cells[i]);
    }
    tableFlush();
}

void psCStream::linePostponeOut(int columns) {
    while (!m_postponed[0].empty()) {
        for (int i = 0; i < maxColumns; ++i) {
            m_cells[i] = m_postponed[i].front();
            m_postponed[i].erase(m_postponed[i].begin());
        }
        m_nextColumn = std::clamp(columns, 0, maxColumns);
        lineOut(columns);
    }
}

void psCStream::flush() {
    for (o_stream* stream : m_streams) {
        if (!stream->flush()) {
            g_ostrm.reportFailure(*stream);
        }
    }
}

void psCStream::close() {
    flush();
    for (o_stream* stream : m_streams) {
        delete stream;
    }
    m_streams.clear();
}

void psCStream::identicalLinesStart(int columns) {
    m_identicalColumns = std::clamp(columns, 0, maxColumns);
    m_watched.clear();
}

bool psCStream::identicalLinesStop() {
    if (m_identicalColumns == 0 || m_watched.empty()) {
        return false;
    }
    const bool found = identicalLinesCheck();
    identicalLinesStart(0);
    return found;
}

bool psCStream::identicalColms(const psString* a, const psString* b, int n) {
    for (int i = 0; i < n; ++i) {
        if (!(a[i] == b[i])) {
            return false;
        }
    }
    return true;
}

bool psCStream::identicalLinesCheck() const {
    const psEqualLines::Pair pair = m_watched.firstPair();
    if (pair.first == 0) {
        return false;
    }
    g_ostrm << PS_WARN << " Performance table note:\n"
            << " Lines " << pair.first << " & " << pair.second << " have identical parameters\n"
            << PS_END_FLUSH;
    return true;
}

psCStream& operator<<(psCStream& table, const psString& text) {
    if (text == "\n") {
        table.lineOut(0);
    } else {
        table.setNextColm(text);
    }
    return table;
}
