#pragma once

#include <locale.h>

// Numbers and letters are those of the locale "C" while this lives, in this thread: the measured
// library shares the process, and one that calls setlocale() would put a comma into the numbers of
// a table whose cells end at commas. It keeps the locale that it chose for its own calls.
class psPlainLocale {
public:
    psPlainLocale() : m_before(uselocale(plain())) {}
    ~psPlainLocale() { uselocale(m_before); }
    psPlainLocale(const psPlainLocale&) = delete;
    psPlainLocale& operator=(const psPlainLocale&) = delete;

private:
    static locale_t plain() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t m_before;
};
