#include "psostream.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "captured.h"
#include "pstrace.h"

static const char* const fullDisk = "/dev/full";

TEST(OpenMode, TextFollowsTheFlags) {
    const std::pair<int, const char*> cases[] = {{1, "r"},  {0x102, "w"},  {0x106, "a"},
                                                 {9, "rb"}, {0x10a, "wb"}, {0x10e, "ab"}};
    for (const auto& [mode, text] : cases) {
        EXPECT_STREQ(psOpenModeText(mode).c_str(), text) << mode;
    }
}

TEST(Open, FailureIsReportedWithItsDirection) {
    const std::string directory = testPath("directory");
    mkdir(directory.c_str(), 0777);
    const struct {
        std::string name;
        int mode;
        std::string message;
    } cases[] = {
        {"/no such/file", PS_OPEN_READ, "-- Can't open file /no such/file to read\n"},
        {"/no such/file", PS_OPEN_WRITE, "-- Can't open file /no such/file to write\n"},
        {directory, PS_OPEN_READ, "-- Can't open file " + directory + " to read\n"},
        {directory, 0x106, "-- Can't open file " + directory + " to write\n"},
        {"", PS_OPEN_READ, "-- Can't open file. Wrong filename (NULL)  to read\n"},
        {"", 0x102, "-- Can't open file. Wrong filename (NULL)  to write\n"},
    };
    for (const auto& c : cases) {
        const Captured printed(PS_OUT_ERR);
        EXPECT_FALSE(io_stream(c.name.c_str(), c.mode, false).isOpen());
        EXPECT_EQ(printed.text(), "") << c.name;
        EXPECT_FALSE(io_stream(c.name.c_str(), c.mode).isOpen());
        EXPECT_EQ(printed.text(), c.message);
    }
    rmdir(directory.c_str());
}

TEST(InputStream, LinesOfAnyLengthAndContent) {
    using namespace std::string_literals;
    const std::string million(1 << 20, 'x');
    const std::string lines[] = {million, "", "with\0zero"s, "return\r", "no line end"};
    std::string text;
    for (const std::string& line : lines) {
        text += line + (line == lines[4] ? "" : "\n");
    }
    i_stream in(writeFile(testPath("a name with blanks"), text).c_str());
    psString line = "untouched";
    for (const std::string& expected : lines) {
        ASSERT_TRUE(in.getline(line));
        EXPECT_EQ(std::string(line.c_str(), size_t(line.length())), expected);
    }
    EXPECT_FALSE(in.getline(line));
    EXPECT_STREQ(line.c_str(), lines[4].c_str());
    EXPECT_FALSE(in.failed());

    char bytes[8] = {};
    i_stream whole(testPath("a name with blanks").c_str(), PS_OPEN_READ | PS_OPEN_BINARY);
    EXPECT_EQ(whole.read(bytes, 3), 3);
    EXPECT_STREQ(bytes, "xxx");
    i_stream missing("/no such/file", PS_OPEN_READ, false);
    EXPECT_EQ(missing.read(bytes, 3), 0);
    EXPECT_FALSE(missing.getline(line));
    EXPECT_TRUE(missing.failed());
}

TEST(OutputStream, ANamedFileWithoutAFileDropsText) {
    const std::string console = testPath("console");
    {
        const StdoutTo redirect(console);
        o_stream missing("/no such/file", 2, false);
        EXPECT_TRUE(missing.write("lost") && missing.writeWhole("lost") && missing.flush());
        o_stream stdoutStream;
        EXPECT_TRUE(stdoutStream.write("shown") && stdoutStream.flush());
    }
    EXPECT_EQ(readFile(console), "shown");
}

