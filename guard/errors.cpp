#include "errors.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace guard {

namespace {

// What clears the line in which the cursor waits; empty where there is none.
std::string blankLine() {
    winsize size = {};
    if (!isatty(STDERR_FILENO) || ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0) {
        return "";
    }
    const int usual = 80;
    const auto columns = static_cast<std::size_t>(size.ws_col > 1 ? size.ws_col : usual);
    std::string line(columns + 1, ' ');
    line.front() = line.back() = '\r';
    return line;
}

void writeAll(const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t n = write(STDERR_FILENO, text.data() + written, text.size() - written);
        if (n < 0 && errno != EINTR) {
            return; // nobody reads it
        }
        written += n > 0 ? static_cast<std::size_t>(n) : 0;
    }
}

} // namespace

void writeErrors(const std::string& text) {
    static bool isMidLine = false; // of a text before
    if (text.empty()) {
        return;
    }
    writeAll(isMidLine ? text : blankLine() + text);
    isMidLine = text.back() != '\n';
}

} // namespace guard
