#include "psshowprogress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "psguarded.h"
#include "psprogress.h"
#include "psterminalline.h"

namespace {

bool isSameDevice(int a, int b) {
    struct stat first, second;
    return fstat(a, &first) == 0 && fstat(b, &second) == 0 && S_ISCHR(first.st_mode) &&
           S_ISCHR(second.st_mode) && first.st_rdev == second.st_rdev;
}

double secondsNow() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

void show(const psString& text) {
    text.empty() ? psClearTerminalLine() : psShowTerminalLine(text);
}

} // namespace

void psShowProgress() {
    const int watched = psTerminalOfGuard();
    const int terminal = watched < 0 ? STDERR_FILENO : watched;
    if (!isatty(terminal) || isSameDevice(terminal, STDOUT_FILENO)) {
        return;
    }
    psSetTerminalLine(terminal);
    static psProgress progress(secondsNow, show);
    psRegRecordWriter(progress);
}
