#pragma once

#include "psequallines.h"
#include "psstream.h"

// The performance table: one line of comma-separated cells per measured case, written to every
// file of the list. An empty list writes nothing; an element without a file writes to standard
// output. Cells are written as they stand, except that a comma in a cell becomes a blank, because
// it would shift every later column. Lines reach a file whole or not at all.
class psCStream {
public:
    static constexpr int maxColumns = 32;

    psCStream() = default;
    psCStream(const psCStream&) = delete;
    psCStream& operator=(const psCStream&) = delete;
    ~psCStream();

    // False (reported, nothing added) when the file cannot be opened.
    bool addStream(const psString& name, bool append);
    void addStream(o_stream* stream); // takes ownership
    bool empty() const { return m_streams.empty(); }

    // Columns beyond 31 are ignored.
    void setColm(int i, const psString& text);
    void setNextColm(const psString& text);
    bool getColm(int i, psString& text) const;
    int nextColm() const { return m_nextColumn; }
    // Puts the next column at i: cells passed over keep what setColm put into them, cells that
    // were filled from i on are dropped.
    void skipToColm(int i);

    void lineOut(int columns); // emits the current line; 0: as many as were filled
    void tableOut(int columns);
    void tableFlush();
    void linePostpone();
    void linePostponeOut(int columns);
    int lineCount() const { return m_lineCount; }
    // Another process wrote so many lines before, of this table.
    void setLineCount(int lines) { m_lineCount = lines; }
    // Lines are dropped: the file has them already.
    void setMuted(bool muted) { m_muted = muted; }
    void flush();
    void close();

    // Watches the lines emitted from now on for pairs equal in their first columns.
    void identicalLinesStart(int columns);
    // True when there was such a pair; the first one is reported to g_ostrm.
    bool identicalLinesStop();
    static bool identicalColms(const psString* a, const psString* b, int n);

private:
    bool identicalLinesCheck() const;
    psString lineText(int columns) const;

    psList<o_stream*> m_streams;
    psString m_cells[maxColumns];
    int m_nextColumn = 0;
    int m_lineCount = 0;
    bool m_muted = false;
    int m_identicalColumns = 0;
    psEqualLines m_watched;
    psStringList m_postponed[maxColumns];
};

// "\n" emits the current line, anything else fills the next cell.
psCStream& operator<<(psCStream& table, const psString& text);

extern psCStream g_cstrm; // the performance table
extern psCStream g_ustrm; // the summary table (its files end in "_sum.csv")
extern psCStream g_nstrm; // the parameter-name table (its files end in "_name.csv")
