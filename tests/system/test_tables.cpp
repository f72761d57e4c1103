// The tables of a run, read back.
#include "../patterns.h"
#include "session.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr const char* nameLine =
    "Function,Types,Length,CodeFile,Variant,Ratio,Clocks,Unit,Rate,Result,Comment,Spread";
constexpr const char* summaryNames = "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,"
                                     "Time (sec.),SrcName,Result,ExeName";

class Tables : public SystemTest {};

bool isPositiveNumber(const std::string& cell) {
    char* end = nullptr;
    const double value = std::strtod(cell.c_str(), &end);
    return !cell.empty() && *end == '\0' && value > 0;
}

TEST_F(Tables, EveryCellStandsInTheColumnThatTheNameLineNames) {
    const Command inCorpus = {.directory = corpusDirectory()};
    runWell(quick + Texts{"-rtable.csv", "-dCodeLength=65536"}, inCorpus);
    const std::string written = text("table.csv");
    EXPECT_TRUE(hasOnce(written, nameLine + std::string("\n")));
    const Table table(written);
    ASSERT_FALSE(table.rows.empty());
    for (const Texts& title : table.titles) {
        EXPECT_EQ(title.size(), 2u) << title.front();
    }
    const Texts functions = listedFunctions();
    EXPECT_EQ(table.column("Function"), std::set<std::string>(functions.begin(), functions.end()));
    EXPECT_EQ(table.column("Unit"), std::set<std::string>{"e"});
    EXPECT_EQ(table.column("Rate"), std::set<std::string>{"-"});
    EXPECT_EQ(table.column("Result"), std::set<std::string>{"OK"});
    EXPECT_EQ(table.column("Comment"), std::set<std::string>{"nLps=1"});
    for (const Texts& row : table.rows) {
        SCOPED_TRACE(testing::PrintToString(row));
        ASSERT_EQ(row.size(), table.names.size());
        EXPECT_EQ(std::count(row.begin(), row.end(), ""), 0);
        EXPECT_TRUE(isPositiveNumber(table.cell(row, "Length")));
        EXPECT_TRUE(isPositiveNumber(table.cell(row, "Clocks")));
        const std::string function = table.cell(row, "Function");
        EXPECT_TRUE(has(function, '_' + table.cell(row, "Types")));
        const bool ofFile = table.cell(row, "CodeFile") != "-";
        EXPECT_EQ(ofFile, !fits(function, "Zfp|Adler|CRC"));
        const std::string ratio = table.cell(row, "Ratio");
        EXPECT_TRUE(ratio == "-" || isPositiveNumber(ratio));
        if (fits(function, "LZ4|Zfp")) {
            EXPECT_NE(ratio, "-");
        }
    }
}

TEST_F(Tables, TheSummaryHasOneRecordPerTest) {
    runWell(quick + Texts{"-fntksCRC", "-fAdler", "-usum.csv"});
    const Texts lines = linesOf(text("sum.csv"));
    ASSERT_GT(lines.size(), 2u);
    EXPECT_EQ(lines[0].rfind(" Processor: ", 0), 0u);
    EXPECT_EQ(std::count(lines[0].begin(), lines[0].end(), ','), 4) << lines[0];
    EXPECT_EQ(lines[1], summaryNames);
    EXPECT_EQ(lines.back(), "END_DATA");
    auto records = summaryRecords(text("sum.csv"));
    ASSERT_EQ(records.size(), 4u);
    for (auto& [function, record] : records) {
        SCOPED_TRACE(function);
        EXPECT_EQ(record["Class"], "TimdcChecksum");
        EXPECT_EQ(record["SrcName"], "p_dcchecksum_ia");
        EXPECT_EQ(record["Result"], "OK");
        EXPECT_EQ(record["Status87"], "Ok");
        EXPECT_EQ(record["ExeName"], NTK_PERF_FILE);
    }
    EXPECT_TRUE(hasOnce(text("sum.csv"), "\n.Successes      ,4\n"));
}

} // namespace
