#include "scratch.h"
#include "tables.h"

namespace report {

namespace {

using Table = Scratch;

TEST_F(Table, CellsBecomeWhatTheyStandFor) {
    const Reading reading =
        read(head + "ntksBWTFwd_8u,8u,16384,book1, ntkBWTAutoSort,-,42.4,e,12.5,OK,nLps=8,2.5\n" +
             "ntksX_8u,8u,64K,a b,007,2.5,-,e,-,FUNCFAIL,deprecated,-\r\n");
    ASSERT_EQ(reading.runs.size(), 1u);
    EXPECT_TRUE(reading.problems.empty() && reading.notes.empty());
    const report::Run& run = reading.runs.front();
    EXPECT_FALSE(run.isExact);
    EXPECT_EQ(run.columns, (std::vector<std::string>{"Length", "CodeFile", "Variant"}));
    ASSERT_EQ(run.measurements.size(), 2u);
    const Measurement& good = run.measurements[0];
    EXPECT_EQ(good.function, "ntksBWTFwd_8u");
    EXPECT_EQ(good.types, "8u");
    EXPECT_EQ(common::parametersText(good.parameters),
              "Length=16384 CodeFile=book1 Variant=ntkBWTAutoSort");
    EXPECT_TRUE(std::holds_alternative<long long>(good.parameters[0].value));
    EXPECT_EQ(common::parametersText(good.values), "Rate=12.5");
    EXPECT_EQ(good.clocksPerUnit, 42.4);
    EXPECT_EQ(good.unit, "e");
    EXPECT_EQ(good.calls, 8);
    EXPECT_EQ(good.spread, 0.025);
    EXPECT_EQ(good.result, "OK");
    const Measurement& failed = run.measurements[1];
    EXPECT_EQ(common::parametersText(failed.parameters), "Length=64K CodeFile=a b Variant=007");
    EXPECT_EQ(common::parametersText(failed.values), "Ratio=2.5");
    EXPECT_FALSE(failed.clocksPerUnit || failed.spread);
    EXPECT_EQ(failed.result, "FUNCFAIL");
    EXPECT_TRUE(failed.isDeprecated && !failed.isHot);
}

TEST_F(Table, TitlesTellTheMachineAndTheLibrary) {
    const Facts facts = read(head + row).runs.at(0).facts;
    EXPECT_EQ(facts.processor, "Intel(R) Xeon(R) Processor");
    EXPECT_EQ(facts.processors, 2);
    EXPECT_EQ(facts.ticksMHz, 2600);
    EXPECT_EQ(facts.system, "Linux (6.1  #1 SMP)");
    EXPECT_EQ(facts.computer, "vm");
    EXPECT_EQ(facts.started, "Sun Nov 22 03:44:21 2026");
    ASSERT_EQ(facts.libraries.size(), 1u);
    EXPECT_EQ(facts.libraries[0].name, "ntkDC");
    EXPECT_EQ(facts.libraries[0].version, "12.0.0 (open build)");
    EXPECT_EQ(facts.libraries[0].date, "Nov 22 2026");
    EXPECT_TRUE(facts.keys.empty());
}

TEST_F(Table, TitlesThatSayLessLeaveItEmpty) {
    const Facts facts = read("Processor,Unknown CPU  x4  900 MHz\nOS,\nLibrary,A  1;  B  2  May 1 "
                             "2026; -T: MMX SSE\n" +
                             names + row)
                            .runs.at(0)
                            .facts;
    EXPECT_EQ(facts.processor, "Unknown CPU");
    EXPECT_EQ(facts.ticksMHz, 900);
    EXPECT_EQ(facts.keys, std::vector<std::string>{"-T: MMX SSE"});
    ASSERT_EQ(facts.libraries.size(), 2u);
    EXPECT_EQ(facts.libraries[0].version + facts.libraries[1].date, "1May 1 2026");
    EXPECT_EQ(read("Library,none\n" + names + row).runs.at(0).facts.libraries.size(), 0u);
}

TEST_F(Table, AnAddedRunIsARunOfItsOwnWithItsOwnColumns) {
    const Reading reading =
        read(head + row + row + "Processor,Other\nStart,later\n" +
             "Function,Types,Parm1,Clocks,Interest\nmemcpy,8u,100,0.5,+\n" + names + row);
    ASSERT_EQ(reading.runs.size(), 3u);
    EXPECT_EQ(reading.runs[0].measurements.size(), 2u);
    EXPECT_EQ(reading.runs[1].facts.processor, "Other");
    EXPECT_EQ(reading.runs[1].facts.started, "later");
    EXPECT_EQ(reading.runs[1].columns, std::vector<std::string>{"Parm1"});
    EXPECT_TRUE(reading.runs[1].measurements.at(0).isHot);
    EXPECT_EQ(reading.runs[2].measurements.size(), 1u);
    EXPECT_TRUE(reading.problems.empty());
}

TEST_F(Table, LinesOfParameterNamesArePassedOver) {
    const Reading reading =
        read(head + "ntksEncodeLZ4_8u,8u,CodeLength,CodeFile\n" + row +
             "ntksBWTFwd_SelectSort_8u,8u,CodeLength,CodeFile,NtkBWTSortAlgorithmHint\n" + row);
    ASSERT_EQ(reading.runs.size(), 1u);
    EXPECT_EQ(reading.runs[0].measurements.size(), 2u);
    EXPECT_TRUE(reading.problems.empty()) << reading.problems.front();
}

TEST_F(Table, AKilledRunKeepsItsWholeRows) {
    for (const std::size_t left : {std::size_t(1), std::size_t(16), row.size() - 6}) {
        const Reading reading = read(head + row + row.substr(0, left));
        ASSERT_EQ(reading.runs.size(), 1u) << left;
        EXPECT_EQ(reading.runs[0].measurements.size(), 1u);
        EXPECT_FALSE(reading.runs[0].isComplete);
        EXPECT_TRUE(reading.problems.empty());
        ASSERT_EQ(reading.notes.size(), 1u);
        EXPECT_EQ(plain(reading.notes[0]),
                  "file: the last line of the run of Sun Nov 22 03:44:21 2026 is broken, so it "
                  "was killed; the rows before it are read");
    }
    // An editor may have taken the end of the last line.
    const Reading whole = read(head + row + row.substr(0, row.size() - 1));
    EXPECT_EQ(whole.runs.at(0).measurements.size(), 2u);
    EXPECT_TRUE(whole.runs[0].isComplete);
}

TEST_F(Table, ARunAddedBehindABrokenLineIsRead) {
    const Reading reading = read(head + row + "ntksEncodeLZ4_8u,8u,327" + head + row + row);
    ASSERT_EQ(reading.runs.size(), 2u);
    EXPECT_FALSE(reading.runs[0].isComplete);
    EXPECT_EQ(reading.runs[1].facts.processors, 2);
    EXPECT_EQ(reading.runs[1].measurements.size(), 2u);
    EXPECT_TRUE(reading.runs[1].isComplete);
    EXPECT_TRUE(reading.problems.empty()) << reading.problems.front();
}

TEST_F(Table, WhatIsWrongWithRowsIsOneSentence) {
    const std::string before = "ntksX_8u,8u,1,a,-,";
    const std::string after = ",e,-,OK,-,-\n";
    const std::pair<std::string, const char*> cases[] = {
        {before + "-,abc" + after,
         "file, line 8: Clocks is 'abc', which is no number; the row is left out"},
        {before + "1.x,3" + after,
         "file, line 8: Ratio is '1.x', which is no number; the row is left out"},
        {before + "-,nan" + after + before + "-,-3" + after + before + "-,inf" + after,
         "file: 3 rows are left out; the first, line 8: Clocks is 'nan', which is no number"},
        {before + "-,\x1b[2J" + after,
         "file, line 8: Clocks is '?[2J', which is no number; the row is left out"},
        {"ntksX_8u,8u,1,a,-,-,3,e,-,OK,-,-,-\n",
         "file, line 8: it has 13 cells in place of 12; the row is left out"},
        {"ntksX_8u,8u,1,a,-,-,3\n",
         "file, line 8: it has 7 cells in place of 12; the row is left out"},
        {"ntksX_8u,8u,16384,book1\n",
         "file, line 8: it has 4 cells in place of 12; the row is left out"},
    };
    for (const auto& [lines, sentence] : cases) {
        const Reading reading = read(head + row + lines + row);
        ASSERT_EQ(reading.problems.size(), 1u) << sentence;
        EXPECT_EQ(plain(reading.problems[0]), sentence);
        EXPECT_EQ(reading.runs.at(0).measurements.size(), 2u) << sentence;
    }
}

TEST_F(Table, NumbersAreThoseOfTheTableInEveryForm) {
    for (const auto& [cell, clocks] : {std::pair("1e3", 1000.0), {" 4.5 ", 4.5}, {"0", 0.0}}) {
        const Reading reading = read(head + "ntksX_8u,8u,1,a,-,-," + cell + ",e,-,OK,-,-\n");
        ASSERT_EQ(reading.runs.size(), 1u) << cell;
        EXPECT_EQ(reading.runs[0].measurements.at(0).clocksPerUnit, clocks) << cell;
    }
}

TEST_F(Table, WithoutRowsThereIsNothingToReport) {
    const std::string empty =
        "file has a table without rows, of Sun Nov 22 03:44:21 2026: nothing was measured, or the "
        "run was killed before";
    for (const std::string& text : {head, head + row + titles + names}) {
        const Reading reading = read(text);
        ASSERT_EQ(reading.problems.size(), 1u);
        EXPECT_EQ(plain(reading.problems[0]), empty);
    }
    EXPECT_EQ(read(head + row + titles + names).runs.size(), 1u) << "the other run is there";
}

} // namespace

} // namespace report
