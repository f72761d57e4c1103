#include "psreportformat.h"

#include <cstdlib>
#include <ctime>

#include <gtest/gtest.h>

TEST(ReportFormat, TimesAreTexts) {
    const std::pair<double, const char*> cases[] = {
        {0, "00:00:00"},
        {59.9, "00:00:59"},
        {3725, "01:02:05"},
        {359999, "99:59:59"},
        {-5, "00:00:00"},
        {360000, "UNKNOWN (Very large value)"},
        {1e18, "UNKNOWN (Very large value)"},
    };
    for (const auto& [seconds, text] : cases) {
        EXPECT_STREQ(psReportFormat::getTimeStr(seconds).c_str(), text) << seconds;
    }
    const time_t now = time(nullptr);
    EXPECT_EQ(psReportFormat::getDateStr(now).c_str() + std::string("\n"), ctime(&now));
}

TEST(ReportFormat, ProcessorIsDescribedByWhatIsKnown) {
    const struct {
        const char* brand;
        int processors, freqMHz, cacheBytes;
        const char* text;
    } cases[] = {
        {"NAME", 2, 2400, 272629760, "NAME, x2, 2.40 GHz, Max cache size 266240 K"},
        {"NAME", 1, 999, 2048, "NAME, x1, 999 MHz, Max cache size 2 K"},
        {"NAME", 0, 1000, 0, "NAME, 1.00 GHz"},
        {"NAME", 2, 0, 1023, "NAME, x2"},
        {"", 0, 0, 0, "Unknown CPU"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(psProcessorText(c.brand, c.processors, c.freqMHz, c.cacheBytes).c_str(),
                     c.text);
    }
}
