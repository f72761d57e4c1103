#include "programs.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

void pinTo(int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(static_cast<unsigned>(cpu), &set);
    if (cpu >= 0 && sched_setaffinity(0, sizeof set, &set) != 0) {
        _exit(126);
    }
}

// Of a child: it ends with its parent, and by Ctrl-C, which its parent leaves to it.
void livePinned(int cpu) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    signal(SIGINT, SIG_DFL);
    pinTo(cpu);
}

// In the child.
[[noreturn]] void become(const Program& program, int errors) {
    livePinned(program.cpu);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    if (program.libraries.empty()) {
        unsetenv("LD_LIBRARY_PATH");
    } else {
        setenv("LD_LIBRARY_PATH", program.libraries.c_str(), 1);
    }
    std::vector<char*> words;
    for (const std::string& word : program.words) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    execv(words[0], words.data());
    dprintf(STDERR_FILENO, "cannot run %s: %s\n", words[0], std::strerror(errno));
    _exit(127);
}

std::string lastWords(int file) {
    std::string text;
    char block[4096];
    for (ssize_t n = 0; (n = read(file, block, sizeof block)) != 0;) {
        if (n < 0 && errno != EINTR) {
            break;
        }
        text.append(block, n > 0 ? static_cast<std::size_t>(n) : 0);
    }
    constexpr std::size_t most = 2000;
    return text.size() > most ? text.substr(text.size() - most) : text;
}

int statusOf(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

void runProgram(const Program& program, int mostStatus) {
    int errors[2];
    if (pipe2(errors, O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
    }
    const pid_t process = fork();
    if (process == 0) {
        become(program, errors[1]);
    }
    close(errors[1]);
    const std::string words = lastWords(errors[0]);
    close(errors[0]);
    if (process < 0) {
        throw std::runtime_error(std::string("no process: ") + std::strerror(errno));
    }
    const int status = statusOf(process);
    if (status == 128 + SIGINT) {
        throw std::runtime_error("interrupted; a file of results keeps what there is");
    }
    if (status > mostStatus) {
        throw std::runtime_error(program.words[0] + " ended with " + std::to_string(status) + ": " +
                                 words);
    }
}

Neighbour::Neighbour(int cpu) : m_process(fork()) {
    if (m_process == 0) {
        livePinned(cpu);
        for (;;) {
            asm volatile("");
        }
    }
    if (m_process < 0) {
        throw std::runtime_error(std::string("no process: ") + std::strerror(errno));
    }
}

Neighbour::~Neighbour() {
    kill(m_process, SIGKILL);
    statusOf(m_process);
}

int lastProcessor() {
    cpu_set_t set;
    CPU_ZERO(&set);
    sched_getaffinity(0, sizeof set, &set);
    for (int cpu = CPU_SETSIZE - 1; cpu > 0; --cpu) {
        if (CPU_ISSET(static_cast<unsigned>(cpu), &set)) {
            return cpu;
        }
    }
    return 0;
}
