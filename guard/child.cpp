#include "child.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <system_error>
#include <utility>

#include "progresswords.h"

namespace guard {

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// Above those of the standard files, one of which may have been closed.
File aboveStandard(int number) {
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(number);
    if (moved < 0) {
        fail("cannot open a file for a process");
    }
    return File(moved);
}

// -1: there is no such file.
void setVariable(const char* name, int file) {
    if (file < 0) {
        unsetenv(name);
        return;
    }
    fcntl(file, F_SETFD, 0); // it goes on to the program
    setenv(name, std::to_string(file).c_str(), 1);
}

// In the new process; returns only when the program cannot be started.
void becomeProgram(const std::vector<std::string>& words, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) { // it has gone before
        _exit(EXIT_FAILURE);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    std::vector<char*> pointers;
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str()));
    }
    pointers.push_back(nullptr);
    execvp(pointers.front(), pointers.data());
}

// prepare: what the new process does before it becomes the program.
pid_t start(const std::vector<std::string>& words, const std::function<void()>& prepare) {
    Pipe failure; // says why, when the program cannot be started
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0) {
        fail("cannot start a process");
    }
    if (process == 0) {
        prepare();
        becomeProgram(words, parent);
        const int reason = errno;
        _exit(write(failure.writer.number(), &reason, sizeof reason) < 0 ? 1 : 0);
    }
    failure.writer.close();
    int reason = 0;
    if (read(failure.reader.number(), &reason, sizeof reason) > 0) {
        waitpid(process, nullptr, 0);
        errno = reason;
        fail("cannot start " + words.front());
    }
    return process;
}

} // namespace

File& File::operator=(File&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
}

void File::close() {
    if (m_number >= 0) {
        ::close(release());
    }
}

int File::release() {
    return std::exchange(m_number, -1);
}

Pipe::Pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        fail("cannot open a pipe");
    }
    reader = aboveStandard(ends[0]);
    writer = aboveStandard(ends[1]);
}

File fileOf(const std::string& text) {
    File file = aboveStandard(memfd_create("progress", MFD_CLOEXEC));
    if (write(file.number(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        fail("no room for what the next process has to know");
    }
    lseek(file.number(), 0, SEEK_SET);
    return file;
}

Child startProgram(const std::vector<std::string>& words, const std::string* past) {
    Child child;
    child.progress = fileOf("");
    const File pastFile = past ? fileOf(*past) : File();
    const File terminal = isatty(STDERR_FILENO) ? aboveStandard(dup(STDERR_FILENO)) : File();
    child.process = start(words, [&] {
        dup2(child.errors.writer.number(), STDERR_FILENO);
        setVariable(progress::fileVariable, child.progress.number());
        setVariable(progress::pastVariable, pastFile.number());
        setVariable(progress::terminalVariable, terminal.number());
    });
    child.errors.writer.close();
    return child;
}

std::string errorsOf(const std::vector<std::string>& words,
                     const std::vector<std::string>& environment) {
    Pipe errors;
    const File nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
    const pid_t process = start(words, [&] {
        dup2(nothing.number(), STDIN_FILENO);
        dup2(nothing.number(), STDOUT_FILENO);
        dup2(errors.writer.number(), STDERR_FILENO);
        for (const std::string& variable : environment) {
            putenv(const_cast<char*>(variable.c_str()));
        }
    });
    errors.writer.close();
    std::string text;
    char block[4096];
    for (ssize_t n; (n = read(errors.reader.number(), block, sizeof block)) > 0;) {
        text.append(block, static_cast<size_t>(n));
    }
    waitpid(process, nullptr, 0);
    return text;
}

} // namespace guard
