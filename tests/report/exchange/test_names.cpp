#include <gtest/gtest.h>

#include "casename.h"
#include "handmade.h"

namespace report {

TEST(ExchangeNames, ValuesThatTheReadersWouldSplitAreEscaped) {
    const struct {
        Value value;
        const char *json, *go;
    } cases[] = {
        {16384LL, "16384", "16384"},
        {-1LL, "-1", "%2D1"},
        {0.5, "0.5", "0.5"},
        {1e-7, "1e-07", "1e%2D07"},
        {"book1", "book1", "book1"},
        {"a b", "a%20b", "a%20b"},
        {"a%20b", "a%2520b", "a%2520b"},
        {"dir/a", "dir/a", "dir%2Fa"},
        {"a\nBenchmarkb 1 2 x", "a%0ABenchmarkb%201%202%20x", "a%0ABenchmarkb%201%202%20x"},
        {"\"a\"", "\"a\"", "%22a%22"},
        {"page-8", "page-8", "page%2D8"},
        {"page-8-", "page-8-", "page-8-"},
        {"8", "8", "8"},
        {"\xC2\xA0", "\xC2\xA0", "%C2%A0"}, // a blank to benchstat
        {"\xFF", "\xFF", "%FF"},            // no UTF-8: benchstat refuses a file with it
        {"", "", ""},
    };
    for (const auto& [value, json, go] : cases) {
        Handmade made;
        const Case& tried = made.add("ntksFirst_8u", {{"CodeFile", value}}, {});
        EXPECT_EQ(caseName(made.group(), tried), std::string("ntksFirst_8u/CodeFile=") + json);
        EXPECT_EQ(goName(tried), std::string("BenchmarkntksFirst_8u/CodeFile=") + go);
    }
}

TEST(ExchangeNames, ParametersAndGroupsStandBehindTheFunction) {
    Handmade made;
    const Case plain = made.add("ntksFirst_8u", {}, {});
    EXPECT_EQ(caseName(made.group(), plain), "ntksFirst_8u");
    EXPECT_EQ(goName(plain), "BenchmarkntksFirst_8u");
    made.addGroup("12.0.1 (-TSSE42)\n");
    const Case full = made.add("ntksFirst_8u", {{"CodeLength", 16LL}, {"CodeFile", "a"}}, {});
    EXPECT_EQ(caseName(made.group(), full),
              "ntksFirst_8u/CodeLength=16 CodeFile=a Group=12.0.1 (-TSSE42)?");
    EXPECT_EQ(goName(full), "BenchmarkntksFirst_8u/CodeLength=16/CodeFile=a");
}

} // namespace report
