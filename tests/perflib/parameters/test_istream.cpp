#include "psistream.h"

#include <pty.h>
#include <signal.h>
#include <unistd.h>

#include <string>

#include <gtest/gtest.h>

#include "captured.h"
#include "psexcept.h"
#include "psinterruption.h"
#include "psstepiterator.h"

namespace {

// An input that asks on a console which says these bytes; not a terminal.
struct Asking : psIStream {
    explicit Asking(const std::string& answers)
        : console(fopen(writeFile(testPath("answers.txt"), answers).c_str(), "r")) {
        setIStream(console);
        setAsking(true);
    }
    ~Asking() { fclose(console); }
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

    FILE* const console;
};

// Ends the process: 0 when a question on a terminal takes notice of Ctrl-C from just before it.
[[noreturn]] void askAfterCtrlC() {
    alarm(10); // or it waits for an answer
    psInterruption::watch();
    int master, terminal;
    if (openpty(&master, &terminal, nullptr, nullptr, nullptr) != 0) {
        _exit(2);
    }
    psIStream in;
    in.setIStream(fdopen(terminal, "r+"));
    in.setAsking(true);
    raise(SIGINT);
    try {
        psString value;
        in.read("Len", "How long", "16", value);
    } catch (const psException&) {
        _exit(0);
    }
    _exit(1);
}

std::string iniFile(const std::string& text) {
    return writeFile(testPath("settings.ini"), text);
}

// The source as a letter, then the value.
std::string readFrom(psIStream& in, const char* name, const char* prompt = "How long") {
    psString value = "untouched";
    const psIStream::Source source = in.read(name, prompt, "16; 32", value);
    return "-psc"[source] + std::string(value.c_str());
}

} // namespace

TEST(IStream, SourcesHaveTheirPriority) {
    const Captured output;
    const struct {
        const char* name;
        bool preset, settings;
        const char* answers; // null: nothing is asked
        const char* expected;
    } cases[] = {
        {"Len", true, true, "1\n", "ppreset"},   {"Len", false, true, "1\n", "sfile"},
        {"Len", false, false, "1\n", "c1"},      {"Len", false, false, "\n", "-untouched"},
        {"Len", false, false, "", "-untouched"}, {"Len", false, false, nullptr, "-untouched"},
        {"len", true, true, "1\n", "c1"}, // names are compared exactly
        {"Bare", false, true, "1\n", "c1"},      {"Empty", false, true, "1\n", "s"},
        {"", true, true, "1\n", "-untouched"},
    };
    for (const auto& c : cases) {
        Asking in(c.answers ? c.answers : "");
        in.setIStream(c.answers ? in.console : nullptr);
        if (c.preset) {
            in.preset("Len", "earlier");
            in.preset("Len", "preset");
        }
        if (c.settings) {
            const std::string name = iniFile("[Perf System]\nLen=file\nBare\nEmpty=\n[f]\nlen=1\n");
            EXPECT_TRUE(in.setIniFile(name.c_str(), false));
        }
        EXPECT_EQ(readFrom(in, c.name), c.expected) << c.name << c.preset << c.settings;
    }
}

TEST(IStream, AnInterruptionJustBeforeAQuestionIsNotSleptOver) {
    const Captured output;
    EXPECT_EXIT(askAfterCtrlC(), testing::ExitedWithCode(0), "");
}

TEST(IStream, SectionsOfTheSettingsFile) {
    psIStream in;
    EXPECT_FALSE(in.setIniFile(testPath("absent.ini").c_str(), false));
    EXPECT_FALSE(in.sectionExist(psIStream::commonSection));
    ASSERT_TRUE(in.setIniFile(iniFile("[Perf System]\nLen=1\n[f]\nLen=2\n[g]\n").c_str(), false));
    const struct {
        const char* section;
        bool exists;
        const char* value;
    } cases[] = {{"f", true, "s2"},
                 {"g", true, "-untouched"},
                 {"h", false, "-untouched"},
                 {psIStream::commonSection, true, "s1"}};
    for (const auto& c : cases) {
        in.setSection(c.section);
        EXPECT_EQ(in.sectionExist(c.section), c.exists) << c.section;
        EXPECT_EQ(readFrom(in, "Len"), c.value) << c.section;
    }
    EXPECT_TRUE(in.closeIniFile());
    EXPECT_EQ(readFrom(in, "Len"), "-untouched");
}

TEST(IStream, QuestionsAreWorded) {
    const Captured output(PS_OUT_ERR);
    Asking in("\n  64 \r\n" + std::string(1 << 20, '7') + "\n 5");
    in.setAsking(false);
    EXPECT_EQ(readFrom(in, "A"), "-untouched");
    in.setAsking(true);
    EXPECT_EQ(readFrom(in, "A", "for Len"), "-untouched");
    EXPECT_EQ(readFrom(in, "B"), "c64");
    EXPECT_EQ(readFrom(in, "C").length(), 1u + (1 << 20));
    EXPECT_EQ(readFrom(in, "D"), "c5"); // a last line without its end
    const std::string before = output.text();
    EXPECT_EQ(before.substr(0, 47), "for Len [16; 32]: \nHow long [16; 32]: 64\nHow lo");
    EXPECT_TRUE(in.isAsking());
    EXPECT_EQ(readFrom(in, "E"), "-untouched");
    EXPECT_EQ(readFrom(in, "F"), "-untouched");
    EXPECT_FALSE(in.isAsking());
    EXPECT_EQ(output.text().substr(before.length()),
              "How long [16; 32]: \n"
              "-- The console input has ended, defaults are taken from here on\n");
}

// What never ends must not hold the run.
TEST(IStream, BadAnswersAreAskedAgainTenTimes) {
    const Captured output;
    psStepIterator<int> length(8, "Len");
    Asking patient("x\nx\nx\nx\nx\nx\nx\nx\nx\n8\n");
    EXPECT_TRUE(length.fromIStream(patient));
    Asking junk("x\nx\nx\nx\nx\nx\nx\nx\nx\nx\n16\n");
    EXPECT_FALSE(length.fromIStream(junk));
    EXPECT_TRUE(output.text().ends_with("-- 10 answers were rejected; keeping Len = 8\n"));
}

// What is typed into a terminal is on its screen already, but in no log.
TEST(IStream, ALogShowsWhatWasTyped) {
    const Captured log;
    const std::string screen = testPath("screen");
    const int keyboard = posix_openpt(O_RDWR | O_NOCTTY);
    if (keyboard < 0 || grantpt(keyboard) != 0 || unlockpt(keyboard) != 0) {
        GTEST_SKIP() << "this machine has no pseudo-terminals";
    }
    FILE* const terminal = fopen(ptsname(keyboard), "r");
    ASSERT_TRUE(terminal);
    ASSERT_EQ(write(keyboard, "77\n", 3), 3);
    {
        const StdoutTo redirect(screen);
        g_ostrm.addConsole();
        psIStream in;
        in.setIStream(terminal);
        in.setAsking(true);
        EXPECT_EQ(readFrom(in, "Len"), "c77");
    }
    EXPECT_EQ(log.text(), "How long [16; 32]: 77\n");
    EXPECT_EQ(readFile(screen), "How long [16; 32]: ");
    fclose(terminal);
    close(keyboard);
}
