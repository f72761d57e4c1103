#include <gtest/gtest.h>

#include "columns.h"

namespace common {

namespace {

TEST(Columns, LinesAreBrokenBetweenWords) {
    EXPECT_EQ(wrapped("ab cd ef", 5, ""), "ab cd\nef");
    EXPECT_EQ(wrapped("ab cd ef", 5, "  "), "ab cd\n  ef");
    EXPECT_EQ(wrapped("  ab cd", 5, "  "), "  ab\n  cd");
    EXPECT_EQ(wrapped("ab cd ef", 0, ""), "ab cd ef");
    EXPECT_EQ(wrapped("abcdefgh ij", 5, ""), "abcdefgh\nij") << "a word is never torn";
}

TEST(Columns, KeysCanBePastedIntoAShell) {
    EXPECT_EQ(keysText({"-fLZ4", "-dCodeFile=a;b", "-dX=it's", "-f=a"}),
              "-fLZ4 '-dCodeFile=a;b' '-dX=it'\\''s' -f=a");
}

TEST(Columns, TextsAreFittedByCharactersNotBytes) {
    const std::string umlauts = "\xc3\xa4\xc3\xb6\xc3\xbc"; // three characters
    EXPECT_EQ(columnsOf(umlauts), 3);
    EXPECT_EQ(padded(umlauts, 5), umlauts + "  ");
    EXPECT_EQ(padded("12", 4, true), "  12");
    EXPECT_EQ(shortened(umlauts + umlauts, 5), "\xc3\xa4...\xc3\xbc");
    EXPECT_EQ(shortened("CodeLength=16384", 16), "CodeLength=16384");
    EXPECT_EQ(shortened("CodeLength=16384", 10), "Cod...6384");
    EXPECT_EQ(shortened("CodeLength", 2), "..");
    EXPECT_EQ(cut(umlauts + umlauts, 5), "\xc3\xa4\xc3\xb6...");
    EXPECT_EQ(cut("CodeLength", 10), "CodeLength");
    EXPECT_EQ(cut("CodeLength", 2), "..");
    EXPECT_EQ(printable("a\x1b[2J\nb"), "a?[2J?b");
}

} // namespace

} // namespace common
