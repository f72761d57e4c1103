// Signals to the one who watches and to the program, and programs that wait.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "guarded.h"

namespace {

using namespace std::chrono_literals;

// False: not within a minute, which only something that hangs needs.
bool becomes(const std::function<bool()>& isSo) {
    for (int tries = 0; tries < 6000; ++tries) {
        if (isSo()) {
            return true;
        }
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

bool isAlive(pid_t process) {
    const std::string state = readFile("/proc/" + std::to_string(process) + "/stat");
    const size_t name = state.rfind(')');
    return name != std::string::npos && state[name + 2] != 'Z';
}

// Whether it has a handler for the signal; after the first one ntkperf has none.
bool catches(pid_t process, int signal) {
    const std::string status = readFile("/proc/" + std::to_string(process) + "/status");
    const size_t mask = status.find("SigCgt:");
    return mask != std::string::npos &&
           (std::stoull(status.substr(mask + 7), nullptr, 16) >> (signal - 1) & 1) != 0;
}

class GuardInterrupted : public GuardTest {
protected:
    ~GuardInterrupted() override {
        if (m_guard > 0) {
            kill(-m_guard, SIGKILL);
            waitpid(m_guard, nullptr, 0);
        }
    }
    // In a process group of its own; standard output and error go to files.
    void start(const std::string& deeds, const Texts& keys, const Texts& options,
               int ignoredSignal = 0) {
        ASSERT_EQ(pipe(m_input), 0);
        fflush(nullptr); // or it is written twice
        m_guard = fork();
        if (m_guard == 0) {
            setpgid(0, 0);
            if (ignoredSignal != 0) {
                signal(ignoredSignal, SIG_IGN);
            }
            setenv("DEEDS", deeds.c_str(), 1);
            dup2(m_input[0], STDIN_FILENO);
            ::close(m_input[1]);
            if (!freopen(path("output").c_str(), "w", stdout) ||
                !freopen(path("errors").c_str(), "w", stderr)) {
                _exit(1);
            }
            Texts words = Texts{NTK_GUARD_FILE} + options + Texts{NTK_DEEDS_FILE} + keys +
                          Texts{"-l" + directory()} + outputs;
            std::vector<char*> pointers;
            for (std::string& word : words) {
                pointers.push_back(word.data());
            }
            pointers.push_back(nullptr);
            execv(pointers.front(), pointers.data());
            _exit(1);
        }
        setpgid(m_guard, m_guard);
        ::close(m_input[0]);
    }
    bool says(const std::string& file, const std::string& words) const {
        return becomes([&] { return timesIn(text(file), words) > 0; });
    }
    pid_t program() const { // the one child
        const std::string process = std::to_string(m_guard);
        pid_t child = 0;
        std::ifstream("/proc/" + process + "/task/" + process + "/children") >> child;
        return child;
    }
    void type(const std::string& answers) const {
        ASSERT_EQ(::write(m_input[1], answers.data(), answers.size()),
                  static_cast<ssize_t>(answers.size()));
    }
    // The status as a shell has it.
    int status() {
        int state = -1;
        EXPECT_TRUE(becomes([&] { return waitpid(m_guard, &state, WNOHANG) == m_guard; }));
        m_guard = -1;
        return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
    }

    pid_t m_guard = -1;
    int m_input[2] = {-1, -1};
};

TEST_F(GuardInterrupted, ASignalToItEndsAProgramThatHangs) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        start("alpha@65536@call=hang", all, {});
        ASSERT_TRUE(says("log.txt", "alpha: Length=65536"));
        const pid_t child = program();
        // The program ends at the second signal: the first one waits for the call's end.
        ASSERT_TRUE(becomes([&] { return catches(child, signal); }));
        kill(m_guard, signal);
        ASSERT_TRUE(becomes([&] { return !catches(child, signal); }));
        EXPECT_TRUE(says("errors", "a second signal ends it at once\n"));
        kill(m_guard, signal);
        EXPECT_EQ(status(), 128 + signal);
        EXPECT_FALSE(isAlive(child));
        EXPECT_EQ(timesIn(text("errors"), "going on"), 0) << text("errors");
        EXPECT_TRUE(hasOnce(text("errors"), "in alpha in ntkFunctionCalls"));
        EXPECT_TRUE(hasOnce(text("log.txt"), " Function : "));
        std::remove(path("log.txt").c_str());
    }
}

// A signal from a terminal goes to all of a group; a second one would end the program at once.
TEST_F(GuardInterrupted, TheProgramGetsASignalOnceAndEndsInOrder) {
    for (const bool isForGroup : {false, true}) {
        start("beta@65536@call=await;gamma@65536@call=kill", all, {});
        ASSERT_TRUE(says("log.txt", "beta: Length=65536"));
        kill(isForGroup ? -m_guard : m_guard, SIGTERM);
        EXPECT_EQ(status(), 0);
        EXPECT_EQ(timesIn(text("errors"), "was ended"), 0) << text("errors");
        EXPECT_TRUE(hasOnce(text("log.txt"), " .Incomplete     : ended by SIGTERM\n"));
        EXPECT_EQ(timesIn(text("log.txt"), " Function : "), 2);
        EXPECT_NE(text("done.end"), "");
        std::remove(path("log.txt").c_str());
        std::remove(path("done.end").c_str());
    }
}

TEST_F(GuardInterrupted, TheProgramEndsWithIt) {
    start("alpha@65536@call=hang", all, {});
    ASSERT_TRUE(says("log.txt", "alpha: Length=65536"));
    const pid_t child = program();
    ASSERT_TRUE(isAlive(child));
    kill(m_guard, SIGKILL);
    EXPECT_EQ(status(), 128 + SIGKILL);
    EXPECT_TRUE(becomes([&] { return !isAlive(child); }));
}

// As nohup ignores SIGHUP: the end of the terminal ends neither the program nor its watcher's
// readiness to go on.
TEST_F(GuardInterrupted, WhatTheCallerIgnoresEndsNothing) {
    start("alpha@65536@call=hang", all, {"--limit", "3"}, SIGHUP);
    ASSERT_TRUE(says("log.txt", "alpha: Length=65536"));
    kill(-m_guard, SIGHUP);
    EXPECT_EQ(status(), 0);
    EXPECT_TRUE(hasOnce(text("errors"), "going on"));
    EXPECT_EQ(timesIn(text("table.csv"), ",OK,"), 9) << text("table.csv");
    EXPECT_EQ(timesIn(text("log.txt"), ".Incomplete"), 0) << text("log.txt");
}

// The table's place is taken while the first process hangs: its successors cannot open it.
TEST_F(GuardInterrupted, WhatCannotGoOnIsNoEndOfTheRun) {
    start("beta@65536@call=hang", all, {"--limit", "2"});
    ASSERT_TRUE(says("log.txt", "beta: Length=65536"));
    std::filesystem::rename(path("table.csv"), path("moved.csv"));
    std::filesystem::create_directory(path("table.csv"));
    EXPECT_EQ(status(), 125);
    EXPECT_TRUE(hasOnce(text("errors"), "it is not started again, and what is written is not all"));
    EXPECT_GE(timesIn(text("output"), "-- Can't open file " + path("table.csv") + " to write"), 1);
    EXPECT_EQ(timesIn(text("moved.csv"), ",OK,"), 3);
}

TEST_F(GuardInterrupted, WhoIsAskedMayTakeTime) {
    start("", {"-dMethod=Manual", "-dNumLoops=1", "-f-__", "-AParams"}, {"--limit", "1"});
    ASSERT_TRUE(says("output", "for Length ["));
    std::this_thread::sleep_for(2500ms); // beyond the limit
    type("4096;8192\n");
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(text("errors"), "");
    EXPECT_EQ(timesIn(text("table.csv"), ",8192,"), 4) << text("table.csv");
}

TEST_F(GuardInterrupted, AStoppedProgramDoesNotHang) {
    start("beta@65536@call=stop", all, {"--limit", "1"});
    ASSERT_TRUE(says("log.txt", "beta: Length=65536"));
    const pid_t child = program();
    ASSERT_TRUE(becomes([&] {
        const std::string state = readFile("/proc/" + std::to_string(child) + "/stat");
        return state[state.rfind(')') + 2] == 'T';
    }));
    std::this_thread::sleep_for(2500ms); // beyond the limit
    kill(child, SIGCONT);
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(text("errors"), "");
    EXPECT_EQ(timesIn(text("table.csv"), ",OK,"), 12) << text("table.csv");
}

} // namespace
