#include "process.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
constexpr double patienceSeconds = 120;
constexpr int lookEveryMs = 5;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// A file descriptor that the child does not inherit by itself.
class File {
public:
    explicit File(int number = -1) : m_number(number) {}
    File(File&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    File& operator=(File&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~File() { close(); }
    int number() const { return m_number; }
    void close() {
        if (m_number >= 0) {
            ::close(std::exchange(m_number, -1));
        }
    }

private:
    int m_number;
};

struct Pipe {
    Pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        reader = File(ends[0]);
        writer = File(ends[1]);
    }
    File reader, writer;
};

// Its far end passes line ends on as they are.
Pipe terminal(unsigned short columns) {
    Pipe pipe;
    const winsize size = {24, columns, 0, 0};
    termios modes = {};
    cfmakeraw(&modes);
    int ends[2];
    if (openpty(&ends[0], &ends[1], nullptr, &modes, &size) != 0) {
        throw std::runtime_error("no terminal");
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    pipe.reader = File(ends[0]);
    pipe.writer = File(ends[1]);
    return pipe;
}

// The text as a file to be read from its start.
File fileOf(const std::string& text) {
    File file(memfd_create("input", MFD_CLOEXEC));
    if (write(file.number(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("no room for the input of a program");
    }
    lseek(file.number(), 0, SEEK_SET);
    return file;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& added) {
    std::vector<std::string> all = added;
    for (char** own = environ; *own; ++own) {
        const std::string text = *own;
        const std::string name = text.substr(0, text.find('=') + 1);
        bool replaced = false;
        for (const std::string& other : added) {
            replaced = replaced || other.starts_with(name);
        }
        if (!replaced) {
            all.push_back(text);
        }
    }
    return all;
}

// The three standard files of the child and what this side keeps of them.
struct Files {
    explicit Files(const Command& command) {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addchdir_np(&actions, command.directory.c_str());
        if (command.input) {
            inputFile = fileOf(*command.input);
        }
        const File& in = command.input ? inputFile : input.reader;
        posix_spawn_file_actions_adddup2(&actions, in.number(), STDIN_FILENO);
        setConsole(command.console);
        if (command.errorsOnTerminal && command.console != Console::terminal) {
            errors = terminal(60);
        }
        const bool isSame = command.errorsOnTerminal && command.console == Console::terminal;
        const File& err = isSame ? output.writer : errors.writer;
        posix_spawn_file_actions_adddup2(&actions, err.number(), STDERR_FILENO);
    }
    ~Files() { posix_spawn_file_actions_destroy(&actions); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    void setConsole(Console console) {
        switch (console) {
        case Console::closed: posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO); return;
        case Console::fullDisk:
            posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/full", O_WRONLY, 0);
            return;
        case Console::brokenPipe: output.reader.close(); break;
        case Console::terminal: output = terminal(60); break;
        case Console::read: break;
        }
        posix_spawn_file_actions_adddup2(&actions, output.writer.number(), STDOUT_FILENO);
    }

    posix_spawn_file_actions_t actions;
    Pipe input, output, errors;
    File inputFile;
};

pid_t start(const Command& command, const Files& files) {
    std::vector<std::string> words = command.arguments;
    words.insert(words.begin(), command.program);
    std::vector<std::string> variables = environmentWith(command.environment);
    pid_t child = 0;
    const int error = posix_spawn(&child, command.program.c_str(), &files.actions, nullptr,
                                  pointersTo(words).data(), pointersTo(variables).data());
    if (error != 0) {
        throw std::runtime_error("cannot start " + command.program + ": " + strerror(error));
    }
    return child;
}

// Appends what there is to read; false at the end.
bool readSome(int file, std::string& text) {
    char buffer[65536];
    const ssize_t count = read(file, buffer, sizeof buffer);
    if (count > 0) {
        text.append(buffer, static_cast<size_t>(count));
    }
    return count > 0;
}

// Until both files are at their end, or patience is.
void collect(Files& files, Clock::time_point begin, pid_t child, Outcome& outcome) {
    for (;;) {
        outcome.leastNice = std::min(outcome.leastNice, getpriority(PRIO_PROCESS, child));
        pollfd both[] = {{files.output.reader.number(), POLLIN, 0},
                         {files.errors.reader.number(), POLLIN, 0}};
        if ((both[0].fd < 0 && both[1].fd < 0) || secondsSince(begin) > patienceSeconds ||
            poll(both, 2, lookEveryMs) < 0) {
            return;
        }
        if (both[0].revents && !readSome(both[0].fd, outcome.output)) {
            files.output.reader.close();
        }
        if (both[1].revents && !readSome(both[1].fd, outcome.errors)) {
            files.errors.reader.close();
        }
    }
}

} // namespace

Outcome runCommand(const Command& command) {
    Files files(command);
    Outcome outcome;
    const auto begin = Clock::now();
    const pid_t child = start(command, files);
    files.output.writer.close();
    files.errors.writer.close();
    collect(files, begin, child, outcome);
    if (secondsSince(begin) >= patienceSeconds) {
        kill(child, SIGKILL);
    }
    int state = 0;
    rusage usage = {};
    wait4(child, &state, 0, &usage);
    outcome.peakKiB = usage.ru_maxrss;
    outcome.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    outcome.signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0;
    return outcome;
}
