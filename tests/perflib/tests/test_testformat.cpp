#include "pstestformat.h"

#include <gtest/gtest.h>

TEST(TestFormat, Texts) {
    const struct {
        psString got;
        const char* want;
    } cases[] = {
        {psFormatClocks(0), ""},
        {psFormatClocks(-1), ""},
        {psFormatClocks(150.0), "150"},
        {psFormatClocks(99.94), "99.9"},
        {psFormatClocks(1.234), "1.23"},
        {psFormatClocks(0.1), "0.100"},
        {psFormatClocks(0.05), "0.0500"},
        {psFormatClocks(0.001), "0.00100"},
        {psFormatClocks(0.0001), "0.000100"},
        {psFormatClocks(0.00009), "9.000e-05"},
        {psFormatClocks(10000000), "10000000"},
        {psFormatClocks(2e8), "2.000e+08"},
        {sFormat("ab", 4), "  ab"},
        {sFormat("ab", -4), "ab  "},
        {sFormat("abcde", 4), "abcde"},
        {sFormat(2.0521, 6), "  2.05"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(c.got.c_str(), c.want);
    }
}
