#include <gtest/gtest.h>

#include <limits>

#include <nlohmann/json.hpp>

#include "exchange.h"
#include "handmade.h"

namespace report {

namespace {

using Json = nlohmann::json;

Json written(const Report& report) {
    return Json::parse(googleBenchmarkText(report));
}

Json rows(const Report& report) {
    return written(report)["benchmarks"];
}

} // namespace

TEST(GoogleBenchmark, ARunIsARepetitionWithTimesOfACall) {
    Handmade made;
    Case& tried = made.add("ntksFirst_8u", {{"CodeFile", "book1"}}, {4, 5});
    tried.ratio = 2.5;
    tried.bytesPerUnit = 2.5;
    EXPECT_EQ(rows(made.report), Json::parse(R"([
        {"name": "ntksFirst_8u/CodeFile=book1", "run_name": "ntksFirst_8u/CodeFile=book1",
         "family_index": 0, "per_family_instance_index": 0, "run_type": "iteration",
         "repetitions": 2, "repetition_index": 0, "threads": 1, "iterations": 70,
         "real_time": 2000.0, "cpu_time": 2000.0, "time_unit": "ns",
         "clocks_per_unit": 4.0, "ratio": 2.5, "bytes_per_second": 1.25e9},
        {"name": "ntksFirst_8u/CodeFile=book1", "run_name": "ntksFirst_8u/CodeFile=book1",
         "family_index": 0, "per_family_instance_index": 0, "run_type": "iteration",
         "repetitions": 2, "repetition_index": 1, "threads": 1, "iterations": 70,
         "real_time": 2500.0, "cpu_time": 2500.0, "time_unit": "ns",
         "clocks_per_unit": 5.0, "ratio": 2.5, "bytes_per_second": 1e9}])"));
}

TEST(GoogleBenchmark, FunctionsAreFamiliesAndTheirCasesCounted) {
    Handmade made;
    made.add("ntksFirst_8u", {{"CodeFile", "a"}}, {1});
    made.add("ntksFirst_8u", {{"CodeFile", "b"}}, {1});
    made.add("ntksSecond_8u", {}, {1});
    made.addGroup("other");
    made.add("ntksFirst_8u", {{"CodeFile", "a"}}, {1});
    std::vector<std::pair<int, int>> places;
    for (const Json& row : rows(made.report)) {
        places.emplace_back(row["family_index"], row["per_family_instance_index"]);
    }
    EXPECT_EQ(places, (std::vector<std::pair<int, int>>{{0, 0}, {0, 1}, {1, 0}, {2, 0}}));
}

TEST(GoogleBenchmark, OfATableItHasTheTimeOfAMillionUnits) {
    Handmade made;
    made.add("ntksFirst_8u", {{"CodeFile", "book1"}}, {4});
    made.run().measurements[0].unitsPerCall = 0;
    made.run().measurements[0].calls = 0;
    const Json row = rows(made.report)[0];
    EXPECT_EQ(row["name"], "ntksFirst_8u/CodeFile=book1 Units=1000000");
    EXPECT_EQ(row["real_time"], 2e6);
    EXPECT_EQ(row["iterations"], 1);
}

TEST(GoogleBenchmark, WithoutFrequencyThereIsNoTimeAndTheContextSaysSo) {
    Handmade made;
    made.add("ntksFirst_8u", {}, {4, 5});
    made.run(0).facts.ticksMHz = 0;
    // The other run of the same machine knows it.
    EXPECT_EQ(rows(made.report).size(), 2u);
    EXPECT_EQ(googleBenchmarkProblem(made.report), "");
    made.run(1).facts.ticksMHz = 0;
    const Json json = written(made.report);
    EXPECT_EQ(json["benchmarks"], Json::array());
    EXPECT_EQ(json["context"]["left_out"], "2 measurements: without the clock counter's frequency "
                                           "there is no time");
    EXPECT_FALSE(json["context"].contains("mhz_per_cpu"));
    EXPECT_NE(googleBenchmarkProblem(made.report).find("2 measurements left out"),
              std::string::npos);
}

TEST(GoogleBenchmark, AFailureIsAnErrorBesideItsCaseWithItsWords) {
    Handmade made;
    Case& partly = made.add("ntksFirst_8u", {{"CodeFile", "a"}}, {4});
    partly.result = "EXCPTFAIL";
    partly.comment = "signal 11\n\"there\"";
    made.addFailed("ntksFirst_8u", {{"CodeFile", "b"}}, "FUNCFAIL", "");
    made.addFailed("ntksFirst_8u", {{"CodeFile", "c"}}, "UNDEFINED", ""); // was not run
    made.add("ntksSecond_8u", {}, {4}).result = "ACCURWRN";               // a note to a figure
    made.run().measurements.back().result = "ACCURWRN";
    made.run().measurements.back().comment = "6%";
    made.run().tests = {{"ntksFirst_8u", "TimdcFirst", "EXCPTFAIL", "told by its case", 1},
                        {"ntksThird_8u", "TimdcThird", "DATAFAIL", "bib not found", 1},
                        {"ntksSecond_8u", "TimdcSecond", "OK", "", 1}};
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"ntksFirst_8u/CodeFile=a", ""},
        {"ntksFirst_8u/CodeFile=a_failed", "EXCPTFAIL: signal 11\n\"there\""},
        {"ntksFirst_8u/CodeFile=b_failed", "FUNCFAIL"},
        {"ntksSecond_8u", ""},
        {"ntksThird_8u_failed", "DATAFAIL: bib not found"},
    };
    std::vector<std::pair<std::string, std::string>> found;
    for (const Json& row : rows(made.report)) {
        const bool isError = row.value("error_occurred", false);
        found.emplace_back(row["name"], row.value("error_message", ""));
        EXPECT_EQ(row["run_type"], isError ? "aggregate" : "iteration");
        EXPECT_EQ(row["real_time"] == 0, isError);
        EXPECT_EQ(row.value("label", ""), row["name"] == "ntksSecond_8u" ? "ACCURWRN: 6%" : "");
    }
    EXPECT_EQ(found, expected);
}

TEST(GoogleBenchmark, WhatIsNoNumberIsNotWritten) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Handmade made;
    made.add("ntksFirst_8u", {}, {none, infinite, 0, -1, 4}).ratio = infinite;
    made.group().cases[0].bytesPerUnit = none;
    const Json found = rows(made.report);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]["clocks_per_unit"], 4.0);
    EXPECT_FALSE(found[0].contains("ratio"));
    EXPECT_FALSE(found[0].contains("bytes_per_second"));
}

TEST(GoogleBenchmark, TheContextIsOfTheFirstRun) {
    Handmade made;
    made.run().facts.ticksMHz = 2599.998;
    EXPECT_EQ(written(made.report)["context"], Json::parse(R"(
        {"executable": "ntkperf", "caches": [], "json_schema_version": 1,
         "date": "2026-11-22T01:02:03+00:00", "host_name": "desk", "num_cpus": 2,
         "mhz_per_cpu": 2600, "processor": "A processor", "ntkDC": "12.0.0"})"));
    made.run().facts.started = "Sun Nov 22 01:02:03 2026";
    EXPECT_FALSE(written(made.report)["context"].contains("date"));
    EXPECT_EQ(written({})["context"],
              Json::parse(R"({"executable": "ntkperf", "caches": [], "json_schema_version": 1})"));
}

} // namespace report
