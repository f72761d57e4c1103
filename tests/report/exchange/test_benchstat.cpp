// The reader here takes lines apart as Go's benchfmt does: fields between blanks, a name with its
// parts between slashes and a number of processors at its end, file keys that hold until the next.
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <sstream>

#include <nlohmann/json.hpp>

#include "../../patterns.h"
#include "exchange.h"
#include "handmade.h"

namespace report {

namespace {

using Texts = std::vector<std::string>;

struct Result {
    Texts name; // its parts
    std::string calls;
    std::map<std::string, double> values; // by unit
    std::map<std::string, std::string> keys;
};
struct Benchmarks {
    std::vector<Result> results;
    Texts units;
};

Texts split(const std::string& text, char separator) {
    Texts parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

void readResult(const std::string& line, Benchmarks& read,
                const std::map<std::string, std::string>& keys) {
    // The name as github-action-benchmark has it, too, which knows no exponents.
    EXPECT_TRUE(fits(
        line,
        "^Benchmark[A-Za-z0-9_]+[]A-Za-z0-9_()$%^&*=|,[{}\"#./:;+-]* [0-9]+( [0-9.]+ [^ ]+)+$"))
        << line;
    const Texts fields = split(line, ' ');
    EXPECT_FALSE(fits(fields[0], "-[0-9]+$")) << line;
    Result result{split(fields[0], '/'), fields[1], {}, keys};
    for (std::size_t i = 2; i + 1 < fields.size(); i += 2) {
        result.values[fields[i + 1]] = std::stod(fields[i]);
    }
    read.results.push_back(result);
}

Benchmarks read(const std::string& text) {
    Benchmarks read;
    std::map<std::string, std::string> keys;
    EXPECT_NO_THROW(nlohmann::json(text).dump()); // it is UTF-8
    for (const std::string& line : split(text, '\n')) {
        const Texts key = groupsOf(line, "^([a-z][^A-Z[:space:]:]*):[ \t]*(.*)$");
        if (line.starts_with("Benchmark")) {
            readResult(line, read, keys);
        } else if (line.starts_with("Unit ")) {
            read.units.push_back(line.substr(5));
        } else if (!key.empty()) {
            keys[key[1]] = key[2];
        } else {
            EXPECT_TRUE(line.empty() || line.starts_with("# ")) << line;
        }
    }
    return read;
}

} // namespace

TEST(Benchstat, HasALineForEachRunWithWhatIsKnown) {
    Handmade made;
    Case& tried = made.add("ntksFirst_8u", {{"CodeLength", 16LL}, {"CodeFile", "a-8"}}, {4, 5});
    tried.ratio = 2.5;
    tried.bytesPerUnit = 2;
    made.add("ntksOther_8u", {}, {1e-7}).bytesPerUnit.reset();
    const std::vector<Result> results = read(benchstatText(made.report)).results;
    ASSERT_EQ(results.size(), 3u);
    EXPECT_EQ(results[0].name, (Texts{"BenchmarkntksFirst_8u", "CodeLength=16", "CodeFile=a%2D8"}));
    EXPECT_EQ(results[0].calls, "70");
    EXPECT_EQ(results[0].values,
              (std::map<std::string, double>{{"clocks/byte", 2}, {"ratio", 2.5}, {"MB/s", 1000}}));
    EXPECT_EQ(results[1].name, results[0].name);
    EXPECT_EQ(results[1].values.at("clocks/byte"), 2.5);
    EXPECT_EQ(results[2].values, (std::map<std::string, double>{{"clocks/element", 1e-7}}));
}

TEST(Benchstat, TellsOfEachUnitWhichWayIsBetter) {
    Handmade made;
    made.add("ntksFirst_8u", {}, {4});
    made.add("ntksOther_8u", {}, {4}).bytesPerUnit.reset();
    EXPECT_EQ(read(benchstatText(made.report)).units,
              (Texts{"clocks/byte better=lower", "clocks/element better=lower",
                     "ratio better=higher assume=exact", "MB/s better=higher"}));
}

TEST(Benchstat, OnlyProcessorAndGroupKeepLinesApart) {
    Handmade made;
    made.run().facts.processor = "First\nBenchmarkforged 1 1 x";
    made.add("ntksFirst_8u", {}, {4});
    made.group().label = "12.0.0";
    made.addGroup("12.0.1");
    made.run().facts.processor.clear();
    made.run().file = "\xFF\ncpu: forged";
    made.add("ntksFirst_8u", {}, {4});
    const std::vector<Result> results = read(benchstatText(made.report)).results;
    ASSERT_EQ(results.size(), 2u);
    using Keys = std::map<std::string, std::string>;
    EXPECT_EQ(results[0].keys, (Keys{{"cpu", "First?Benchmarkforged 1 1 x"}, {"group", "12.0.0"}}));
    EXPECT_EQ(results[1].keys, (Keys{{"cpu", ""}, {"group", "12.0.1"}}));
}

TEST(Benchstat, LeavesOutWhatIsNotKnownOrNoNumber) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Handmade made;
    made.add("ntksFirst_8u", {}, {infinite, 4}).ratio = infinite;
    made.run(0).facts.ticksMHz = made.run(1).facts.ticksMHz = 0;
    made.run(1).measurements[0].calls = 0;
    made.addFailed("ntksFailed_8u", {}, "FUNCFAIL", "status -5");
    const std::vector<Result> results = read(benchstatText(made.report)).results;
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].calls, "1");
    EXPECT_EQ(results[0].values, (std::map<std::string, double>{{"clocks/byte", 4}}));
}

} // namespace report