TEST(OutputStream, AFailedWholeLineLeavesNoPart) {
    std::signal(SIGXFSZ, SIG_IGN);
    const psString name = testPath("table.csv").c_str();
    o_stream stream(name);
    EXPECT_TRUE(stream.writeWhole("first line\n"));
    {
        const FileSizeLimit limit(20);
        EXPECT_FALSE(stream.writeWhole("a line too long for the disk\n"));
    }
    EXPECT_EQ(stream.failure(), EFBIG);
    EXPECT_TRUE(stream.writeWhole("dropped\n"));
    stream.close();
    EXPECT_EQ(readFile(name.c_str()), "first line\n");
}

// The reader of such a socket gets each write apart: a process that is killed between two would
// leave a part.
TEST(OutputStream, AWholeLineOfAnyLengthIsOneWrite) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
    const int saved = dup(STDOUT_FILENO);
    dup2(ends[0], STDOUT_FILENO);
    psString line;
    line.resize(50000, 'x');
    o_stream stream;
    const bool isWritten = stream.writeWhole(line);
    dup2(saved, STDOUT_FILENO);
    std::string got(60000, '\0');
    EXPECT_EQ(recv(ends[1], got.data(), got.size(), MSG_DONTWAIT), 50000);
    EXPECT_TRUE(isWritten);
    for (const int file : {saved, ends[0], ends[1]}) {
        close(file);
    }
}

// A second stream on the same standard output goes on where the last whole line ended.
TEST(OutputStream, AFailedWholeLineLeavesNoGapOnTheConsole) {
    std::signal(SIGXFSZ, SIG_IGN);
    const std::string console = testPath("console");
    {
        const StdoutTo redirect(console);
        o_stream table, text;
        {
            const FileSizeLimit limit(20);
            EXPECT_TRUE(text.write("first line\n"));
            EXPECT_FALSE(table.writeWhole("a line too long for the disk\n"));
        }
        EXPECT_TRUE(text.write(psString("zero\0byte\n", 10)) && text.flush());
    }
    EXPECT_EQ(readFile(console), std::string("first line\nzero\0byte\n", 21));
}

TEST(TextStream, WritesKindsByBit) {
    const struct {
        int outLevel, kind;
        bool shown;
    } cases[] = {{1, 1, true},   {1, 2, false},  {3, 4, false}, {4, 8, false},
                 {12, 8, true},  {7, 2, true},   {15, 8, true}, {39, 32, true},
                 {39, 8, false}, {71, 64, true}, {0, 1, false}};
    for (const auto& c : cases) {
        const Captured printed(c.outLevel);
        const int before = g_ostrm.msgLevel();
        g_ostrm << MessageLevel(c.kind) << "x" << psString("y") << 7 << MessageLevel(-10);
        EXPECT_EQ(printed.text(), c.shown ? "xy7" : "") << c.outLevel << " " << c.kind;
        EXPECT_EQ(g_ostrm.msgLevel(), before);
    }
}

TEST(TextStream, LevelsNestAndEndAtError) {
    psOStream out;
    EXPECT_EQ(out.outLevel(), 1);
    EXPECT_EQ(out.msgLevel(), 4);
    out << PS_WARN << PS_DETAIL;
    EXPECT_EQ(out.msgLevel(), 8);
    out << PS_END;
    EXPECT_EQ(out.msgLevel(), 2);
    out << PS_END_FLUSH;
    EXPECT_EQ(out.msgLevel(), 4);
    out << PS_END;
    EXPECT_EQ(out.msgLevel(), 1);
}

TEST(TextStream, BeginMessageComparesNumbers) {
    psOStream out;
    out.setOutLevel(12);
    EXPECT_FALSE(out.beginMessage(PS_TRACE));
    EXPECT_EQ(out.msgLevel(), 4);
    EXPECT_TRUE(out.beginMessage(PS_ERR)); // although its bit is not in 12
    EXPECT_EQ(out.msgLevel(), 1);
    out.endMessage();
    EXPECT_EQ(out.msgLevel(), 4);
}

