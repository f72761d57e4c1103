// Measuring in and out of the cache, with the real cache of this machine.
#include "session.h"

#include <climits>
#include <functional>

namespace {

const Texts cacheMode = quick + Texts{"-C", "-rtable.csv"};

class CacheMode : public SystemTest {
protected:
    std::string output(const Texts& keys) const {
        return runWell(cacheMode + keys + Texts{"-l" + directory()}, {.program = NTK_EXAMPLE_FILE})
            .output;
    }
};

// As the title tells it, 0 when it does not.
long long largestCacheBytes(const std::string& console) {
    const std::string label = "Max cache size ";
    const size_t at = console.find(label);
    return at == std::string::npos ? 0 : 1024 * std::stoll(console.substr(at + label.length()));
}

std::string tried(const char* mode, const std::string& what, long long bytes) {
    return std::string("      ") + mode + " try: cacheParm=" + what + " < " +
           std::to_string(bytes) + "\n";
}

struct Case {
    Texts keys;
    std::string firstTry;
    std::function<long long(const std::string&)> bytes; // that a cell's value stands for
};

TEST_F(CacheMode, ScalesTheDataIntoTheCacheAndOutOfIt) {
    const Case cases[] = {
        {{"-f=memcpy", "-i" + path("set.ini")}, // its own section holds, too
         "64 totalSize=128",
         [](const std::string& length) { return 2 * std::stoll(length); }},
        {{"-f=memmove", "-dSize=8x8"},
         "8x8 objectSize=72",
         [](const std::string& size) {
             const long long width = std::stoll(size);
             return width * (std::stoll(size.substr(size.find('x') + 1)) + 1);
         }},
    };
    write("set.ini", "[memcpy]\nLength=64\n");
    for (const Case& c : cases) {
        const std::string console = output(c.keys);
        const long long cache = largestCacheBytes(console);
        const auto part = [cache](double factor) { return static_cast<long long>(factor * cache); };
        if (cache == 0 || part(1.05) * 2 > INT_MAX / 2) {
            GTEST_SKIP() << "largest cache: " << cache << " bytes";
        }
        EXPECT_TRUE(hasOnce(console, tried("inCache", c.firstTry, part(0.1))));
        EXPECT_TRUE(hasOnce(console, tried("outofCache", c.firstTry, part(1.05))));
        const Table table(text("table.csv"));
        ASSERT_EQ(table.rows.size(), 2u);
        EXPECT_EQ(table.cell(table.rows[0], "Comment"), "inCache nLps=1");
        EXPECT_EQ(table.cell(table.rows[1], "Comment"), "outofCache nLps=1");
        const long long in = c.bytes(table.cell(table.rows[0], "Data"));
        EXPECT_TRUE(in >= part(0.1) && in <= part(0.9)) << in;
        const long long out = c.bytes(table.cell(table.rows[1], "Data"));
        EXPECT_TRUE(out >= part(1.05) && out <= 2 * part(1.05)) << out;
    }
}

TEST_F(CacheMode, WhatCannotBeMeasuredIsTold) {
    const std::string aTry = "      inCache try: cacheParm=0 totalSize=0 < ";
    const std::string failure = "memcpy: Length=0 \n-- Fail to allocate inCache data\n";
    const struct {
        Texts keys, said;
        const char* result;
    } cases[] = {
        {{"-f=memset"},
         {"-- Can't run In-Outof-Cache timing: no program support for function memset\n"},
         "UNDEFINED"},
        {{"-f=memcpy", "-dLength=0"}, {aTry, failure}, "DATAFAIL"},
        {{"-f=memcpy", "-dLength=0", "-LERR"}, {aTry, failure}, "DATAFAIL"}, // told late
    };
    for (const auto& c : cases) {
        const std::string console = output(c.keys + Texts{"-usum.csv"});
        for (const std::string& said : c.said) {
            EXPECT_TRUE(hasOnce(console, said));
        }
        auto records = summaryRecords(text("sum.csv"));
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records.begin()->second["Result"], c.result);
        EXPECT_TRUE(Table(text("table.csv")).rows.empty());
    }
}

} // namespace
