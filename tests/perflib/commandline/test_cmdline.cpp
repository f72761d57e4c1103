#include "pscmdline.h"

#include <iterator>

#include <gtest/gtest.h>

#include "files.h"

// The entries as "<key>:<argument>|", without the leading blank one.
static std::string textOf(const psCommandList& list) {
    std::string text;
    for (const psCommandKey& entry : list) {
        text += std::string(1, entry.key()) + ":" + entry.arg().c_str() + "|";
    }
    EXPECT_EQ(text.substr(0, 3), " :|");
    return text.substr(3);
}

TEST(CommandList, TextIsSplitIntoKeys) {
    const std::pair<const char*, const char*> cases[] = {
        {"-i file.ini -B", "i:file.ini|B:|"},
        {"/i file.ini -B", "i:file.ini|B:|"},
        {"-ifile.ini extra -B", "i:file.ini|B:|"},
        {"-f= name", "f:=name|"},
        {"-f+- name", "f:+-|"},
        {"-- x", "-:x|"},
        {"- x", ""},
        {"stray -B", "B:|"},
        {"-f+ -B", "f:+|B:|"},
        {"-f - -B", "f:-|B:|"},
        {"-B;-r\r\n-f\tname", "B:|r:|f:name|"},
        {"-o \"a b\" -B", "o:a b|B:|"},
        {"\"-oa b\"", "o:a b|"},
        {"-o \"\" -B", "o:|B:|"},
        {"", ""},
    };
    for (const auto& [text, entries] : cases) {
        psCommandList list;
        list.setArgs(text);
        EXPECT_EQ(textOf(list), entries) << text;
    }
}

TEST(CommandList, WordsOfTheShellKeepTheirBlanks) {
    const char* const words[] = {"-o", "a b;c", "-B"};
    psCommandList list;
    list.setArgs(3, words);
    list.setArg('o', "second");
    EXPECT_EQ(textOf(list), "o:a b;c|B:|o:second|");
    psString arg = "untouched";
    EXPECT_TRUE(list.isKey('B'));
    EXPECT_FALSE(list.isKey('b'));
    EXPECT_FALSE(list.getArg('x', arg));
    EXPECT_STREQ(arg.c_str(), "untouched");
    EXPECT_TRUE(list.getArg('o', arg));
    EXPECT_STREQ(arg.c_str(), "a b;c");
    EXPECT_FALSE(list.insertArg("word", "next", list.end()));
    EXPECT_TRUE(list.insertArg("-n", "title", std::next(list.begin())));
    EXPECT_EQ(textOf(list), "n:title|o:a b;c|B:|o:second|");
}

TEST(CommandList, ArgumentFilesReplaceTheirKey) {
    using namespace std::string_literals;
    const std::string file = writeFile(testPath("arguments"), "-fone -t\ntwo\r\n\"-oa b\" -@other");
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"-@" + file, "@:" + file + "|"}, // not looked through again
        {"-fa\0-fb"s, "f:a|f:b|"},
        {"\xEF\xBB\xBF-B\r-C", "B:|C:|"},
        {"\"-oa\nb\"", "o:a b|"},
    };
    for (const auto& [content, entries] : cases) {
        writeFile(file, content);
        psCommandList list;
        list.setArgs(("-B -@" + file + " -r").c_str());
        EXPECT_TRUE(list.expandFiles());
        EXPECT_EQ(textOf(list), "B:|" + entries + "r:|") << content.substr(0, 40);
    }
}

TEST(CfgFile, TheFirstLineUpToTheLimit) {
    using std::string;
    const string program = testPath("program.x"), file = testPath("program.cfg");
    const struct {
        string content, text;
    } cases[] = {
        {"-B -r\n-f", "-B -r"},
        {"", ""},
        {"\n-B", ""},
        {string(1023, 'a') + "\nb", string(1023, 'a')},
        {string(1024, 'a') + "b", string(1023, 'a')},
        {string(1 << 20, 'a'), string(1023, 'a')},
    };
    for (const auto& c : cases) {
        writeFile(file, c.content);
        psString text = "old", found;
        ASSERT_TRUE(psReadCfgFile(program.c_str(), text, found));
        EXPECT_EQ(text.c_str(), c.text);
        EXPECT_EQ(found.c_str(), file);
    }
    remove(file.c_str());
    psString text = "untouched", found;
    EXPECT_FALSE(psReadCfgFile(program.c_str(), text, found));
    EXPECT_STREQ(text.c_str(), "untouched");
}
