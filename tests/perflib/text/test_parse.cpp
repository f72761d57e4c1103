#include "psparse.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The words in angle brackets.
std::string words(const char* text, const char* separators) {
    psStringList list;
    psString(text).parse(list, separators);
    std::string joined;
    for (const psString& word : list) {
        joined += std::string("<") + word.c_str() + ">";
    }
    return joined;
}

TEST(Parse, Words) {
    const struct {
        const char *text, *separators, *words;
    } cases[] = {
        {"a b  c", " ", "<a><b><c>"},
        {"16;1024; *2", "; ", "<16><1024><*2>"},
        {";;", ";", ""},
        {"", " ", ""},
        {"whole text", "", "<whole text>"},
        {"a \"b c\"", " ", "<a><\"b><c\">"},
        {" a \"b c\" d", " \"", "<a><b c><d>"},
        {"\"say \"\"hi\"\"\"x", " \"", "<say \"hi\"><x>"},
        {"\"\" a", " \"", "<><a>"},
        {"\"\"\"\"", " \"", "<\">"},
        {"\"open end ", " \"", "<open end >"},
        {"in\"side \"x", " \"", "<in\"side><x>"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(words(c.text, c.separators), c.words) << c.text;
    }
}

TEST(Parse, TheTerminatingZeroIsASeparator) {
    psParse parse("a,b");
    parse.initParse(",");
    EXPECT_FALSE(parse.isSeparator(0));
    EXPECT_TRUE(parse.isSeparator(1));
    EXPECT_TRUE(parse.isSeparator(3));
}

TEST(Parse, QuoteModeEndsWithTheNextStart) {
    psParse parse("\"a b\"");
    psString word;
    parse.initParse("\" ");
    EXPECT_TRUE(parse.nextWord(word));
    EXPECT_STREQ(word.c_str(), "a b");
    EXPECT_FALSE(parse.nextWord(word));
    EXPECT_STREQ(word.c_str(), "");
    parse.initParse(" ");
    EXPECT_TRUE(parse.nextWord(word));
    EXPECT_STREQ(word.c_str(), "\"a");
}

TEST(Parse, TwoOrThreeWords) {
    psString a("old"), b("old"), c("old");
    psString("one two three four").parse(a, b, c, " ");
    EXPECT_STREQ((a + "," + b + "," + c).c_str(), "one,two,three");
    psString("one").parse(a, b, c, " ");
    EXPECT_STREQ((a + "," + b + "," + c).c_str(), "one,,");
    a = "key = value";
    a.parse(a, b, " =");
    EXPECT_STREQ((a + "," + b).c_str(), "key,value");
}

} // namespace
