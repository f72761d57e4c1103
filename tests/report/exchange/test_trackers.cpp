// Bencher and github-action-benchmark.
#include <gtest/gtest.h>

#include <cmath>

#include <nlohmann/json.hpp>

#include "exchange.h"
#include "handmade.h"
#include "reader.h"

namespace report {

namespace {

using Json = nlohmann::json;

// Several runs, one run, a unit of other bytes, of unknown bytes, a failure, no number, another
// group, and a name that has to be escaped.
Report manyKinds() {
    Handmade made;
    made.add("ntksFirst_8u", {{"CodeFile", "a"}}, {4, 3, 5.5}).ratio = 1.75;
    Case& single = made.add("ntksFirst_8u", {{"CodeFile", "\"b\"\n"}}, {4});
    single.result = "ACCURWRN";
    single.comment = "6%";
    made.add("ntksDecode_8u", {}, {6, 8, 10}).bytesPerUnit = 2;
    made.add("ntksOther_8u", {}, {2}).bytesPerUnit.reset();
    made.addFailed("ntksFailed_8u", {}, "FUNCFAIL", "status -5");
    made.add("ntksNone_8u", {}, {std::nan("")});
    made.addGroup("new");
    made.add("ntksFirst_8u", {{"CodeFile", "a"}}, {2});
    return made.report;
}

} // namespace

TEST(Bencher, HasClocksPerUnitWithTheRangeOfTheRuns) {
    EXPECT_EQ(Json::parse(bencherText(manyKinds())), Json::parse(R"({
        "ntksFirst_8u/CodeFile=a":
            {"clocks-per-unit": {"value": 4.0, "lower_value": 3.0, "upper_value": 5.5}},
        "ntksFirst_8u/CodeFile=\"b\"%0A": {"clocks-per-unit": {"value": 4.0}},
        "ntksDecode_8u":
            {"clocks-per-unit": {"value": 8.0, "lower_value": 6.0, "upper_value": 10.0}},
        "ntksOther_8u": {"clocks-per-unit": {"value": 2.0}},
        "ntksFirst_8u/CodeFile=a Group=new": {"clocks-per-unit": {"value": 2.0}}})"));
    EXPECT_EQ(Json::parse(bencherText({})), Json::object());
}

TEST(SmallerIsBetter, HasTheMedianPerByteOrWhatTheUnitIs) {
    EXPECT_EQ(Json::parse(smallerIsBetterText(manyKinds())), Json::parse(R"([
        {"name": "ntksFirst_8u/CodeFile=a", "unit": "clocks/byte", "value": 4.0,
         "range": "± 1.50", "extra": "3 runs\nratio: 1.75"},
        {"name": "ntksFirst_8u/CodeFile=\"b\"%0A", "unit": "clocks/byte", "value": 4.0,
         "extra": "1 run\nACCURWRN: 6%"},
        {"name": "ntksDecode_8u", "unit": "clocks/byte", "value": 4.0, "range": "± 1.00",
         "extra": "3 runs"},
        {"name": "ntksOther_8u", "unit": "clocks/element", "value": 2.0, "extra": "1 run"},
        {"name": "ntksFirst_8u/CodeFile=a Group=new", "unit": "clocks/byte", "value": 2.0,
         "extra": "1 run"}])"));
    EXPECT_EQ(Json::parse(smallerIsBetterText({})), Json::array());
}

} // namespace report
