#include "psfreqcache.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "files.h"
#include "variable.h"

TEST(FrequencyCache, LiesInTheUsersCacheDirectory) {
    const struct {
        const char *cache, *home, *path;
    } cases[] = {
        {"/var/c", "/home/u", "/var/c/ntkperf/frequency"},
        {nullptr, "/home/u", "/home/u/.cache/ntkperf/frequency"},
        {"", "/home/u", "/home/u/.cache/ntkperf/frequency"},
        {"relative", "/home/u", "/home/u/.cache/ntkperf/frequency"},
        {nullptr, nullptr, ""},
    };
    for (const auto& c : cases) {
        const Variable cache("XDG_CACHE_HOME", c.cache);
        const Variable home("HOME", c.home);
        EXPECT_STREQ(psFrequencyCachePath().c_str(), c.path);
    }
    EXPECT_GT(psFrequencyCacheKey().length(), 36); // the boot and a name
}

TEST(FrequencyCache, KeepsOneFrequencyForItsKey) {
    const psString path = testPath("cache/ntkperf/frequency").c_str();
    EXPECT_EQ(psReadFrequency(path, "boot cpu"), 0);
    psWriteFrequency(path, "boot cpu", 2400); // makes the directories
    EXPECT_EQ(psReadFrequency(path, "boot cpu"), 2400);
    EXPECT_EQ(psReadFrequency(path, "boot"), 0); // another boot, another processor
    EXPECT_EQ(psReadFrequency(path, "next cpu"), 0);
    psWriteFrequency(path, "next cpu", 3000);
    EXPECT_EQ(psReadFrequency(path, "next cpu"), 3000);
    psWriteFrequency(path, "next cpu", 0); // not a frequency
    EXPECT_EQ(psReadFrequency(path, "next cpu"), 3000);
    psWriteFrequency(path, "", 1); // the system does not tell the boot
    EXPECT_EQ(psReadFrequency(path, ""), 0);
    EXPECT_EQ(psReadFrequency(path, "next cpu"), 3000);
}

TEST(FrequencyCache, ADamagedOrUnwritableOneIsNone) {
    const std::string path = testPath("damaged");
    for (const char* text : {"", "\n", "key", "key=", "key=abc", "key=24x", "key=-5", "key=0",
                             "key=999999999", "key=99999999999999999999", "\xff\xfe"}) {
        std::ofstream(path, std::ios::binary) << text;
        EXPECT_EQ(psReadFrequency(path.c_str(), "key"), 0) << text;
    }
    std::filesystem::create_directory(testPath("aDirectory"));
    psWriteFrequency(testPath("aDirectory").c_str(), "key", 1);
    psWriteFrequency((path + "/below/a/file").c_str(), "key", 1);
    EXPECT_EQ(psReadFrequency(testPath("aDirectory").c_str(), "key"), 0);
    EXPECT_EQ(psReadFrequency((path + "/below/a/file").c_str(), "key"), 0);
}
