#pragma once

#include "psstring.h"

// What the user asked for and did not get: values that were rejected, keys that were ignored. Each
// is reported where it is found, before the first test; after thousands of lines of measurements
// nobody sees it any more, so the closing lines of the run repeat them.
class psRemarks {
public:
    void add(const psString& text); // without a line end
    int count() const { return m_count; }
    const psStringList& shown() const { return m_shown; } // of all the first
    // Lines for the end of the log; empty when there was nothing. Of very many the first are shown.
    psString closingText() const;
    void clear();

private:
    static constexpr int mostShown = 20;
    psStringList m_shown;
    int m_count = 0;
};

extern psRemarks g_remarks;
