#pragma once

#include <exception>

#include "psstring.h"

// An error inside a test. psTest::run turns it into result 10 and prints msg().
class psException : public std::exception {
public:
    // A harness error: msg() is "--NTK. Exception: " and the text (at most 255 characters of it,
    // also kept in info()).
    explicit psException(const psString& text);
    // A caught signal, or a plain text error: msg() is "--NTK. Signal: " and the text; info()
    // stays empty.
    explicit psException(const char* text);

    const char* msg() const { return m_msg; }
    const char* info() const { return m_info; }
    const char* what() const noexcept override { return m_msg; }

private:
    char m_msg[274] = {};
    char m_info[256] = {};
};
