#include <gtest/gtest.h>

#include "options.h"
#include "usage.h"
#include "words.h"

namespace compare {

namespace {

using Words = std::vector<std::string>;

TEST(SplitWords, AsAShellSplitsThem) {
    const std::pair<const char*, Words> cases[] = {
        {"", {}},
        {"  \t\n", {}},
        {"-a", {"-a"}},
        {" -a  -b\t-c ", {"-a", "-b", "-c"}},
        {"'-d a' \"-d b\"", {"-d a", "-d b"}},
        {"-d'a b'c", {"-da bc"}},
        {"-d=a\\ b", {"-d=a b"}},
        {"'a\\b' \"a\\b\" \"a\\\"b\" \"a\\\\b\" a\\\\b", {"a\\b", "a\\b", "a\"b", "a\\b", "a\\b"}},
        {"'a\"b' \"a'b\"", {"a\"b", "a'b"}},
        {"a '' b", {"a", "", "b"}},
        {"a\\", {"a\\"}},
        {"$HOME * `x`", {"$HOME", "*", "`x`"}}};
    for (const auto& [text, words] : cases) {
        EXPECT_EQ(splitWords(text), words) << text;
    }
    EXPECT_THROW(splitWords("-d'a b"), UsageError);
    EXPECT_THROW(splitWords("-d\"a b"), UsageError);
}

TEST(Options, TimesHaveUnitsAndPercentNeedsNone) {
    const std::pair<const char*, double> times[] = {
        {"90", 90}, {"90s", 90}, {"1.5m", 90}, {"2h", 7200}, {"0.25", 0.25}};
    for (const auto& [text, seconds] : times) {
        EXPECT_DOUBLE_EQ(parseSeconds(text, "--time"), seconds) << text;
    }
    EXPECT_DOUBLE_EQ(parsePercent("0.5%", "--precision"), 0.005);
    EXPECT_DOUBLE_EQ(parsePercent("2", "--precision"), 0.02);
    for (const char* text : {"", "s", "%", "x", "1x", "-1", "0", "inf", "nan", "1e999", "1 "}) {
        EXPECT_THROW(parseSeconds(text, "--time"), UsageError) << text;
        EXPECT_THROW(parsePercent(text, "--precision"), UsageError) << text;
    }
}

TEST(Options, KeysOfBothSidesComeFirst) {
    const Options options =
        parseOptions({"--base-keys", "-TSSE42 -dA=1", "--new-keys=-TAVX2", ".", "--base-keys",
                      "'-dB=x y'", "/nowhere", "--", "-fLZ4", "-s-"});
    EXPECT_EQ(options.keys.base, (Words{"-fLZ4", "-s-", "-TSSE42", "-dA=1", "-dB=x y"}));
    EXPECT_EQ(options.keys.changed, (Words{"-fLZ4", "-s-", "-TAVX2"}));
    EXPECT_EQ(options.directories.base, "own");
    EXPECT_EQ(options.directories.changed, "/nowhere");
}

TEST(Options, SettingsAreThoseOfTheReadmeUnlessGiven) {
    const Settings plain = parseOptions({"own", "own"}).settings;
    EXPECT_DOUBLE_EQ(plain.precision, 0.005);
    EXPECT_DOUBLE_EQ(plain.tolerance, 0.01);
    EXPECT_EQ(plain.secondsPerCase, 1);
    EXPECT_EQ(plain.budgetSeconds, 0);
    EXPECT_EQ(plain.patienceSeconds, 30);
    EXPECT_EQ(plain.cpu, -1);
    EXPECT_NE(plain.seed, parseOptions({"own", "own"}).settings.seed);
    const Settings given = parseOptions({"own", "-p2%", "own", "--tolerance=3", "-t", "4", "-b5m",
                                         "--patience", "6", "--seed=18446744073709551615"})
                               .settings;
    EXPECT_DOUBLE_EQ(given.precision, 0.02);
    EXPECT_DOUBLE_EQ(given.tolerance, 0.03);
    EXPECT_EQ(given.secondsPerCase, 4);
    EXPECT_EQ(given.budgetSeconds, 300);
    EXPECT_EQ(given.patienceSeconds, 6);
    EXPECT_EQ(given.seed, 18446744073709551615u);
}

} // namespace

} // namespace compare
