#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace report {

// What came of reading files.
struct Reading {
    std::vector<Run> runs;
    std::vector<Comparison> comparisons;
    std::vector<std::string> notes;    // worth knowing, nothing is lost: "... was killed ..."
    std::vector<std::string> problems; // what could not be read, a sentence each
};

// Lines of a file that cannot be used: one sentence for all of them.
class LostLines {
public:
    void add(long long number, const std::string& why) {
        if (m_count++ == 0) {
            m_first = "line " + std::to_string(number) + ": " + why;
        }
    }
    // Empty: there is none. what: "row".
    std::string sentence(const std::string& file, const std::string& what) const {
        if (m_count < 2) {
            return m_count ? file + ", " + m_first + "; the " + what + " is left out" : "";
        }
        return file + ": " + std::to_string(m_count) + " " + what + "s are left out; the first, " +
               m_first;
    }

private:
    long long m_count = 0;
    std::string m_first;
};

} // namespace report
