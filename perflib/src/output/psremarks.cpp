#include "psremarks.h"

psRemarks g_remarks;

void psRemarks::add(const psString& text) {
    constexpr int longest = 100; // an argument may have a megabyte
    if (++m_count <= mostShown) {
        m_shown.append(text.length() > longest ? text.substr(0, longest) + "..." : text);
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
    const psString indent = "            ";
    psString text = " Note     : " + psText(m_count) +
                    (m_count == 1 ? " setting was" : " settings were") +
                    " rejected or ignored, for the reasons above:\n";
    for (const psString& line : m_shown) {
        text << indent << line << "\n";
    }
    if (m_count > mostShown) {
        text << indent << "and " << m_count - mostShown << " more\n";
    }
    return text;
}
