#include "psremarks.h"

psRemarks g_remarks;

void psRemarks::add(const psString& text) {
    if (++m_count <= mostShown) {
        m_shown.append(text);
    }
}

void psRemarks::clear() {
    m_shown.clear();
    m_count = 0;
}

psString psRemarks::closingText() const {
    if (m_count == 0) {
        return {};
    }
    psString text = "-- " + psText(m_count) +
                    (m_count == 1 ? " setting was rejected or ignored:\n"
                                  : " settings were rejected or ignored:\n");
    for (const psString& line : m_shown) {
        text << "--   " << line << "\n";
    }
    if (m_count > mostShown) {
        text << "--   and " << m_count - mostShown << " more\n";
    }
    return text;
}
