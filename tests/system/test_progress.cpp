// How far the run is, on the terminal of standard error.
#include <csignal>

#include "session.h"

namespace {

class Progress : public SystemTest {
protected:
    // The texts of the line, one after the other.
    static Texts shown(const std::string& errors) {
        Texts texts;
        for (size_t at = 0; (at = errors.find('\r', at)) != std::string::npos;) {
            const size_t end = errors.find('\r', ++at);
            const std::string text = errors.substr(at, end - at);
            const size_t last = text.find_last_not_of(' ');
            if (end != std::string::npos && last != std::string::npos) {
                texts.push_back(text.substr(0, last + 1));
            }
        }
        return texts;
    }
};

const Texts three = quick + Texts{"-f=__psHost", "-f=ntksCRC32C_8u", "-f=ntksCRC32_8u"};

TEST_F(Progress, IsShownInALineThatIsClearedAtTheEnd) {
    const Outcome outcome = run(three, {.errorsOnTerminal = true});
    EXPECT_EQ(shown(outcome.errors),
              (Texts{"1/3 __psHost", "2/3 ntksCRC32C_8u", "3/3 ntksCRC32_8u, about 1 s left"}))
        << outcome.errors;
    const std::string cleared = "\r" + std::string(32, ' ') + "\r";
    EXPECT_TRUE(outcome.errors.ends_with(cleared)) << outcome.errors;
    EXPECT_EQ(outcome.errors.find('\n'), std::string::npos);
    EXPECT_EQ(closingCount(outcome.output, ".Successes"), 3);
}

// Of the tests that follow -F; no wider than the terminal, whose columns are 60.
TEST_F(Progress, CountsTheTestsThatAreRunAndFitsTheTerminal) {
    write("own.ini", "[ntksCRC32_8u]\nCodeLength=9\n");
    const Texts own = {"-P", "-iown", "-p" + directory()};
    EXPECT_EQ(shown(run(three + own, {.errorsOnTerminal = true}).errors),
              Texts{"1/1 ntksCRC32_8u"});
    EXPECT_EQ(shown(run(three + Texts{"-FCRC32_8u"}, {.errorsOnTerminal = true}).errors),
              Texts{"1/1 ntksCRC32_8u"});
    for (const std::string& text :
         shown(run(quick + Texts{"-fLZ4Hash", "-fDict", "-dCodeFile=none"},
                   {.errorsOnTerminal = true})
                   .errors)) {
        EXPECT_LT(text.size(), 60u) << text;
    }
}

TEST_F(Progress, IsNotShownInAPipeOrBesideTheLog) {
    EXPECT_EQ(run(three).errors, "");
    const Outcome both = run(three, {.console = Console::terminal, .errorsOnTerminal = true});
    EXPECT_EQ(timesIn(both.output, "\r"), 0) << both.output;
    EXPECT_EQ(closingCount(both.output, ".Successes"), 3);
    const Outcome listed = run({"-e"}, {.errorsOnTerminal = true});
    EXPECT_EQ(listed.errors, "");
}

TEST_F(Progress, MakesRoomForLastWords) {
    const Outcome outcome =
        runWithDeeds("ntksCRC32_8u thread-segv", three, {.errorsOnTerminal = true});
    EXPECT_EQ(outcome.signal, SIGSEGV);
    EXPECT_TRUE(hasOnce(outcome.errors, std::string(32, ' ') + "\r--NTK. Signal: "));
}

} // namespace
