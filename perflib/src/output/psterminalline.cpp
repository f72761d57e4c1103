#include "psterminalline.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

namespace {
constexpr int mostColumns = 200;
constinit int g_file = -1;
constinit int g_shown = 0; // columns

void put(const char* text, int length) {
    // What a terminal does not take is gone: the next line follows.
    [[maybe_unused]] const ssize_t lost = write(g_file, text, static_cast<size_t>(length));
}

// One less than there are: at the last one some terminals begin a new line.
int columns() {
    constexpr int usual = 80;
    winsize size = {};
    const bool isKnown = ioctl(g_file, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return std::min(isKnown ? size.ws_col : usual, mostColumns) - 1;
}
} // namespace

void psSetTerminalLine(int file) {
    g_file = file;
    g_shown = 0;
}

void psShowTerminalLine(const psString& text) {
    if (g_file < 0) {
        return;
    }
    psString line = text.substr(0, std::min(text.length(), columns()));
    const int length = line.length();
    line.resize(std::max(length, g_shown)); // over what is there
    line = "\r" + line + "\r";
    put(line.c_str(), line.length());
    g_shown = length;
}

void psClearTerminalLine() {
    if (g_file < 0 || g_shown == 0) {
        return;
    }
    char blanks[mostColumns + 2];
    char* end = blanks;
    *end++ = '\r';
    end = std::fill_n(end, g_shown, ' ');
    *end++ = '\r';
    put(blanks, static_cast<int>(end - blanks));
    g_shown = 0;
}