TEST(TextStream, OnlyTheFlushingEndFlushes) {
    const std::string name = testPath("log.txt");
    psOStream out;
    out.setOutLevel(7);
    ASSERT_TRUE(out.addStream(name.c_str(), false));
    out << PS_NORMAL << "one\n" << PS_END;
    EXPECT_EQ(readFile(name), "");
    out << PS_NORMAL << "two\n" << PS_END_FLUSH;
    EXPECT_EQ(readFile(name), "one\ntwo\n");
}

TEST(TextStream, ConsoleIsTheFirstStreamAndThereOnce) {
    const std::string console = testPath("console"), log = testPath("log.txt");
    {
        const StdoutTo redirect(console);
        psOStream out;
        out.setOutLevel(7);
        EXPECT_TRUE(out.addStream(log.c_str(), false));
        out.addConsole();
        out.addConsole();
        EXPECT_EQ(out.streamCount(), 2);
        out << "a line\n";
        EXPECT_EQ(readFile(console), "a line\n"); // at once, though nothing was flushed
    }
    EXPECT_EQ(readFile(log), "a line\n");
}

// Every stream that fails is named once on those that are left, and those lose nothing.
TEST(TextStream, FailingStreamsAreReportedOnceOnTheOthers) {
    const std::string log = testPath("log.txt");
    const StdoutTo closedConsole(fullDisk);
    psOStream out;
    out.setOutLevel(7);
    EXPECT_TRUE(out.addStream(fullDisk, false));
    out.addConsole();
    EXPECT_TRUE(out.addStream(log.c_str(), false));
    for (const char* text : {"begin", " end\n", "last\n"}) {
        out << PS_NORMAL << text << PS_END_FLUSH;
    }
    const std::string reason = std::string(": ") + strerror(ENOSPC) + "\n";
    EXPECT_EQ(readFile(log), "begin\n-- Can't write to console" + reason +
                                 "-- Can't write to file /dev/full" + reason + " end\nlast\n");
}

TEST(TextStream, TextLostAtTheEndIsReportedToo) {
    const std::string log = testPath("log.txt");
    psOStream out;
    out.addStream(fullDisk, false);
    out.addStream(log.c_str(), false);
    out << PS_ERR << "text\n" << PS_END;
    out.close();
    EXPECT_EQ(readFile(log),
              std::string("text\n-- Can't write to file /dev/full: ") + strerror(ENOSPC) + "\n");
}

TEST(Trace, LinesShowTheNesting) {
    const Captured printed(PS_OUT_TRACE);
    g_trace.traceIn("main");
    g_trace.traceIn("runTest");
    EXPECT_STREQ(g_trace.label().c_str(), "runTest");
    EXPECT_EQ(g_trace.depth(), 2);
    g_trace.traceOut("runTest");
    EXPECT_STREQ(g_trace.label().c_str(), "main");
    g_trace.traceOut("main");
    EXPECT_STREQ(g_trace.label().c_str(), "");
    EXPECT_EQ(printed.text(), "***** trace into   main\n"
                              "****** trace into   runTest\n"
                              "****** trace out of runTest\n"
                              "***** trace out of main\n");
}

TEST(Trace, OtherLevelsKeepTheLabelOnly) {
    const Captured printed(PS_OUT_INFO);
    const psTraceScope scope("quiet");
    EXPECT_STREQ(g_trace.label().c_str(), "quiet");
    EXPECT_EQ(printed.text(), "");
}

TEST(Trace, AnExceptionLeavesItsBracketsForTheCatcher) {
    try {
        const psTraceScope outer("outer");
        { const psTraceScope finished("finished"); }
        const psTraceScope inner("inner");
        throw 1;
    } catch (int) {
        EXPECT_STREQ(g_trace.label().c_str(), "inner");
        g_trace.unwind(0);
    }
    EXPECT_EQ(g_trace.depth(), 0);
    g_trace.traceOut("nothing open");
    EXPECT_EQ(g_trace.depth(), 0);
}
