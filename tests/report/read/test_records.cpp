#include "scratch.h"

namespace report {

namespace {

using Records = Scratch;

const std::string run =
    R"({"record":"run","format":"ntkperf","version":1,"started":"2026-11-22T03:36:15+00:00",)"
    R"("program":"2.0","keys":["-B","-fLZ4"],"machine":{"processor":"A processor","processors":2,)"
    R"("ticks_mhz":2600.5,"cache_bytes":null,"os":"Linux","computer":"vm"},"libraries":[{"name":)"
    R"("ntkDC","version":"12.0.0","build":"open build","date":"Nov 22 2026","files":[{"name":)"
    R"("libntkdc.so.12","path":"/lib/libntkdc.so.12"}]}],"corpus":[{"name":"bib","path":"/c/bib",)"
    R"("bytes":111261,"crc32":"1a2b3c4d"}]})"
    "\n";
const std::string measurement =
    R"({"record":"measurement","function":"ntksDecodeLZ4_8u","types":"8u","source":"p_dclz4",)"
    R"("parameters":{"CodeLength":16384,"CodeFile":"bib"},"values":{"Length":16380,"Ratio":1.76},)"
    R"("method":"Auto","clocks_per_call":11750.25,"calls":2100,"batches":7,"spread":0.024,)"
    R"("switches":0,"accuracy":null,"units_per_call":9300,"unit":"e","flops_per_call":0,)"
    R"("clocks_per_unit":1.263467741935484,"result":"OK","comment":"nLps=2100","deprecated":false,)"
    R"("hot":true})"
    "\n";
const std::string test =
    R"({"record":"test","function":"ntksDecodeLZ4_8u","test":"TimdcLZ4","source":"p_dclz4",)"
    R"("seconds":1.5,"result":"FUNCFAIL","message":"status = -4"})"
    "\n";
const std::string end = R"({"record":"end","tests":6,"failed":0,"complete":true,"seconds":29.1})"
                        "\n";

TEST_F(Records, MembersBecomeWhatTheyStandFor) {
    const Reading reading = read(run + measurement + test + end);
    ASSERT_EQ(reading.runs.size(), 1u);
    EXPECT_TRUE(reading.problems.empty() && reading.notes.empty());
    const report::Run& its = reading.runs[0];
    EXPECT_TRUE(its.isExact && its.isComplete);
    EXPECT_EQ(its.facts.processor, "A processor");
    EXPECT_EQ(its.facts.processors, 2);
    EXPECT_EQ(its.facts.ticksMHz, 2600.5);
    EXPECT_EQ(its.facts.system + its.facts.computer, "Linuxvm");
    EXPECT_EQ(its.facts.started, "2026-11-22T03:36:15+00:00");
    EXPECT_EQ(its.facts.keys, (std::vector<std::string>{"-B", "-fLZ4"}));
    ASSERT_EQ(its.facts.libraries.size(), 1u);
    EXPECT_EQ(its.facts.libraries[0].version, "12.0.0 (open build)");
    EXPECT_EQ(its.facts.libraries[0].files, std::vector<std::string>{"/lib/libntkdc.so.12"});
    ASSERT_EQ(its.facts.corpus.size(), 1u);
    EXPECT_EQ(its.facts.corpus[0].bytes, 111261);
    EXPECT_EQ(its.facts.corpus[0].checksum, "1a2b3c4d");
    ASSERT_EQ(its.measurements.size(), 1u);
    const Measurement& row = its.measurements[0];
    EXPECT_EQ(row.function + " " + row.types + " " + row.unit, "ntksDecodeLZ4_8u 8u e");
    EXPECT_EQ(common::parametersText(row.parameters), "CodeLength=16384 CodeFile=bib");
    EXPECT_EQ(common::parametersText(row.values), "Length=16380 Ratio=1.76");
    EXPECT_EQ(row.clocksPerUnit, 1.263467741935484);
    EXPECT_EQ(row.unitsPerCall, 9300);
    EXPECT_EQ(row.calls, 2100);
    EXPECT_EQ(row.spread, 0.024);
    EXPECT_EQ(row.comment, "nLps=2100");
    EXPECT_TRUE(row.isHot && !row.isDeprecated);
    ASSERT_EQ(its.tests.size(), 1u);
    EXPECT_EQ(its.tests[0].test + its.tests[0].result, "TimdcLZ4FUNCFAIL");
    EXPECT_EQ(its.tests[0].message, "status = -4");
    EXPECT_EQ(its.tests[0].seconds, 1.5);
}

TEST_F(Records, WhatTheFirstLineDidNotKnowFollows) {
    const std::string file =
        R"({"record":"file","name":"own","path":"/own","bytes":7,"crc32":"0a"})";
    const std::string unknown = R"({"record":"run","version":1,"machine":{"ticks_mhz":null}})";
    const std::string known = R"({"record":"run","version":1,"machine":{"ticks_mhz":1000}})";
    const std::string last = R"({"record":"end","complete":true,"ticks_mhz":2600})";
    const std::string line = "\n";
    const Reading reading = read(unknown + line + file + line + measurement + last + line + known +
                                 line + measurement + last + line);
    ASSERT_EQ(reading.runs.size(), 2u);
    EXPECT_EQ(reading.runs[0].facts.ticksMHz, 2600);
    EXPECT_EQ(reading.runs[1].facts.ticksMHz, 1000);
    ASSERT_EQ(reading.runs[0].facts.corpus.size(), 1u);
    EXPECT_EQ(reading.runs[0].facts.corpus[0].name, "own");
    EXPECT_EQ(reading.runs[0].facts.corpus[0].bytes, 7);
}

TEST_F(Records, WhatIsNotKnownIsEmptyAndWhatIsNewIsPassedOver) {
    const Reading reading = read(
        R"({"record":"run","version":1,"machine":{"processor":null,"ticks_mhz":null},"more":[{}]})"
        "\n"
        R"({"record":"weather","rain":true})"
        "\n"
        R"({"record":"measurement","function":"f","clocks_per_unit":null,"spread":0,"batches":1,)"
        R"("values":{"A":null,"B":0.5,"C":true},"parameters":[1],"new":{"a":[1]}})"
        "\n"
        R"({"record":"end","ticks_mhz":2600})"
        "\n");
    EXPECT_TRUE(reading.problems.empty());
    ASSERT_EQ(reading.runs.size(), 1u);
    EXPECT_EQ(reading.runs[0].facts.ticksMHz, 2600) << "known when it ended";
    const Measurement& row = reading.runs[0].measurements.at(0);
    EXPECT_FALSE(row.clocksPerUnit);
    EXPECT_FALSE(row.spread) << "a single span has none";
    EXPECT_EQ(common::parametersText(row.values), "B=0.5 C=true");
    EXPECT_TRUE(row.parameters.empty());
}

TEST_F(Records, ACellIsThatOfTheRunBehindIt) {
    const std::string cell = R"({"record":"cell","kind":"old","build":"base","node":"n1"})"
                             "\n";
    const Reading reading = read(cell + run + measurement + end + run + measurement + end);
    ASSERT_EQ(reading.runs.size(), 2u);
    EXPECT_EQ(reading.runs[0].facts.kind + " " + reading.runs[0].facts.build, "old base");
    EXPECT_EQ(reading.runs[1].facts.kind + reading.runs[1].facts.build, "");
}

TEST_F(Records, AKilledRunKeepsWhatItHad) {
    const std::string killed = run + measurement + measurement.substr(0, 100);
    const std::pair<std::string, std::size_t> cases[] = {
        {killed, 1},
        {run + measurement, 1},
        {killed + run + measurement + end, 2},
        {killed + "\n" + run + measurement + end, 2}};
    for (const auto& [text, runs] : cases) {
        const Reading reading = read(text);
        ASSERT_EQ(reading.runs.size(), runs) << text;
        EXPECT_EQ(reading.runs.front().measurements.size(), 1u);
        EXPECT_FALSE(reading.runs.front().isComplete);
        EXPECT_EQ(reading.runs.back().isComplete, runs == 2);
        ASSERT_EQ(reading.notes.size(), 1u);
        EXPECT_EQ(plain(reading.notes[0]), "file: the run of 2026-11-22T03:36:15+00:00 did not "
                                           "come to its end; what it had measured is read");
    }
}

TEST_F(Records, WhatCannotBeUsedIsOneSentence) {
    struct Row {
        std::string text;
        std::size_t runs;
        const char* sentence;
    };
    const Row rows[] = {
        {run + "{\"record\":\n" + measurement + end, 1,
         "file, line 2: it is no whole JSON object; the line is left out"},
        {run + "x\n[1]\n" + measurement + end, 1,
         "file: 2 lines are left out; the first, line 2: it is no whole JSON object"},
        {run + end, 0, "file: the run of 2026-11-22T03:36:15+00:00 has measured nothing"},
        {run + measurement + end + R"({"record":"run","version":2})", 0,
         "file is of version 2 of the format, this program reads up to 1; read it with a newer "
         "ntkreport"},
    };
    for (const Row& expected : rows) {
        const Reading reading = read(expected.text);
        ASSERT_EQ(reading.problems.size(), 1u) << expected.sentence;
        EXPECT_EQ(plain(reading.problems[0]), expected.sentence);
        EXPECT_EQ(reading.runs.size(), expected.runs) << expected.sentence;
    }
}

} // namespace

} // namespace report
