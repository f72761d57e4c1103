#include "watch.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <system_error>

#include "errors.h"

namespace guard {

namespace {

// A signal from a terminal or a group's end goes to all of its processes; a process that hears it
// twice ends at once. So long it has to say that it has heard it.
constexpr double secondsToBeHeard = 0.25;

// A person who has pressed Ctrl-C wonders after so long whether it does anything.
constexpr double secondsToWonder = 2;

double now() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

// What there is to read, without waiting.
std::string available(int file) {
    std::string text;
    char block[65536];
    for (;;) {
        pollfd ready = {file, POLLIN, 0};
        if (file < 0 || poll(&ready, 1, 0) <= 0) {
            return text;
        }
        const ssize_t n = read(file, block, sizeof block);
        if (n <= 0) {
            return text;
        }
        text.append(block, static_cast<size_t>(n));
    }
}

std::string contentsOf(int file) {
    std::string text;
    char block[65536];
    for (ssize_t n; (n = pread(file, block, sizeof block, static_cast<off_t>(text.size()))) > 0;) {
        text.append(block, static_cast<size_t>(n));
    }
    return text;
}

// Calls take(line) for each complete line and leaves the rest.
template <class Take> void takeLines(std::string& text, Take take) {
    size_t begin = 0;
    for (size_t end; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        take(text.substr(begin, end - begin));
    }
    text.erase(0, begin);
}

// As nohup has it: a signal that is blocked would come all the same.
bool isIgnored(int signal) {
    struct sigaction action;
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

Signals::Signals() {
    signal(SIGCHLD, SIG_DFL); // ignored, it would take the ends of processes away
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGCHLD, SIGINT, SIGTERM, SIGHUP, SIGCONT}) {
        if (!isIgnored(signal)) { // nohup; the program ignores it, too
            sigaddset(&set, signal);
        }
    }
    sigprocmask(SIG_BLOCK, &set, nullptr);
    signal(SIGPIPE, SIG_IGN);
    m_file = File(signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    if (m_file.number() < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot hear signals");
    }
}

bool Signals::next(int& signal) const {
    signalfd_siginfo info;
    if (read(m_file.number(), &info, sizeof info) != sizeof info) {
        return false;
    }
    signal = static_cast<int>(info.ssi_signo);
    return true;
}

Ending Watch::untilEnded(Child& child) {
    m_progress.newProcess();
    m_said = m_unreadError = m_lastError = "";
    m_isStopped = m_isSilent = false;
    m_signalsHeard = 0;
    renewLimit();
    Ending ending;
    for (bool ended = false; !ended;) {
        wait(child);
        hearSignals(child);
        ended = hasEnded(child, ending);
        readProgress(child); // first: what it did before it wrote to standard error
        readErrors(child);
        if (!ended) {
            passOnSignal(child);
            tellOfWaiting();
            endSilentProcess(child);
        }
    }
    ending.silentSeconds = m_isSilent ? m_limitSeconds : 0;
    ending.lastError = m_lastError;
    m_progress.ended(ending);
    return ending;
}

void Watch::wait(const Child& child) {
    pollfd files[] = {{m_signals.file(), POLLIN, 0}, {child.errors.reader.number(), POLLIN, 0}};
    poll(files, std::size(files), millisecondsToWait());
    // A file that is at its end would end every later wait; the process's end is a signal.
    if (files[1].revents == POLLHUP) {
        poll(files, 1, millisecondsToWait());
    }
}

// Looking costs processor time that the program may be measuring with: seldom, but often enough
// that what hangs is found soon after its time.
int Watch::millisecondsToWait() const {
    double seconds = std::clamp(m_limitSeconds / 4.0, 0.1, 10.0);
    if (m_isToPassOn) {
        seconds = std::min(seconds, std::max(m_passOnAt - now(), 0.0));
    }
    if (m_isToTellOfWaiting) {
        seconds = std::min(seconds, std::max(m_tellOfWaitingAt - now(), 0.0));
    }
    return static_cast<int>(std::ceil(seconds * 1000));
}

void Watch::hearSignals(const Child& child) {
    for (int signal; m_signals.next(signal);) {
        if (signal == SIGCONT) { // this process stood still, and perhaps the other one, too
            kill(child.process, SIGCONT);
            renewLimit();
        } else if (signal != SIGCHLD) {
            m_isToTellOfWaiting = m_endingSignal == 0;
            m_tellOfWaitingAt = now() + secondsToWonder;
            m_endingSignal = signal;
            m_isToPassOn = true;
            m_passOnAt = now() + secondsToBeHeard;
        }
    }
}

bool Watch::hasEnded(const Child& child, Ending& ending) {
    int state = 0;
    while (waitpid(child.process, &state, WNOHANG | WUNTRACED | WCONTINUED) == child.process) {
        if (WIFEXITED(state) || WIFSIGNALED(state)) {
            ending.status = WIFEXITED(state) ? WEXITSTATUS(state) : 0;
            ending.signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0;
            return true;
        }
        m_isStopped = WIFSTOPPED(state);
        renewLimit();
    }
    return false;
}

void Watch::readProgress(const Child& child) {
    std::string text = contentsOf(child.progress.number());
    if (text != m_said) {
        m_said = std::move(text);
        m_progress.read(m_said);
        m_lastError = "";
        renewLimit();
    }
}

void Watch::readErrors(const Child& child) {
    const std::string text = available(child.errors.reader.number());
    writeErrors(text);
    m_unreadError += text;
    takeLines(m_unreadError, [this](const std::string& line) {
        if (!line.empty() && !line.starts_with("--NTK. ")) { // its own words are in its log
            m_lastError = line;
        }
    });
}

void Watch::passOnSignal(const Child& child) {
    if (m_progress.signalsHeard() > m_signalsHeard) {
        m_signalsHeard = m_progress.signalsHeard();
        m_isToPassOn = false;
    }
    if (m_isToPassOn && now() >= m_passOnAt) {
        m_isToPassOn = false;
        ++m_signalsHeard; // it will hear this one, and the next is another
        kill(child.process, m_endingSignal);
    }
}

void Watch::tellOfWaiting() {
    if (m_isToTellOfWaiting && now() >= m_tellOfWaitingAt) {
        m_isToTellOfWaiting = false;
        writeErrors("ntkguard: the program ends when the present call has ended; a second signal "
                    "ends it at once\n");
    }
}

// It may hold a lock, or a handler may lead it back: nothing but this is sure to end it.
void Watch::endSilentProcess(const Child& child) {
    if (m_isStopped || m_progress.isWaiting() || m_isSilent ||
        now() < m_silentSince + m_limitSeconds) {
        return;
    }
    m_isSilent = true;
    renewLimit(); // until its end is told
    kill(child.process, SIGKILL);
}

void Watch::renewLimit() {
    m_silentSince = now();
}

} // namespace guard
