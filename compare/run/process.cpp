#include "process.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace compare {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int ordersOfChild = 3;
constexpr int answersOfChild = 4;
constexpr double secondsBetweenAsking = 0.1; // whether a hurry has come
constexpr size_t longestLine = 64 << 10;     // the longest honest answer has a few hundred bytes
constexpr size_t lastWordsBytes = 2 << 10;   // of the output, to look for last lines in
constexpr size_t lastWordsLines = 5;
constexpr size_t lastWordsWidth = 200;

[[noreturn]] void throwSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::pair<Descriptor, Descriptor> makePipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC)) {
        throwSystemError("no pipe to a worker");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

// So that lines of two writers stay whole and the file can be emptied under them.
Descriptor makeOutputFile() {
    Descriptor file(memfd_create("output of a worker", MFD_CLOEXEC));
    if (file.get() < 0 || fcntl(file.get(), F_SETFL, O_APPEND)) {
        throwSystemError("no memory for the output of a worker");
    }
    return file;
}

std::vector<char*> pointersTo(const std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    for (const std::string& string : strings) {
        pointers.push_back(const_cast<char*>(string.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

// In the child, before it becomes the program.
[[noreturn]] void endWithMessage(const char* what, const char* which) {
    fprintf(stderr, "cannot %s %s: %s\n", what, which, strerror(errno));
    fflush(stderr);
    _exit(127);
}

void pinTo(int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(cpu, &set);
    if (sched_setaffinity(0, sizeof set, &set)) {
        endWithMessage("run on", "the processor");
    }
}

// Descriptors beyond those that are about to be given new meanings.
int outOfTheWay(int descriptor) {
    return fcntl(descriptor, F_DUPFD_CLOEXEC, 10);
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 1 << 30));
}

Clock::time_point afterSeconds(double seconds) {
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

bool isReadable(int descriptor, int milliseconds) {
    pollfd polled{descriptor, POLLIN, 0};
    return poll(&polled, 1, milliseconds) > 0;
}

std::string inWords(int status) {
    if (WIFSIGNALED(status)) {
        const char* name = sigabbrev_np(WTERMSIG(status));
        return name ? "killed by SIG" + std::string(name)
                    : "killed by signal " + std::to_string(WTERMSIG(status));
    }
    return "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
}

Descriptor::~Descriptor() {
    if (m_number >= 0) {
        close(m_number);
    }
}

Process::Process(const Command& command) : m_output(makeOutputFile()) {
    auto [ordersToRead, ordersToWrite] = makePipe();
    auto [answersToRead, answersToWrite] = makePipe();
    m_orders = std::move(ordersToWrite);
    m_answers = std::move(answersToRead);
    const pid_t parent = getpid();
    m_pid = fork();
    if (m_pid < 0) {
        throwSystemError("no process for a worker");
    }
    if (m_pid == 0) {
        becomeProgram(command, parent, ordersToRead.get(), answersToWrite.get());
    }
}

Process::~Process() {
    if (!hasEnded()) {
        kill(-m_pid, SIGKILL);
        kill(m_pid, SIGKILL); // it may not have its group yet
        while (waitpid(m_pid, &m_status, 0) < 0 && errno == EINTR) {
        }
    }
}

void Process::becomeProgram(const Command& command, pid_t parent, int ordersEnd,
                            int answersEnd) const {
    // Ctrl-C at the terminal is for the parent alone, which ends its workers, as does its death.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) { // it died before that
        _exit(127);
    }
    signal(SIGPIPE, SIG_DFL);

    const int read = outOfTheWay(ordersEnd);
    const int write = outOfTheWay(answersEnd);
    const int words = outOfTheWay(m_output.get());
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(words, STDOUT_FILENO);
    dup2(words, STDERR_FILENO);
    dup2(nothing, STDIN_FILENO);
    dup2(read, ordersOfChild);
    dup2(write, answersOfChild);
    if (command.cpu >= 0) {
        pinTo(command.cpu);
    }

    std::vector<std::string> argv{command.program};
    argv.insert(argv.end(), command.arguments.begin(), command.arguments.end());
    execve(command.program.c_str(), pointersTo(argv).data(),
           pointersTo(command.environment).data());
    endWithMessage("execute", command.program.c_str());
}

bool Process::send(const std::string& line) {
    const std::string whole = line + "\n"; // far shorter than a pipe holds: it never blocks
    return write(m_orders.get(), whole.data(), whole.size()) == static_cast<ssize_t>(whole.size());
}

void Process::readSome() {
    char bytes[4096];
    const ssize_t count = read(m_answers.get(), bytes, sizeof bytes);
    if (count > 0) {
        m_unreceived.append(bytes, static_cast<size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        m_isClosed = true;
    }
}

Received Process::receive(double patienceSeconds, const Hurry& hurry) {
    Clock::time_point deadline = afterSeconds(patienceSeconds);
    bool isHurried = false;
    for (size_t searched = 0;;) {
        const size_t end = m_unreceived.find('\n', searched);
        if (end != std::string::npos) {
            const std::string line = m_unreceived.substr(0, end);
            m_unreceived.erase(0, end + 1);
            return {Received::line, line};
        }
        searched = m_unreceived.size();
        if (searched > longestLine) {
            return {Received::tooLong, m_unreceived};
        }
        if (m_isClosed) {
            return {Received::closed, m_unreceived};
        }
        if (!isHurried && hurry.hasCome && hurry.hasCome()) {
            isHurried = true;
            deadline = std::min(deadline, afterSeconds(hurry.seconds));
        }
        const bool isAsked = hurry.hasCome && !isHurried;
        const Clock::time_point pause =
            isAsked ? std::min(deadline, afterSeconds(secondsBetweenAsking)) : deadline;
        if (isReadable(m_answers.get(), millisecondsUntil(pause))) {
            readSome();
        } else if (Clock::now() >= deadline) {
            return {isHurried ? Received::hurried : Received::late, m_unreceived};
        }
    }
}

bool Process::hasMore() {
    if (m_unreceived.empty() && !m_isClosed && isReadable(m_answers.get(), 0)) {
        readSome();
    }
    return !m_unreceived.empty();
}

bool Process::hasEnded() {
    if (m_pid > 0 && waitpid(m_pid, &m_status, WNOHANG) == m_pid) {
        m_pid = -1;
    }
    return m_pid < 0;
}

std::string Process::end(double patienceSeconds) {
    const Clock::time_point deadline = afterSeconds(patienceSeconds);
    while (!hasEnded()) {
        if (Clock::now() >= deadline) {
            return "";
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return inWords(m_status);
}

std::string Process::lastWords() const {
    struct stat file {};
    fstat(m_output.get(), &file);
    std::string text(std::min(lastWordsBytes, static_cast<size_t>(file.st_size)), '\0');
    const ssize_t count = pread(m_output.get(), text.data(), text.size(),
                                file.st_size - static_cast<off_t>(text.size()));
    text.resize(static_cast<size_t>(std::max<ssize_t>(count, 0)));

    std::vector<std::string> lines; // the last one first
    while (!text.empty() && lines.size() < lastWordsLines) {
        const size_t start = text.find_last_of('\n') + 1; // 0 when there is none
        const std::string line = text.substr(start);
        if (line.find_first_not_of(" \t\r") != std::string::npos) {
            lines.push_back(printable(line, lastWordsWidth));
        }
        text.resize(start ? start - 1 : 0);
    }
    std::string joined;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        joined += (joined.empty() ? "" : "\n") + *line;
    }
    return joined;
}

void Process::forgetOutput() {
    if (ftruncate(m_output.get(), 0) != 0) {
        throwSystemError("the output of a worker cannot be shortened");
    }
}

std::string printable(const std::string& text, size_t length) {
    std::string shown = text.substr(0, length);
    for (char& byte : shown) {
        if (byte < ' ' || byte > '~') {
            byte = '?';
        }
    }
    return text.size() > length ? shown + "..." : shown;
}

} // namespace compare
