#include "pswrap.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

int leadingBlanks(const psString& line) {
    int count = 0;
    while (line[count] == ' ') {
        ++count;
    }
    return count;
}

int hangingIndent(const psString& line, int columns) {
    const int widest = columns / 2; // farther in there is no room for words
    for (const char* const mark : {"= ", ": "}) {
        const int at = line.find(mark);
        if (at != psString::npos && at + 2 <= widest) {
            return at + 2;
        }
    }
    const int indent = leadingBlanks(line) + 4;
    return indent <= widest ? indent : 0;
}

// The blank at which a line is broken: the last one that leaves the line in its columns, or else
// the first one behind them. Those of the indentation do not count.
int breakPosition(const psString& line, int columns) {
    int best = psString::npos;
    for (int i = leadingBlanks(line); i < line.length(); ++i) {
        if (line[i] != ' ') {
            continue;
        }
        if (i > columns) {
            return best == psString::npos ? i : best;
        }
        best = i;
    }
    return best;
}

psString wrapLine(psString line, int columns) {
    psString indent;
    indent.resize(hangingIndent(line, columns));
    psString wrapped;
    while (line.length() > columns) {
        const int at = breakPosition(line, columns);
        const psString rest = at == psString::npos ? psString() : line.substr(at).trimmed();
        if (rest.empty()) {
            break;
        }
        wrapped += line.substr(0, at) + "\n";
        line = indent + rest;
    }
    return wrapped + line;
}

} // namespace

psString psWrapLines(const psString& text, int columns) {
    psString wrapped;
    int start = 0;
    for (int end; (end = text.find("\n", start)) != psString::npos; start = end + 1) {
        const psString line = text.substr(start, end - start);
        wrapped += (columns > 0 ? wrapLine(line, columns) : line) + "\n";
    }
    const psString last = text.substr(start);
    return wrapped + (columns > 0 ? wrapLine(last, columns) : last);
}

int psConsoleColumns() {
    constexpr int defaultColumns = 80;
    if (!isatty(STDOUT_FILENO)) {
        return 0;
    }
    winsize size = {};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : defaultColumns;
}
