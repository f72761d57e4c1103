#include "terminal.h"

#include <unistd.h>

#include <cstdio>

#include "format.h"
#include "outputs.h"
#include "progresstext.h"

namespace compare {

ProgressLine::ProgressLine(bool isWanted) : m_isWanted(isWanted && isatty(STDERR_FILENO)) {}

void ProgressLine::show(const std::string& caseName, double share, double secondsLeft) {
    // Turns end a few hundred times a second: drawing each would disturb what is measured.
    constexpr auto pause = std::chrono::milliseconds(200);
    const auto now = std::chrono::steady_clock::now();
    if (!m_isWanted || now < m_next) {
        return;
    }
    m_next = now + pause;
    // A full last column would begin another line.
    const std::string line =
        progressText(caseName, share, secondsLeft, terminalWidth(STDERR_FILENO) - 1);
    std::fprintf(stderr, "\r%s", padded(line, m_shown).c_str());
    std::fflush(stderr);
    m_shown = columnsOf(line);
}

std::string ProgressLine::lastWords(const std::string& text) const {
    return m_isWanted ? joined({"\r", padded(text, terminalWidth(STDERR_FILENO) - 1), "\n"}, "")
                      : "";
}

void ProgressLine::erase() {
    if (m_shown > 0) {
        std::fprintf(stderr, "\r%s\r", padded("", m_shown).c_str());
        std::fflush(stderr);
    }
    m_shown = 0;
}

} // namespace compare
