#pragma once

#include <chrono>
#include <string>

namespace compare {

// One line on standard error that is written over again and gone in the end. Nothing where
// standard error is no terminal.
class ProgressLine {
public:
    explicit ProgressLine(bool isWanted);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() { erase(); }

    // Puts a line in its place, for good; empty where nothing is shown.
    std::string lastWords(const std::string& text) const;
    void show(const std::string& caseName, double share, double secondsLeft);
    void erase();

private:
    bool m_isWanted;
    int m_shown = 0; // columns
    std::chrono::steady_clock::time_point m_next = {};
};

} // namespace compare
