// What a run says of itself so that its figures are not misread: which library, which features,
// what of the settings did not count, how quiet the machine was.
#include "session.h"

namespace {

class Closing : public SystemTest {
protected:
    // The log between the last test and the summary.
    static std::string closingLines(const std::string& output) {
        const size_t end = output.find(" PS Summary\n");
        const size_t begin = output.rfind(" Result   : ", end);
        EXPECT_NE(end, std::string::npos) << output;
        return output.substr(begin, end - begin);
    }
    std::string titleOf(const std::string& name, const std::string& item) const {
        for (const Texts& title : Table(text(name)).titles) {
            if (title.front() == item) {
                return title.back();
            }
        }
        return "";
    }
};

TEST_F(Closing, WhatWasRejectedOrIgnoredIsRepeated) {
    const Outcome outcome =
        runWell(quick + Texts{crc, "-dCodeLength=64k", "-cten", "-Zz", "-dNobody=1"});
    const std::string lines = closingLines(outcome.output);
    EXPECT_TRUE(hasOnce(
        lines, " Note     : 3 settings were rejected or ignored, for the reasons above:\n"
               "            -cten\n"
               "            -Zz\n"
               "            CodeLength: \"64k\" was not taken, it was 16384; 262144; *2\n"));
    const Outcome partly = runWell(quick + Texts{crc, "-TSSE42,NONE", "-inosuch.ini"});
    EXPECT_TRUE(hasOnce(closingLines(partly.output),
                        " Note     : 2 settings were rejected or ignored, "
                        "for the reasons above:\n"
                        "            -TSSE42,NONE\n"
                        "            -inosuch.ini\n"))
        << partly.output;
    EXPECT_TRUE(hasOnce(lines, "Nobody was set by -d key but no test asked for it\n"));
    EXPECT_EQ(timesIn(runWell(quick + Texts{crc}).output, "rejected or ignored"), 0);
}

TEST_F(Closing, ForeignLibrariesAndMisspeltDirectoriesAreNamed) {
    const std::string other = NTK_DEEDS_DIRECTORY;
    const struct {
        std::string searchPath;
        int foreign, missing;
    } cases[] = {{other + "x:" + other, 1, 1}, {NTK_LIBRARY_DIRECTORY, 0, 0}};
    for (const auto& c : cases) {
        const Outcome outcome =
            runWell(quick + Texts{crc}, {.environment = {"LD_LIBRARY_PATH=" + c.searchPath}});
        EXPECT_EQ(timesIn(outcome.output, "\n-- libntkdc.so.12 was loaded from " + other + "/"),
                  c.foreign)
            << c.searchPath << outcome.output;
        EXPECT_EQ(timesIn(outcome.output,
                          "\n-- LD_LIBRARY_PATH: none of the measured libraries was found in " +
                              other + "x\n"),
                  c.missing)
            << c.searchPath << outcome.output;
    }
}

TEST_F(Closing, ATableTellsTheFeaturesLeftEnabled) {
    runWell(quick + Texts{crc, "-TSSE42", "-rsse.csv"});
    runWell(quick + Texts{crc, "-TSSE2", "-rsse2.csv"});
    runWell(quick + Texts{crc, "-rall.csv"});
    EXPECT_TRUE(hasOnce(titleOf("sse.csv", "Library"), "; -T: "));
    EXPECT_TRUE(hasOnce(titleOf("sse.csv", "Library") + " ", " SSE42 "));
    EXPECT_EQ(timesIn(titleOf("sse2.csv", "Library") + " ", " SSE42 "), 0);
    EXPECT_TRUE(hasOnce(titleOf("sse2.csv", "Library") + " ", " SSE2 "));
    EXPECT_EQ(timesIn(titleOf("all.csv", "Library"), "-T"), 0);
}

// Measured once, then known at once and told in the title.
TEST_F(Closing, TheFrequencyIsKeptForTheBoot) {
    const Command how = {.environment = {"XDG_CACHE_HOME=" + path("cache")}};
    const Texts keys = {"-B", crc, "-dCodeLength=64", "-rtable.csv"};
    const auto toldFrequency = [this] {
        return timesIn(titleOf("table.csv", "Processor"), " GHz") > 0;
    };
    runWell(keys, how);
    EXPECT_FALSE(toldFrequency()); // the title was written before it was measured
    const std::string kept = text("cache/ntkperf/frequency");
    EXPECT_NE(kept, "");
    runWell(keys, how);
    EXPECT_TRUE(toldFrequency());
    EXPECT_EQ(text("cache/ntkperf/frequency"), kept);
    write("cache/ntkperf/frequency", "damaged");
    runWell(keys, how);
    EXPECT_FALSE(toldFrequency());
    const std::string again = text("cache/ntkperf/frequency"); // of the same boot, measured anew
    EXPECT_EQ(again.substr(0, again.find('=')), kept.substr(0, kept.find('=')));
}

} // namespace
