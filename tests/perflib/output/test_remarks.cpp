#include "psremarks.h"

#include <string>

#include <gtest/gtest.h>

TEST(Remarks, AreRepeatedAtTheEndWithTheirCount) {
    psRemarks remarks;
    EXPECT_STREQ(remarks.closingText().c_str(), "");
    remarks.add("CodeLength = 64k (rejected)");
    EXPECT_STREQ(remarks.closingText().c_str(),
                 " Note     : 1 setting was rejected or ignored, for the "
                 "reasons above:\n"
                 "            CodeLength = 64k (rejected)\n");
    for (int i = 2; i <= 23; ++i) {
        remarks.add("another");
    }
    const psString text = remarks.closingText();
    EXPECT_TRUE(text.startsWith(" Note     : 23 settings were rejected or ignored, "))
        << text.c_str();
    EXPECT_TRUE(text.contains("another\n            and 3 more\n")) << text.c_str();
    psStringList lines;
    text.parse(lines, "\n");
    EXPECT_EQ(lines.count(), 1 + 20 + 1);
    remarks.clear();
    remarks.add(psString(std::string(1 << 20, 'x').c_str()));
    const psString cut = remarks.closingText();
    EXPECT_LT(cut.length(), 200);
    EXPECT_TRUE(cut.contains("xxx...\n")) << cut.c_str();
    remarks.clear();
    EXPECT_STREQ(remarks.closingText().c_str(), "");
}
