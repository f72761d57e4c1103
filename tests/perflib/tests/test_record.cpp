// The record of a measurement: what the engine and the test put into it, and who gets it.

#include <vector>

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"
#include "psbase.h"
#include "psbatches.h"
#include "pscstream.h"
#include "psenum.h"
#include "psmeasurement.h"
#include "psrecordwriter.h"
#include "psstepiterator.h"
#include "pstable.h"
#include "pstest.h"
#include "pstestformat.h"

namespace {
psResult g_outcome = PS_OK;
std::vector<int> g_spans; // of the timing function

psResult loop(int, long long* clocks) {
    for (const int span : g_spans) {
        g_batches.add(span);
    }
    *clocks = 12345;
    return g_outcome;
}

class RecordTest : public psTest {
public:
    RecordTest() : psTest(loop, nullptr, "ntksProbe_8u", "probe.cpp", "Probe"), level(1, "level") {
        length.init(1000, 2000, 2, PS_STEP_MUL, "CodeLength");
        mode.addMap("fast", 7);
        mode.init(7, "mode");
        none.init(0, "");
    }
    bool canStart() override {
        for (psParameter* parm :
             std::initializer_list<psParameter*>{&length, &mode, &level, &none}) {
            regParm(*parm);
        }
        return true;
    }
    double getDivisor() override { return 100; }
    psString getUnit() override { return "e"; }
    psString typeNames() override { return "8u"; }
    void addValues(psNamedValues& values) override {
        if (addsValues) {
            values.add("Ratio", 2.0521);
            values.add("Length", length.value() - 1);
        }
    }
    psStepIterator<int> length;
    psMapIterator<int> mode;
    psIterator<double> level;
    psIterator<int> none; // without a name
    bool addsValues = true;
};

struct Collector : psRecordWriter {
    void write(const psMeasurement& record) override { records.append(record); }
    psList<psMeasurement> records;
};

class RecordsOfATest : public testing::Test {
protected:
    void SetUp() override {
        g_tool.setMethodLoop(3);
        g_outcome = PS_OK;
        g_spans = {};
        psRegRecordWriter(writer);
        for (const char* name : {"Length", "Variant", "Ratio"}) {
            psRegParmColumn(name);
        }
        psSetTableColumns();
    }
    void TearDown() override { g_tool.setMethodAuto(); }

    // Runs the test; the lines of the table. The log is in said.
    std::string tableOf(psTest& measured) {
        const Captured log;
        g_cstrm.addStream(m_path.c_str(), false);
        measured.run();
        g_cstrm.close();
        said = log.text();
        return readFile(m_path);
    }
    Collector writer;
    RecordTest test;
    std::string said;

private:
    const std::string m_path = testPath("records.csv");
    const Aside<psList<psRecordWriter*>> m_writers{g_pRecordWriters};
    const Aside<psStringList> m_columns{g_pParmColumns};
};
} // namespace

TEST_F(RecordsOfATest, HoldWhatWasMeasuredInFullPrecision) {
    tableOf(test);
    ASSERT_EQ(writer.records.count(), 2);
    const psMeasurement& m = writer.records.front();
    EXPECT_STREQ(m.function.c_str(), "ntksProbe_8u");
    EXPECT_STREQ(m.types.c_str(), "8u");
    EXPECT_STREQ(m.combination().c_str(), "CodeLength=1000 mode=fast level=1");
    EXPECT_STREQ(writer.records.back().combination().c_str(), "CodeLength=2000 mode=fast level=1");
    EXPECT_EQ(*m.parameters.find("CodeLength"), psValue(1000LL)); // each with its own type
    EXPECT_EQ(*m.parameters.find("mode"), psValue(psString("fast")));
    EXPECT_EQ(*m.parameters.find("level"), psValue(1.0));
    EXPECT_EQ(*m.values.find("Ratio"), psValue(2.0521));
    EXPECT_EQ(m.values.find("mode"), nullptr);
    EXPECT_STREQ(m.times.method.c_str(), "Manual");
    EXPECT_EQ(m.times.clocksPerCall, 12345);
    EXPECT_EQ(m.clocksPerUnit(), 123.45);
    EXPECT_EQ(m.times.calls, 3);
    EXPECT_FALSE(m.times.hasAccuracy);
    EXPECT_STREQ(m.unit.c_str(), "e");
    EXPECT_STREQ(m.comment.c_str(), "nLps=3");
    EXPECT_EQ(m.result, PS_OK);
    EXPECT_TRUE(m.isMeasured());
}

TEST_F(RecordsOfATest, AreWrittenByTheColumnsOfTheTable) {
    EXPECT_EQ(tableOf(test), "ntksProbe_8u,-,999,-,2.05,123,e,-,OK,nLps=3,-\n"
                             "ntksProbe_8u,-,1999,-,2.05,123,e,-,OK,nLps=3,-\n");
    test.addsValues = false; // the parameters then fill the columns in their order
    test.length.init(5, "CodeLength");
    EXPECT_EQ(tableOf(test), "ntksProbe_8u,-,5,fast,1,123,e,-,OK,nLps=3,-\n");
}

TEST_F(RecordsOfATest, OfAFailureHoldNoFigures) {
    g_outcome = PS_FUNC_FAIL;
    EXPECT_EQ(tableOf(test), "ntksProbe_8u,-,999,-,2.05,-,e,-,FUNCFAIL,nLps=3,-\n");
    ASSERT_EQ(writer.records.count(), 1);
    EXPECT_EQ(writer.records.front().result, PS_FUNC_FAIL);
    EXPECT_FALSE(writer.records.front().isMeasured());
}

TEST_F(RecordsOfATest, MethodsAreNamedAsTheUserChoosesThem) {
    std::string methods;
    for (const psTimingMethod& method : psTool::methods()) {
        psTool tool;
        tool.method = method.id;
        methods += tool.times().method.c_str() + std::string(tool.times().hasAccuracy ? "* " : " ");
    }
    EXPECT_EQ(methods, "Auto* Manual Statistic Iterative* ");
    psTool unknown;
    unknown.method = 77;
    EXPECT_TRUE(unknown.times().method.empty());
}

TEST_F(RecordsOfATest, TellHowFarTheSpansOfAMeasurementLieApart) {
    psTest::m_figures = {};
    g_spans = {100, 110, 120, 100, 400};
    EXPECT_EQ(tableOf(test), "ntksProbe_8u,-,999,-,2.05,123,e,-,OK,nLps=3,10.0\n"
                             "ntksProbe_8u,-,1999,-,2.05,123,e,-,OK,nLps=3,10.0\n");
    EXPECT_TRUE(has(said, " clocks\nspread=10.0%"));
    EXPECT_EQ(psTest::m_figures.measured, 2);
    EXPECT_EQ(psTest::m_figures.spread, 2);
    EXPECT_EQ(writer.records.front().times.batches, 5); // of the last run alone
    g_outcome = PS_FUNC_FAIL;
    tableOf(test);
    EXPECT_EQ(psTest::m_figures.measured, 2);
    EXPECT_EQ(psTest::m_figures.spread, 2);
}
