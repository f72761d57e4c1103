#pragma once

#include <ctime>

#include "psdata.h"

// Frames and items of the report blocks, and the texts that need no test. The lines of a frame come
// with their line end.
class psReportFormat {
public:
    static psString firstLine();
    static psString lastLine();
    static psString sepLine();
    // Whether an item ends its line, as it does at first. As a cell of a table it must not.
    void setEndLine(bool on) { m_endLine = on; }
    // " Label    : value" with the label in 9 characters.
    psString getPieceItem(const psString& label, const psString& value) const;
    psString getItems(const psDataList& items) const; // one after the other
    // "hh:mm:ss" of whole seconds; from 100 hours on "UNKNOWN (Very large value)".
    static psString getTimeStr(double seconds);
    // ctime's text without the line end.
    static psString getDateStr(time_t t);

private:
    bool m_endLine = true;
};

// "NAME, x2, 2.40 GHz, Max cache size 266240 K": brand or "Unknown CPU", then count, frequency and
// cache where known (0: not).
psString psProcessorText(const psString& brand, int processors, int freqMHz, int cacheBytes);
