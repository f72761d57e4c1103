#include "machine_code.h"

#include <algorithm>
#include <utility>

namespace corpus {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

void appendCode(std::string_view pattern, const std::function<void(char)>& appendOperand,
                std::string& out) {
    int highDigit = -1;
    for (const char c : pattern) {
        const int digit = hexDigit(c);
        if (digit < 0) {
            if (c != ' ') {
                appendOperand(c);
            }
        } else if (highDigit < 0) {
            highDigit = digit;
        } else {
            out.push_back(static_cast<char>(highDigit * 16 + digit));
            highDigit = -1;
        }
    }
}

void RecentStatements::add(std::string code) {
    m_codes.push_back(std::move(code));
    if (m_codes.size() > m_capacity) {
        m_codes.pop_front();
    }
}

void RecentStatements::repeat(std::uint32_t maxStatements, Random& random, std::string& out) const {
    if (m_codes.empty()) {
        return;
    }
    const std::size_t first = random.below(static_cast<std::uint32_t>(m_codes.size()));
    const std::size_t last = std::min(m_codes.size(), first + 1 + random.below(maxStatements));
    for (std::size_t i = first; i < last; ++i) {
        out += m_codes[i];
    }
}

} // namespace corpus
