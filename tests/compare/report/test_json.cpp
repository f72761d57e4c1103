#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cmath>

#include "handmade.h"

namespace compare {

namespace {

using Json = nlohmann::json;

Json read(const Handmade& handmade) {
    return Json::parse(jsonText(handmade.comparison, handmade.judgement));
}

// A turn with figures that show when they are swapped or rounded.
Turn turn(double clocks, long long calls) {
    Turn made;
    made.clocks = clocks;
    made.calls = calls;
    return made;
}

// With figures that show when they are swapped or rounded; ratios that every exp() gives exactly.
TEST(Json, HasAllOfTheComparison) {
    Handmade handmade;
    Case& measured = handmade.addSlower("f");
    measured.outcome.changed.values = {{"Ratio", 1.5}, {"File", "x"}, {"N", 3LL}};
    measured.parameters.changed[0].value = 512LL;
    Round first = {true, {turn(1.0 / 3, 11), turn(0.1, 12)}};
    Round second = {false, {turn(1e9 + 0.25, 21), turn(3, 22)}};
    second.turns.changed.involuntarySwitches = 1;
    second.turns.changed.migrations = 2;
    second.turns.changed.minorFaults = 3;
    second.turns.changed.majorFaults = 4;
    measured.starts = {{3, {first, second}}, {5, {first}}};
    handmade.lastEffect().interval = {std::log(2.0), std::log(0.5), std::log(4.0)};
    handmade.addFailed("g", Side::changed);
    handmade.addLeftOut(Stop::passedOver, "too short");
    handmade.comparison.settings.budgetSeconds = 90;
    handmade.comparison.unpaired = {{Side::changed, "g", {{"A", 1LL}}}};
    handmade.judgement.medianHalfWidth = 0.003;
    handmade.judgement.all = {1, {0, -infinite, infinite}};
    handmade.judgement.functions["f"] = {1, {std::log(2.0), std::log(0.5), std::log(4.0)}};
    const char* const expected = R"({"format":"ntkcompare","version":1,
"started":"2026-11-22T01:02:03Z","wall_seconds":75.0,"complete":true,"seed":4294967295,
"settings":{"precision":0.005,"tolerance":0.01,"time":1.0,"budget":90.0,"patience":30.0,
"confidence":0.95,"cpu":null},
"machine":"A processor","cpu":1,
"base":{"directory":"/ref","keys":["-B","-fLZ4"],"version":"12.0.0",
"files":["/ref/libntkdc.so.12"]},
"new":{"directory":"own","keys":["-B","-fLZ4"],"version":"12.0.1",
"files":["/own/libntkdc.so.12"]},
"passes":12,"looks":[6,12],"without_effect":{"base":[],"new":[]},
"unpaired":[{"side":"new","function":"g","parameters":{"A":1}}],
"summary":{"measured":1,"slower":1,"faster":0,"same":0,"open":0,"failed":1,"passed_over":1,
"not_reached":0,"slower_beyond_tolerance":1,"failed_on_new_only":1,"outputs_differ":0,
"median_half_width":0.003,"largest_half_width":0.0,"exit_status":1,"all":{"cases":1,"ratio":1.0,
"low":null,"high":null},"functions":{"f":{"cases":1,"ratio":2.0,"low":0.5,"high":4.0}}},
"cases":[{"function":"f","parameters":{"CodeLength":16384,"CodeFile":"book1"},
"new_parameters":{"CodeLength":512,"CodeFile":"book1"},
"outcome":{"base":{"status":0,"unit":"e","units_per_call":16384.0,"values":{}},"new":{"status":0,
"unit":"e","units_per_call":16384.0,"values":{"Ratio":1.5,"File":"x","N":3}}},
"output_difference":"","measured":true,"verdict":"slower","beyond_tolerance":true,
"stop":"precise","seconds":0.25,"passed_over":"",
"effect":{"ratio":2.0,"low":0.5,"high":4.0,"p":0.001,"p_adjusted":0.002,
"base_clocks_per_unit":4.0,"new_clocks_per_unit":4.2,"disturbed_share":0.0},
"failures":[],"starts":[{"pass":3,"base_first":[true,false],
"base":{"clocks":[0.3333333333333333,1000000000.25],"calls":[11,21]},"new":{"clocks":[0.1,3.0],"calls":[12,22]},"disturbed":[{"round":1,"side":"new",
"involuntary_switches":1,"migrations":2,"minor_faults":3,"major_faults":4}]},
{"pass":5,"base_first":[true],"base":{"clocks":[0.3333333333333333],"calls":[11]},
"new":{"clocks":[0.1],"calls":[12]},"disturbed":[]}]},
{"function":"g","parameters":{},"new_parameters":null,
"outcome":{"base":{"status":0,"unit":"","units_per_call":1.0,"values":{}},"new":{"status":0,
"unit":"","units_per_call":1.0,"values":{}}},
"output_difference":"","measured":false,"verdict":"failed","beyond_tolerance":false,
"stop":"failed","seconds":0.0,"passed_over":"","effect":null,
"failures":[{"side":"new","what":"killed by SIGSEGV in a turn","detail":"first line\nlast line"}],
"starts":[]},
{"function":"ntksLeft_8u","parameters":{},"new_parameters":null,
"outcome":{"base":{"status":0,"unit":"","units_per_call":1.0,"values":{}},"new":{"status":0,
"unit":"","units_per_call":1.0,"values":{}}},
"output_difference":"","measured":false,"verdict":"passed over","beyond_tolerance":false,
"stop":"passed over","seconds":0.0,"passed_over":"too short",
"effect":null,"failures":[],"starts":[]}]})";
    using Ordered = nlohmann::ordered_json;
    EXPECT_EQ(Ordered::parse(jsonText(handmade.comparison, handmade.judgement)).dump(1),
              Ordered::parse(expected).dump(1));
}

TEST(Json, IsReadableWhateverItIsMadeOf) {
    Handmade handmade;
    Case& measured = handmade.add("f\"\n\xff", 1, 0, 0, Verdict::open);
    measured.starts[0].rounds.push_back({true, {turn(std::nan(""), 1), turn(1, 1)}});
    measured.outcome.base.values = {{"Ratio", infinite}};
    measured.seconds = -infinite;
    handmade.lastEffect().interval = {std::nan(""), -infinite, infinite};
    const Json json = read(handmade);
    EXPECT_EQ(json["summary"]["median_half_width"], nullptr) << "no case has an interval";
    EXPECT_EQ(json["summary"]["exit_status"], 2);
    EXPECT_EQ(json["cases"][0]["function"], "f\"\n\xef\xbf\xbd");
    for (const char* name : {"ratio", "low", "high"}) {
        EXPECT_EQ(json["cases"][0]["effect"][name], nullptr) << name;
    }
    EXPECT_EQ(json["cases"][0]["starts"][0]["base"]["clocks"][1], nullptr);
    EXPECT_TRUE(Json::parse(jsonText({}, {}))["cases"].empty());
}

} // namespace

} // namespace compare
