#include "pstestformat.h"

#include <gtest/gtest.h>

TEST(TestFormat, Texts) {
    const std::pair<psString, const char*> cases[] = {
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
    for (const auto& [got, want] : cases) {
        EXPECT_STREQ(got.c_str(), want);
    }
}

TEST(TestFormat, DisturbancesAreTold) {
    const struct {
        psResult result;
        long long batches;
        double spread;
        int switches;
        const char *cell, *line;
    } cases[] = {
        {PS_OK, 1, 0, 0, "", ""}, // a single span has no spread
        {PS_OK, 8, 0, 0, "0.0", ""},
        {PS_OK, 8, 0.05, 0, "5.0", ""},
        {PS_OK, 8, 0.0512, 0, "5.1", "spread=5.1%\n"},
        {PS_OK, 8, 0.01, 1, "1.0", ""},
        {PS_OK, 8, 0.06, 1, "6.0", "spread=6.0%, switched out 1 time\n"},
        {PS_ACCUR_WARN, 8, 1.5, 7, "150.0", "spread=150.0%, switched out 7 times\n"},
        {PS_FUNC_FAIL, 8, 1.5, 7, "", ""},
    };
    for (const auto& c : cases) {
        psMeasurement m;
        m.result = c.result;
        m.times.batches = c.batches;
        m.times.spread = c.spread;
        m.times.switches = c.switches;
        EXPECT_STREQ(psSpreadText(m).c_str(), c.cell) << c.spread;
        EXPECT_STREQ(psDisturbanceText(m).c_str(), c.line) << c.spread;
    }
}

TEST(TestFormat, ClosingNoteCountsWhatWasDisturbed) {
    const struct {
        psResult result;
        double spread;
        int switches;
    } records[] = {
        {PS_OK, 0.2, 0}, {PS_OK, 0.2, 3}, {PS_OK, 0.05, 1}, {PS_OK, 0, 0}, {PS_FAIL, 0.2, 1}};
    psRunFigures all;
    all.measured = 7;
    EXPECT_STREQ(psDisturbanceSummary(all).c_str(), "");
    for (const auto& r : records) {
        psMeasurement m;
        m.result = r.result;
        m.times.spread = r.spread;
        m.times.switches = r.switches;
        all.count(m);
    }
    EXPECT_TRUE(psDisturbanceSummary(all).startsWith(
        " Note     : 2 of 11 measurements have a spread above 5%, in 2 another process ran.\n"));
}

TEST(TestFormat, TimeInCallsIsToldWhereItIsKnown) {
    EXPECT_STREQ(psTimeInCallsText(1.25, 2).c_str(),
                 " Measured : 62.5% of the time was spent inside measured calls,\n"
                 "            1.250 of 2.000 seconds\n");
    EXPECT_STREQ(psTimeInCallsText(0, 2).c_str(), "");
    EXPECT_STREQ(psTimeInCallsText(0, 0).c_str(), "");
}
