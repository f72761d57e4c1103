// The session's own services: paths, banner, the signal file.

#include <gtest/gtest.h>

#include "../../patterns.h"
#include "captured.h"
#include "option_session.h"
#include "pscputick_gcc.h"
#include "variable.h"

TEST(Session, PathsOfFiles) {
    OptionSession::m_exePath = "bin/prog.exe";
    OptionSession::setInDir("in");
    OptionSession::setOutDir("/out");
    OptionSession::setDefName("");
    const std::pair<psString, const char*> cases[] = {
        {OptionSession::genDirName(""), "bin/"},
        {OptionSession::genDirName("a"), "bin/a/"},
        {OptionSession::genDirName("a/"), "bin/a/"},
        {OptionSession::genDirName("a\\"), "bin/a\\"},
        {OptionSession::genDirName("c:x"), "c:x/"},
        {OptionSession::genOutPath("", ".txt"), "/out/prog.txt"},
        {OptionSession::genOutPath("f", ".txt"), "/out/f.txt"},
        {OptionSession::genOutPath("../f", ".txt"), "/out/../f"},
        {OptionSession::genOutPath("/f", ".txt"), "/f"},
        {OptionSession::genInPath("f", ".ini"), "bin/in/f.ini"},
        {OptionSession::getInPath("f"), "bin/in/f"},
        {OptionSession::getInPath("bin/in/f"), "bin/in/f"},
        {OptionSession::getOutPath("\\f"), "\\f"},
        {OptionSession::getDirPath("f", ""), "bin/f"},
    };
    for (const auto& [got, want] : cases) {
        EXPECT_STREQ(got.c_str(), want);
    }
}

TEST(Session, BannerCentresItsTitle) {
    const std::string row = std::string(1, ' ').append(78, '*').append("\n");
    const struct {
        int length, before, behind;
    } cases[] = {{0, 38, 38}, {1, 37, 38}, {75, 0, 1}, {76, 0, 0}, {90, 0, 0}};
    for (const auto& c : cases) {
        const std::string title(c.length, 't');
        const std::string line =
            std::string(" *").append(c.before, ' ').append(title).append(c.behind, ' ');
        EXPECT_EQ(psSession::getEnterTitle(title.c_str()).c_str(), row + line + "*\n" + row);
    }
}

// The log is complete when the signal file appears.
TEST(Session, TheSignalFileComesLast) {
    struct Watched : psSession {
        void outputSignal() override {
            log = readFile(testPath("s.txt"));
            psSession::outputSignal();
        }
        std::string log;
    } session;
    std::string words[] = {testPath("prog"), "-e", "-os", "-gs"};
    char* argv[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data()};
    pSession = &session;
    EXPECT_EQ(session.run(4, argv), 0);
    pSession = nullptr;
    g_ostrm.close();
    psSession::m_exitLevel = 0;
    EXPECT_TRUE(has(session.log, "   #"));
    EXPECT_TRUE(fits(readFile(testPath("s.end")), "^00:[0-9]{2}:[0-9]{2}$"));
}

// Reading it takes seconds.
TEST(Session, AnswersWithoutMeasuringReadNoFrequency) {
    // No cache: a kept frequency would be read at once.
    const Variable cache("XDG_CACHE_HOME", nullptr);
    const Variable home("HOME", nullptr);
    const int frequencyBefore = psCpuTicker::knownFreq();
    for (const char* const key : {"-h", "-hh", "-hf", "-?", "-v", "-e", "-e+", "-e-"}) {
        const StdoutTo out(testPath("answer.txt"));
        OptionSession session;
        std::string words[] = {testPath("prog"), key};
        char* argv[] = {words[0].data(), words[1].data(), nullptr};
        EXPECT_EQ(session.run(2, argv), 0);
        g_ostrm.close();
    }
    EXPECT_EQ(psCpuTicker::knownFreq(), frequencyBefore);
}
