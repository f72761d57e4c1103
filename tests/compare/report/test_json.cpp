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

TEST(Json, TellsHowAndWhereItWasMeasured) {
    Handmade handmade;
    handmade.addSame("f");
    handmade.comparison.settings.budgetSeconds = 90;
    handmade.comparison.unpaired = {{Side::changed, "g", {{"A", 1LL}}}};
    handmade.judgement.medianHalfWidth = 0.003;
    handmade.judgement.all = {1, {0, -infinite, infinite}};
    handmade.judgement.functions["f"] = {1, {std::log(1.5), 0, std::log(2.0)}};
    const Json json = read(handmade);
    const std::pair<const char*, Json> expected[] = {
        {"/format", "ntkcompare"},
        {"/version", 1},
        {"/started", "2026-11-22T01:02:03Z"},
        {"/wall_seconds", 75},
        {"/complete", true},
        {"/seed", 4294967295u},
        {"/settings/precision", 0.005},
        {"/settings/tolerance", 0.01},
        {"/settings/time", 1},
        {"/settings/budget", 90},
        {"/settings/patience", 30},
        {"/settings/cpu", nullptr},
        {"/machine", "A processor"},
        {"/cpu", 1},
        {"/base/directory", "/ref"},
        {"/base/version", "12.0.0"},
        {"/base/files", {"/ref/libntkdc.so.12"}},
        {"/new/version", "12.0.1"},
        {"/new/keys", {"-B", "-fLZ4"}},
        {"/passes", 12},
        {"/looks", {6, 12}},
        {"/unpaired/0/side", "new"},
        {"/unpaired/0/parameters", {{"A", 1}}},
        {"/summary/measured", 1},
        {"/summary/same", 1},
        {"/summary/exit_status", 0},
        {"/summary/median_half_width", 0.003},
        {"/summary/all/low", nullptr},
        {"/summary/functions/f/high", 2.0},
        {"/cases/0/function", "f"},
    };
    for (const auto& [pointer, value] : expected) {
        EXPECT_EQ(json.at(Json::json_pointer(pointer)), value) << pointer;
    }
}

TEST(Json, HasEveryRoundOfEveryStart) {
    Handmade handmade;
    Case& measured = handmade.addSame("f");
    Round first = {true, {turn(1.0 / 3, 11), turn(0.1, 12)}};
    Round second = {false, {turn(1e9 + 0.25, 21), turn(3, 22)}};
    second.turns.changed.involuntarySwitches = 1;
    second.turns.changed.migrations = 2;
    second.turns.changed.minorFaults = 3;
    second.turns.changed.majorFaults = 4;
    measured.starts = {{3, {first, second}}, {5, {first}}};
    const Json starts = read(handmade)["cases"][0]["starts"];
    ASSERT_EQ(starts.size(), 2u);
    EXPECT_EQ(starts[0]["pass"], 3);
    EXPECT_EQ(starts[1]["pass"], 5);
    EXPECT_EQ(starts[0]["base_first"], Json({true, false}));
    EXPECT_EQ(starts[0]["base"]["clocks"], Json({1.0 / 3, 1e9 + 0.25}));
    EXPECT_EQ(starts[0]["base"]["calls"], Json({11, 21}));
    EXPECT_EQ(starts[0]["new"]["clocks"], Json({0.1, 3.0}));
    EXPECT_EQ(starts[0]["new"]["calls"], Json({12, 22}));
    const Json disturbed = {{"round", 1},      {"side", "new"},     {"involuntary_switches", 1},
                            {"migrations", 2}, {"minor_faults", 3}, {"major_faults", 4}};
    EXPECT_EQ(starts[0]["disturbed"], Json::array({disturbed}));
    EXPECT_EQ(starts[1]["disturbed"], Json::array());
}

TEST(Json, HasTheVerdictOfEachCase) {
    Handmade handmade;
    Case& measured = handmade.add("f", 2.5, 2.25, 2.75, Verdict::slower);
    measured.outcome.changed.values = {{"Ratio", 1.5}, {"File", "x"}, {"N", 3LL}};
    measured.parameters.changed[0].value = 512LL;
    handmade.addFailed("g", Side::changed);
    handmade.addLeftOut(Stop::passedOver, "too short");
    const Json cases = read(handmade)["cases"];
    ASSERT_EQ(cases.size(), 3u);
    EXPECT_EQ(cases[0]["verdict"], "slower");
    EXPECT_EQ(cases[0]["beyond_tolerance"], true);
    EXPECT_EQ(cases[0]["stop"], "precise");
    EXPECT_DOUBLE_EQ(cases[0]["effect"]["ratio"], 1.025);
    EXPECT_DOUBLE_EQ(cases[0]["effect"]["high"], 1.0275);
    EXPECT_EQ(cases[0]["effect"]["p_adjusted"], 0.002);
    EXPECT_EQ(cases[0]["parameters"], Json({{"CodeLength", 16384}, {"CodeFile", "book1"}}));
    EXPECT_EQ(cases[0]["new_parameters"], Json({{"CodeLength", 512}, {"CodeFile", "book1"}}));
    EXPECT_EQ(cases[0]["outcome"]["new"]["values"],
              Json({{"Ratio", 1.5}, {"File", "x"}, {"N", 3}}));
    EXPECT_EQ(cases[0]["outcome"]["base"]["units_per_call"], 16384);
    EXPECT_EQ(cases[1]["measured"], false);
    EXPECT_EQ(cases[1]["effect"], nullptr);
    EXPECT_EQ(cases[1]["new_parameters"], nullptr);
    EXPECT_EQ(cases[1]["failures"][0]["side"], "new");
    EXPECT_EQ(cases[1]["failures"][0]["detail"], "first line\nlast line");
    EXPECT_EQ(cases[2]["passed_over"], "too short");
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
