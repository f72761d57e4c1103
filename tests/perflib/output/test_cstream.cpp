#include "pscstream.h"

#include <malloc.h>

#include <gtest/gtest.h>

#include "files.h"
#include "psostream.h"

class Table : public testing::Test {
protected:
    Table() { m_table.addStream(m_path.c_str(), false); }

    void fill(std::initializer_list<const char*> cells) {
        for (const char* cell : cells) {
            m_table << cell;
        }
    }
    std::string text() const { return readFile(m_path); }

    const std::string m_path = testPath("table.csv");
    psCStream m_table;
};

TEST_F(Table, LinesHaveTheColumnsAskedFor) {
    const struct {
        std::initializer_list<const char*> cells;
        int columns;
        const char* line;
    } cases[] = {
        {{"a", "", "c"}, 5, "a,-,c,-,-\n"},
        {{"a", "b", "c"}, 0, "a,b,c\n"},
        {{"a", "b", "c"}, 2, "a,b\n"},
        {{}, 3, "-,-,-\n"},
        {{}, 0, "-\n"},
        {{"1,5", "two\r\nlines", "q\"q", " "}, 0, "1 5,two  lines,q\"q, \n"},
    };
    std::string expected;
    for (const auto& c : cases) {
        fill(c.cells);
        m_table.lineOut(c.columns);
        EXPECT_EQ(text(), expected += c.line); // every line is in the file at once
    }
    EXPECT_EQ(m_table.lineCount(), 6);
}

TEST_F(Table, ColumnsBeyondTheLimitAreDropped) {
    std::string line = "0";
    for (int i = 0; i < 33; ++i) {
        m_table.setNextColm(psText(i));
    }
    for (int i = 1; i < 32; ++i) {
        line += ',';
        line += std::to_string(i);
    }
    psString cell = "untouched";
    for (const int i : {32, 1000, -1}) {
        m_table.setColm(i, "x");
        EXPECT_FALSE(m_table.getColm(i, cell)) << i;
    }
    EXPECT_STREQ(cell.c_str(), "untouched");
    EXPECT_TRUE(m_table.getColm(31, cell));
    EXPECT_STREQ(cell.c_str(), "31");
    m_table.lineOut(40);
    EXPECT_EQ(text(), line + "\n");
}

TEST_F(Table, CellsCountOnlyBelowTheNextColumn) {
    m_table << "a";
    m_table.setColm(2, "c");
    m_table.lineOut(3);
    m_table << "a";
    m_table.setColm(2, "c");
    m_table.skipToColm(3);
    m_table << "d"
            << "\n"
            << "a"
            << "b";
    m_table.skipToColm(1); // what stands from there on is dropped
    m_table.lineOut(3);
    EXPECT_EQ(text(), "a,-,-\na,-,c,d\na,-,-\n");
    EXPECT_EQ(m_table.nextColm(), 0);
}

TEST_F(Table, PostponedLinesComeOutInOrder) {
    for (const char* name : {"first", "second"}) {
        fill({name, "x"});
        m_table.linePostpone();
        EXPECT_EQ(m_table.nextColm(), 0);
    }
    EXPECT_EQ(m_table.lineCount(), 0);
    fill({"before"});
    m_table.lineOut(0);
    m_table.linePostponeOut(3);
    m_table.linePostponeOut(3);
    EXPECT_EQ(text(), "before\nfirst,x,-\nsecond,x,-\n");
    EXPECT_EQ(m_table.lineCount(), 3);
}

