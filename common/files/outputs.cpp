#include "outputs.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "psatomicfile.h"

namespace common {

namespace {

// A file that grows beyond its limit is an error of the write, as a full disk is, not the end of
// the program with a half-written file left behind.
void ignoreFileSizeSignal() {
    std::signal(SIGXFSZ, SIG_IGN);
}

} // namespace

int terminalWidth(int descriptor) {
    winsize size = {};
    if (!isatty(descriptor) || ioctl(descriptor, TIOCGWINSZ, &size) != 0) {
        return 0;
    }
    return size.ws_col > 0 ? size.ws_col : 80;
}

std::string whyNotWritable(const std::string& file) {
    std::error_code error;
    const auto type = std::filesystem::status(file, error).type();
    using std::filesystem::file_type;
    if (type == file_type::fifo || type == file_type::character || type == file_type::block ||
        type == file_type::socket) {
        return "it is no regular file";
    }
    return psAtomicFile::canReplace(file.c_str()) ? "" : std::strerror(errno);
}

bool writeFile(const std::string& program, const std::string& file, const std::string& text) {
    ignoreFileSizeSignal();
    constexpr std::size_t piece = 1 << 20; // a psString has at most an int's length
    psAtomicFile replaced(file.c_str());
    for (std::size_t at = 0; at < text.size(); at += piece) {
        replaced.write(text.substr(at, piece).c_str());
    }
    if (replaced.commit()) {
        return true;
    }
    std::fprintf(stderr, "%s: cannot write %s: %s; what was there is unchanged\n", program.c_str(),
                 file.c_str(), std::strerror(replaced.failure()));
    return false;
}

bool print(const std::string& program, const std::string& text) {
    ignoreFileSizeSignal();
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
        std::fflush(stdout) == 0) {
        return true;
    }
    std::fprintf(stderr, "%s: cannot write to standard output: %s\n", program.c_str(),
                 std::strerror(errno));
    return false;
}

} // namespace common
