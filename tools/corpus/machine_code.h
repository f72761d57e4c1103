#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "rng.h"

namespace corpus {

// Appends machine code after a pattern: pairs of hexadecimal digits stand for bytes, blanks part
// them, and every small letter from g on is an operand that the call appendOperand(letter)
// encodes at the end of the same text.
void appendCode(std::string_view pattern, const std::function<void(char)>& appendOperand,
                std::string& out);

// The code of the last statements. A compiler that meets like statements makes like code of them.
class RecentStatements {
public:
    explicit RecentStatements(std::size_t capacity) : m_capacity(capacity) {}

    // Remembers a statement and forgets the oldest one when there are too many.
    void add(std::string code);

    // Appends a run of up to maxStatements remembered ones; does nothing when there are none.
    void repeat(std::uint32_t maxStatements, Random& random, std::string& out) const;

private:
    std::size_t m_capacity;
    std::deque<std::string> m_codes;
};

} // namespace corpus