TEST_F(Table, TheFirstPairWithEqualParametersIsReported) {
    using Lines = std::initializer_list<std::initializer_list<const char*>>;
    const struct {
        int columns;
        Lines lines;
        const char* pair; // line numbers after one title line
    } cases[] = {
        {2, {{"a", "b", "1"}, {"a", "b", "2"}}, "2 & 3"},
        {2, {{"a", "b"}, {"b", "a"}, {"a", "c"}}, nullptr},
        {1, {{"a"}, {"a"}, {"a"}, {"a"}}, "2 & 3"},
        {1, {{"a"}, {"b"}, {"b"}, {"a"}}, "2 & 5"}, // the earliest first line wins
        {1, {{"b"}, {"a"}, {"a"}, {"b"}}, "2 & 5"},
        {0, {{"a"}, {"a"}}, nullptr},
        {99, {{"a"}, {"a"}}, "2 & 3"},
        {1, {}, nullptr},
    };
    for (const auto& c : cases) {
        const std::string log = testPath("log.txt");
        g_ostrm.setOutLevel(PS_OUT_WARN);
        g_ostrm.addStream(log.c_str(), false);
        psCStream table;
        table << "title"
              << "\n";
        table.identicalLinesStart(c.columns);
        for (const auto& line : c.lines) {
            for (const char* cell : line) {
                table << cell;
            }
            table.lineOut(0);
        }
        const bool found = c.pair != nullptr;
        EXPECT_EQ(table.identicalLinesStop(), found);
        EXPECT_FALSE(table.identicalLinesStop());
        const std::string note = " Performance table note:\n Lines " +
                                 std::string(found ? c.pair : "") + " have identical parameters\n";
        EXPECT_EQ(readFile(log), found ? note : "");
        g_ostrm.close();
    }
}

#ifndef __SANITIZE_ADDRESS__ // it counts in its own way
TEST_F(Table, AWatchedLineCostsAFewBytes) {
    constexpr int lines = 100000;
    m_table.identicalLinesStart(psCStream::maxColumns);
    const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    for (int i = 0; i < lines; ++i) {
        fill({psText(i).c_str(), "a name of a file", "x"});
        m_table.lineOut(0);
    }
    EXPECT_LT(mallinfo2().uordblks + mallinfo2().hblkhd - before, 64u * lines);
    EXPECT_FALSE(m_table.identicalLinesStop());
}
#endif

TEST_F(Table, PostponedLinesAreWatchedWhenTheyComeOut) {
    m_table.identicalLinesStart(1);
    fill({"a"});
    m_table.linePostpone();
    m_table.linePostponeOut(1);
    fill({"a"});
    m_table.lineOut(0);
    EXPECT_TRUE(m_table.identicalLinesStop());
}

TEST_F(Table, LinesOutsideTheWatchAreNotCompared) {
    fill({"a"});
    m_table.lineOut(0);
    for (int watch = 0; watch < 2; ++watch) {
        m_table.identicalLinesStart(1); // forgets what an earlier watch saw
        fill({"a"});
        m_table.lineOut(0);
    }
    EXPECT_FALSE(m_table.identicalLinesStop());
    fill({"a"});
    m_table.lineOut(0);
    EXPECT_FALSE(m_table.identicalLinesStop());
    const psString row[] = {"a", "b"}, other[] = {"a", "c"};
    EXPECT_TRUE(psCStream::identicalColms(row, other, 1));
    EXPECT_FALSE(psCStream::identicalColms(row, other, 2));
    EXPECT_TRUE(psCStream::identicalColms(row, other, 0));
}

TEST_F(Table, EveryFileGetsEveryLine) {
    const std::string copy = testPath("copy.csv"), console = testPath("console");
    writeFile(copy, "old\n");
    EXPECT_TRUE(m_table.addStream(copy.c_str(), true));
    EXPECT_FALSE(m_table.addStream("/no such/table.csv", false));
    m_table.addStream(new o_stream);
    {
        const StdoutTo redirect(console);
        m_table << "line"
                << "\n";
    }
    EXPECT_EQ(text(), "line\n");
    EXPECT_EQ(readFile(copy), "old\nline\n");
    EXPECT_EQ(readFile(console), "line\n");
    m_table.close();
    EXPECT_TRUE(m_table.empty());
    m_table << "nowhere"
            << "\n";
    EXPECT_EQ(text(), "line\n");
}
