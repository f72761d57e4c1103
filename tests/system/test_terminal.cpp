// A person at a terminal.
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "session.h"

namespace {

class Terminal : public SystemTest {
protected:
    // Takes the defaults until the first test asks, and answers it.
    std::string talk(int terminal, const std::string& answer) const {
        std::string said;
        char block[4096];
        size_t answered = 0;
        for (ssize_t n; (n = read(terminal, block, sizeof block)) > 0;) {
            said.append(block, static_cast<size_t>(n));
            if (said.ends_with("]: ") && said.size() > answered) {
                answered = said.size();
                const bool isOfTest = timesIn(said, " Function : ") > 0;
                const std::string& word = isOfTest ? answer : "\n";
                EXPECT_EQ(::write(terminal, word.data(), word.size()),
                          static_cast<ssize_t>(word.size()));
            }
        }
        return said;
    }
};

TEST_F(Terminal, AnInterruptionAtAQuestionEndsTheRunInOrder) {
    int terminal = -1;
    fflush(nullptr); // or it is written twice
    const pid_t program = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (program == 0) {
        const std::string summary = "-u" + path("sum.csv");
        execl(NTK_PERF_FILE, NTK_PERF_FILE, "-f=ntksCRC32_8u", "-f=ntksAdler32_8u", "-AAll",
              "-dMethod=Manual", "-dNumLoops=1", summary.c_str(), nullptr);
        _exit(1);
    }
    const std::string said = talk(terminal, "\x03");
    int state = 0;
    waitpid(program, &state, 0);
    close(terminal);
    EXPECT_TRUE(WIFEXITED(state)) << said;
    EXPECT_TRUE(hasOnce(said, "Interrupted by SIGINT."));
    EXPECT_TRUE(hasOnce(said, " .Incomplete     : ended by SIGINT"));
    EXPECT_EQ(summaryRecords(text("sum.csv"))["ntksAdler32_8u"]["Result"], "EXCPTFAIL");
}

} // namespace
