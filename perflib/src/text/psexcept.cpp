#include "psexcept.h"

#include <cstdio>

namespace {

constexpr int maxTextLength = 255;

} // namespace

// Fixed buffers, written with snprintf: a message must come out also when memory is short.
psException::psException(const psString& text) {
    std::snprintf(m_info, sizeof m_info, "%s", text.c_str());
    std::snprintf(m_msg, sizeof m_msg, "--NTK. Exception: %s", m_info);
}

psException::psException(const char* text) {
    std::snprintf(m_msg, sizeof m_msg, "--NTK. Signal: %.*s", maxTextLength, text ? text : "");
}
