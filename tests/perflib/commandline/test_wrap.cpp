#include "pswrap.h"

#include <gtest/gtest.h>

TEST(Wrap, LinesAreBrokenAtBlanksUnderTheirText) {
    const struct {
        const char* text;
        int columns;
        const char* wrapped;
    } cases[] = {
        {"one two three\n", 0, "one two three\n"},
        {"one two three\nlast", 13, "one two three\nlast"},
        {"one two three\n", 12, "one two\n    three\n"},
        {"one two three", 7, "one two\nthree"}, // no room for an indentation
        {"    far in from the left\n", 18, "    far in from\n        the left\n"},
        {"-C = runs it (if that works)\n", 16, "-C = runs it (if\n     that works)\n"},
        {"ERR  : output errors & notes\n", 20, "ERR  : output errors\n       & notes\n"},
        {"it is far to the right: two words\n", 30, "it is far to the right: two\n    words\n"},
        {"a wordwiderthantheroom b c", 10, "a\n    wordwiderthantheroom\n    b c"},
        {"one trailing \nnext\n\n", 12, "one trailing \nnext\n\n"},
        {"", 10, ""},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(psWrapLines(c.text, c.columns).c_str(), c.wrapped) << c.columns;
    }
}
