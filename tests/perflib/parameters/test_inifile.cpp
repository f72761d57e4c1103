#include "psinifile.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "files.h"
#include "psdata.h"

class IniFile : public testing::Test {
protected:
    // What the file holds after a store has read the text, and been made to write it back.
    std::string rewritten(const std::string& text) const {
        writeFile(m_path, text);
        psIniFile ini;
        EXPECT_TRUE(ini.open(m_path.c_str(), true));
        ini.write("touch", "x");
        ini.eraseSection("touch");
        EXPECT_TRUE(ini.close());
        return readFile(m_path);
    }

    const std::string m_path = testPath("settings with blanks.ini");
};

TEST_F(IniFile, LinesAreReadAndWrittenBack) {
    using namespace std::string_literals;
    const std::string million(1 << 20, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"[Perf System]\nLen = 100 // bytes\n", "\n[Perf System]\nLen=100\t// bytes\n"},
        {"[a] // lost\n//lost\nx=// a // b \r\nbare // lost\nx=2//\n", "\n[a]\nx=2\nbare\n"},
        {"[a]\nx=1\t//  a // b \r\n", "\n[a]\nx=1\t// a // b\n"},
        {"[a]\nx=1\0y\n\0b"s, "\n[a]\nx=1 y\nb\n"},
        {"[a]\nx=1\n[b]\ny=2\n[a]\nz=3\n", "\n[a]\nx=1\nz=3\n\n[b]\ny=2\n"},
        {"[a]\nLen=1\nlen=2\nLen=3\n", "\n[a]\nLen=3\nlen=2\n"},
        {"[a]\nntksName\n \nk=\n", "\n[a]\nntksName\nk=\n"},
        {"early=1\n[a]\nx=a=b\n// x=2\n", "early=1\n\n[a]\nx=a=b\n"},
        {" \t text [ name ] more // [other]\n\tx\t=\t1\t", "\n[name]\nx=1\n"},
        {"[a]\nx]=[1\n[b\nc]\n", "\n[a]\nx]=[1\n[b\nc]\n"},
        {"[a]\r\n\r\nx = 1\r\ny\r\r\n", "\n[a]\nx=1\ny\n"},
        {"\xEF\xBB\xBFx=1\r[a]\ry=2", "x=1\n\n[a]\ny=2\n"},
        {"[a]\nx=" + million, "\n[a]\nx=" + million + "\n"},
        {"", ""},
    };
    for (const auto& [text, written] : cases) {
        EXPECT_EQ(rewritten(text), written) << text.substr(0, 60);
    }
}

// Where something stood in front of the mark, it is no mark but the beginning of a name.
TEST_F(IniFile, AMarkThatIsNoneStays) {
    using namespace std::string_literals;
    const std::string mark = "\xEF\xBB\xBF";
    for (const std::string& before : {"\0"s, "\0\0"s, " "s, "\n"s, mark, mark + mark, "\r"s}) {
        const std::string text = rewritten(before + mark + "x=1\n[a]\ny=2\n");
        EXPECT_TRUE(text.starts_with(mark + mark)) << text;
        EXPECT_TRUE(text.ends_with("x=1\n\n[a]\ny=2\n")) << text;
        EXPECT_EQ(rewritten(text), text);
    }
    EXPECT_EQ(rewritten(mark + "x=1\n"), "x=1\n");
}

// The cost of a line grew with the number of lines: these took longer than a test may.
TEST_F(IniFile, ManyLinesAreRead) {
    constexpr int count = 100000;
    std::string text;
    for (int i = 0; i < count; ++i) {
        const std::string name = std::to_string(i);
        text += "[s" + name + "]\nx = 1\n[a]\nkey" + name + " = " + name + "\n";
    }
    writeFile(m_path, text);
    psIniFile ini;
    ASSERT_TRUE(ini.open(m_path.c_str(), false));
    EXPECT_EQ(ini.sections().count(), count + 1);
    EXPECT_STREQ(ini.read("a", "key99999").c_str(), "99999");
}

TEST_F(IniFile, WritingAddsReplacesAndRemoves) {
    {
        psIniFile ini;
        remove(m_path.c_str());
        ASSERT_TRUE(ini.open(m_path.c_str(), true)); // a new file
        ini.write("first", "Len", "1", "bytes");
        ini.write("first", "Len", "2", "two\nlines");
        ini.write("first", "bare");
        ini.write("second");
        ini.write("third", "x", "1");
        ini.write("third", "y", "2");
        ini.deleteKey("third", "x");
        ini.write("fourth", "x", "1");
        ini.eraseSection("fourth");
        EXPECT_TRUE(ini.isModified());
        EXPECT_TRUE(ini.updateFile());
        EXPECT_FALSE(ini.isModified());
        ini.deleteKey("third", "absent");
        ini.eraseSection("absent");
        EXPECT_FALSE(ini.isModified());
        ini.deleteKey("third", "y");
    } // closes
    EXPECT_EQ(readFile(m_path), "\n[first]\nLen=2\t// two lines\nbare\n\n[second]\n\n[third]\n");
}

TEST_F(IniFile, ReplacingKeepsPermissionsAndLinks) {
    const std::string link = testPath("link.ini");
    writeFile(m_path, "");
    std::filesystem::create_symlink(m_path, link);
    chmod(m_path.c_str(), 0640);
    {
        psIniFile ini;
        ASSERT_TRUE(ini.open(link.c_str(), true));
        ini.write("a");
    }
    struct stat status;
    ASSERT_EQ(lstat(link.c_str(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    ASSERT_EQ(stat(link.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    EXPECT_EQ(readFile(m_path), "\n[a]\n");
    remove(m_path.c_str()); // a link to a file that is yet to be made
    psIniFile ini;
    ASSERT_TRUE(ini.open(link.c_str(), true));
    ini.write("b");
    EXPECT_TRUE(ini.close());
    EXPECT_EQ(readFile(m_path), "\n[b]\n");
}

TEST(DataList, SetReplacesAndKeepsTheOrder) {
    psDataList list;
    list.set("OS", "old");
    list.set("Start", "now");
    list.set("OS", "new");
    ASSERT_EQ(list.count(), 2);
    EXPECT_STREQ(list.front().value.c_str(), "new");
    EXPECT_STREQ(list.find("Start")->c_str(), "now");
    EXPECT_EQ(list.find("start"), nullptr);
    psString value = "untouched";
    EXPECT_FALSE(list.get("absent", value));
    EXPECT_STREQ(value.c_str(), "untouched");
    EXPECT_TRUE(list.get("OS", value));
    EXPECT_STREQ(value.c_str(), "new");
}
