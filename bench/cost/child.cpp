#include "child.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr int cannotBegin = 127;

void become(const Child& child, std::vector<char*>& arguments) {
    const int nothing = open("/dev/null", O_RDWR);
    for (const int end : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(nothing, end);
    }
    if (child.directory.empty() || chdir(child.directory.c_str()) == 0) {
        execv(arguments[0], arguments.data());
    }
    _exit(cannotBegin);
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

Cost costOf(const Child& child) {
    std::vector<std::string> texts = {child.program.string()};
    texts.insert(texts.end(), child.arguments.begin(), child.arguments.end());
    std::vector<char*> arguments;
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    std::string setting = child.setting;
    if (!setting.empty()) {
        putenv(setting.data());
    }
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const pid_t process = fork();
    if (process == 0) {
        become(child, arguments);
    }
    if (!setting.empty()) {
        unsetenv(setting.substr(0, setting.find('=')).c_str());
    }
    int status = 0;
    rusage usage = {};
    if (process < 0 || wait4(process, &status, 0, &usage) != process ||
        (WIFEXITED(status) && WEXITSTATUS(status) == cannotBegin)) {
        throw std::runtime_error("cannot run " + texts[0] + ": build it first");
    }
    const std::chrono::duration<double> wall = Clock::now() - start;
    return {wall.count(), secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024,
            WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status)};
}
