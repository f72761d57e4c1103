// What the run decides without a process: names, sizes, pairs, places.
#include <cstdlib>
#include <ctime>

#include <gtest/gtest.h>

#include "command.h"
#include "facts.h"
#include "listing.h"
#include "placement.h"
#include "progress.h"
#include "../../texts.h"
#include "scripted.h"
#include "turnsize.h"

namespace compare {
namespace {

TEST(Command, LooksForLibrariesInTheGivenBuildFirst) {
    const struct {
        const char *directory, *user, *path;
    } cases[] = {
        {"own", "", "/own/lib"},
        {".", "/users", "/own/lib:/users"},
        {"/reference", "", "/reference:/own/lib"},
        {"/a/../reference/", "/x:/y", "/reference/:/own/lib:/x:/y"},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(libraryPath(expected.directory, "/own/lib", expected.user), expected.path);
    }
    // The worker does not run where the user types, for all that is known.
    EXPECT_TRUE(libraryPath("relative", "/own", "").starts_with("/"));
}

TEST(Command, HandsOnTheEnvironmentWithOneLibraryPath) {
    setenv("LD_LIBRARY_PATH", "/users", 1);
    setenv("LD_LIBRARY_PATHS", "kept", 1);
    Plan plan;
    plan.worker = "/bin/worker";
    plan.ownLibraries = "/own";
    plan.directories = {"own", "/new"};
    plan.keys = {{"-fA"}, {"-fA", "-TAVX2"}};
    const Command command = workerCommand(plan, Side::changed, 3);
    EXPECT_EQ(command.program, "/bin/worker");
    EXPECT_EQ(command.arguments, plan.keys.changed);
    EXPECT_EQ(command.cpu, 3);
    std::vector<std::string> paths;
    for (const std::string& variable : command.environment) {
        if (variable.starts_with("LD_LIBRARY_PATH")) {
            paths.push_back(variable);
        }
    }
    EXPECT_EQ(paths, (std::vector<std::string>{"LD_LIBRARY_PATHS=kept",
                                               "LD_LIBRARY_PATH=/new:/own:/users"}));
    unsetenv("LD_LIBRARY_PATH");
    unsetenv("LD_LIBRARY_PATHS");
}

TEST(Placement, ReadsIdleTicks) {
    const auto times = parseCpuTimes("cpu  9 9 9 9 9 9 9 9 9 9\n"
                                     "cpu0 10 1 20 300 40 5 6 7 1000 1000\n"
                                     "cpu12 1 2 3 4\n"
                                     "intr 5 6\n");
    ASSERT_EQ(times.size(), 2u);
    EXPECT_EQ(times.at(0).idle, 340u);
    EXPECT_EQ(times.at(0).all, 389u); // guests' ticks are users' already
    EXPECT_EQ(times.at(12).all, 10u);
}

TEST(Placement, ChoosesTheQuietestAllowed) {
    const std::map<int, CpuTimes> before = {{0, {100, 200}}, {1, {900, 1000}}, {2, {50, 90}}};
    const std::map<int, CpuTimes> after = {{0, {110, 210}}, {1, {905, 1010}}, {2, {60, 100}}};
    const std::map<int, CpuTimes> back = {{0, {99, 210}}, {1, {905, 1010}}, {2, {45, 100}}};
    EXPECT_EQ(quietestCpu({0, 1}, before, after), 0);    // idle in 10 of 10 ticks
    EXPECT_EQ(quietestCpu({0, 1, 2}, before, after), 2); // as quiet: the last one
    EXPECT_EQ(quietestCpu({1}, before, after), 1);
    EXPECT_EQ(quietestCpu({0, 1, 2}, before, back), 1); // counts of the system may run back
    EXPECT_EQ(quietestCpu({0, 7}, before, after), 0);   // nothing is known of 7
}

TEST(Placement, RefusesAProcessorThatIsNotAllowed) {
    try {
        chooseCpu(100'000);
        FAIL();
    } catch (const CannotMeasure& error) {
        EXPECT_TRUE(has(error.what(), "processor 100000 may not be used here: choose one of "));
    }
    const int chosen = chooseCpu(-1);
    EXPECT_EQ(chooseCpu(chosen), chosen);
}

TEST(TurnSize, ResolvesAndTakesMilliseconds) {
    const std::pair<double, TurnSize> cases[] = {
        {10, {3000, 200}}, // 30,000 clocks a span, 6 million a turn
        {1'000, {30, 200}},  {29'999, {2, 100}},  {30'000, {1, 199}}, // one of the calls is untimed
        {1'000'000, {1, 5}}, {4'000'000, {1, 1}}, {1e10, {1, 1}},
        {0, {30'000, 200}}, // as if it took a clock
    };
    for (const auto& [clocks, size] : cases) {
        EXPECT_EQ(turnSizeFor(clocks, 2e9), size) << clocks;
    }
    EXPECT_TRUE(tellsMore({30, 200}, {1, 1}));
    EXPECT_TRUE(tellsMore({40, 200}, {30, 200}));
    EXPECT_FALSE(tellsMore({31, 200}, {30, 200}));
    EXPECT_FALSE(tellsMore({1, 200}, {1, 1}));
}

Announced announced(const std::string& function, long long length) {
    return {0, 0, function, {{"Length", length}}};
}

TEST(Listing, PairsWhatBothSidesAnnounce) {
    using Names = std::vector<std::pair<const char*, long long>>;
    const struct {
        const char* what;
        Names base, changed;
        std::string paired;   // "place of base-place of new", in order
        std::string unpaired; // side and function, in order
    } cases[] = {
        {"alike",
         {{"A", 1}, {"A", 2}, {"B", 1}},
         {{"A", 1}, {"A", 2}, {"B", 1}},
         "0-0 1-1 2-2",
         ""},
        {"another value", {{"A", 1}, {"B", 1}}, {{"A", 5}, {"B", 5}}, "0-0 1-1", ""},
        {"a function of base",
         {{"A", 1}, {"B", 1}, {"C", 1}},
         {{"A", 1}, {"C", 1}},
         "0-0 2-1",
         "base B"},
        {"a function of new",
         {{"A", 1}, {"C", 1}},
         {{"A", 1}, {"B", 1}, {"C", 1}},
         "0-0 1-2",
         "new B"},
        {"surplus of base",
         {{"A", 1}, {"A", 2}, {"B", 1}},
         {{"A", 1}, {"B", 1}},
         "0-0 2-1",
         "base A"},
        {"surplus of new", {{"A", 1}}, {{"A", 1}, {"A", 2}, {"A", 3}}, "0-0", "new A new A"},
        {"one side chooses", {{"A", 1}, {"A", 2}, {"A", 3}}, {{"A", 2}}, "1-0", "base A base A"},
        {"another order", {{"A", 1}, {"B", 1}}, {{"B", 1}, {"A", 1}}, "0-1", "new B base B"},
        {"nothing in common", {{"A", 1}}, {{"B", 1}}, "", "base A new B"},
    };
    const auto listOf = [](const Names& names) {
        std::vector<Announced> all;
        for (const auto& [function, length] : names) {
            all.push_back(announced(function, length));
        }
        return all;
    };
    for (const auto& expected : cases) {
        const Listing listing = pairUp({listOf(expected.base), listOf(expected.changed)});
        std::string paired, unpaired;
        for (const Both<int>& place : listing.places) {
            paired += paired.empty() ? "" : " ";
            paired += std::to_string(place.base) + "-" + std::to_string(place.changed);
        }
        for (const Unpaired& one : listing.unpaired) {
            unpaired += unpaired.empty() ? "" : " ";
            unpaired += (one.side == Side::base ? "base " : "new ") + one.function;
        }
        EXPECT_EQ(paired, expected.paired) << expected.what;
        EXPECT_EQ(unpaired, expected.unpaired) << expected.what;
        EXPECT_EQ(listing.cases.size(), listing.places.size());
    }
    const Listing listing = pairUp({{announced("A", 1)}, {announced("A", 5)}});
    EXPECT_EQ(listing.cases.at(0).function, "A");
    EXPECT_EQ(listing.cases.at(0).parameters.base.at(0).value, Value(1LL));
    EXPECT_EQ(listing.cases.at(0).parameters.changed.at(0).value, Value(5LL));
}

TEST(Progress, GoesByTheWorkThatIsPlanned) {
    const Looks looks{{2, 4}, 0.95};
    // A quarter of a second for each visit.
    EXPECT_DOUBLE_EQ(workLeft(looks, 1, 0, 10, 1), 10);
    EXPECT_DOUBLE_EQ(workLeft(looks, 1, 4, 10, 1), 9);
    EXPECT_DOUBLE_EQ(workLeft(looks, 4, 9, 10, 1), 0.25);

    constexpr double noBudget = 1e300;
    const Progress first = progressOf("A", {0, 8}, 0, noBudget); // as planned
    EXPECT_DOUBLE_EQ(first.secondsLeft, 8);
    EXPECT_DOUBLE_EQ(first.share, 0);
    const Progress slow = progressOf("A", {2, 6}, 5, noBudget); // twice as long as planned
    EXPECT_DOUBLE_EQ(slow.secondsLeft, 12);
    EXPECT_DOUBLE_EQ(slow.share, 5.0 / 17);
    const Progress limited = progressOf("A", {2, 6}, 4, 1);
    EXPECT_DOUBLE_EQ(limited.secondsLeft, 1);
    EXPECT_DOUBLE_EQ(limited.share, 0.8);
    EXPECT_DOUBLE_EQ(progressOf("A", {2, 0}, 4, -1).share, 1);
}

TEST(Progress, NamesTheCase) {
    Case named;
    named.function = "ntksEncodeLZ4_8u";
    named.parameters.base = {{"CodeLength", 16384LL}, {"Rate", 2.5}, {"CodeFile", "book1"}};
    EXPECT_EQ(caseName(named), "ntksEncodeLZ4_8u CodeLength=16384 Rate=2.5 CodeFile=book1");
}

TEST(Facts, NamesTheProcessor) {
    EXPECT_EQ(processorName("processor\t: 0\nmodel name\t: Some CPU @ 2 GHz\nstepping\t: 3\n"),
              "Some CPU @ 2 GHz");
    EXPECT_EQ(processorName("model name\t: First\n"), "First");
    EXPECT_EQ(processorName("processor : 0\n"), "");
}

TEST(Facts, TellsTimeWithItsOffset) {
    setenv("TZ", "XXX-05:30", 1);
    tzset();
    EXPECT_TRUE(localTime().ends_with("+05:30")) << localTime();
    EXPECT_EQ(localTime().size(), std::string("2026-01-02T03:04:05+05:30").size());
    unsetenv("TZ");
    tzset();
}

} // namespace
} // namespace compare
