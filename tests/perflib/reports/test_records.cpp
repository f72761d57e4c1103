// The lines of a records file and what they are made of; the program's tests hold them to the
// schema.
#include "psjsonrecords.h"
#include "psrecordlines.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"
#include "plain_test.h"
#include "psfileiterator.h"

namespace {

psMeasurement measurement() {
    psMeasurement m;
    m.function = "ntksProbe_8u";
    m.parameters.add("CodeLength", 7);
    m.times.clocksPerCall = 0.1;
    m.times.batches = 2;
    m.times.spread = 0.25;
    m.unitsPerCall = 3;
    m.unit = " ";
    m.result = PS_OK;
    return m;
}

std::string lineOf(const psMeasurement& m) {
    return psMeasurementLine(m).c_str();
}

} // namespace

TEST(RecordLines, HoldNumbersExactlyAndWhatIsNoneAsNull) {
    psMeasurement m = measurement();
    m.values.add("Ratio", 1.0 / 3);
    m.values.add("Level", std::nan(""));
    m.flopsPerCall = std::numeric_limits<double>::infinity();
    const std::string line = lineOf(m);
    for (const char* const part :
         {"\"parameters\":{\"CodeLength\":7},", "\"Ratio\":0.3333333333333333,\"Level\":null}",
          "\"clocks_per_call\":0.1,", "\"clocks_per_unit\":0.03333333333333333,",
          "\"spread\":0.25,", "\"accuracy\":null,", "\"flops_per_call\":null,", "\"unit\":\"\","}) {
        EXPECT_TRUE(has(line, part));
    }
    m.times.batches = 1;
    EXPECT_TRUE(has(lineOf(m), "\"spread\":null,")) << "of a single span";
    m.unitsPerCall = 0;
    EXPECT_TRUE(has(lineOf(m), "\"clocks_per_unit\":null,"));
}

TEST(RecordLines, OfFailuresAndDeprecatedValuesHaveNoFigures) {
    const std::string none = "\"clocks_per_call\":null,";
    psMeasurement failed = measurement(), deprecated = measurement(), nothing = measurement();
    failed.result = PS_FUNC_FAIL;
    deprecated.deprecated = true;
    nothing.times.clocksPerCall = 0;
    for (const psMeasurement& m : {failed, deprecated, nothing}) {
        EXPECT_TRUE(has(lineOf(m), none));
    }
    EXPECT_FALSE(has(lineOf(measurement()), none));
    EXPECT_TRUE(has(lineOf(failed), "\"result\":\"FUNCFAIL\""));
}

TEST(RecordLines, AreWholeWhateverTheTextsHold) {
    psTestFacts test;
    test.message = psString("a \"b\"\n\tc \xff \xc3\xa9 \0 d", 17);
    const std::string line = psTestLine(test).c_str();
    EXPECT_TRUE(has(line, R"("message":"a \"b\"\n\tc )"
                          "\xef\xbf\xbd \xc3\xa9 "
                          R"(\u0000 d"})"));
    EXPECT_EQ(line.find('\n'), line.length() - 1);
}

TEST(RecordLines, MessagesEndWithTheirTextAndAreNotEndless) {
    EXPECT_STREQ(psMessageText("-- one\n two\n\n").c_str(), "-- one\n two");
    EXPECT_STREQ(psMessageText("\n").c_str(), "");
    psString all;
    for (int i = 0; i < 1000; ++i) {
        all << "a line\n";
    }
    const std::string cut = psMessageText(all).c_str();
    EXPECT_TRUE(cut.ends_with("a line\n... (the log has more)")) << cut;
    EXPECT_LT(cut.size(), 4100u);
    EXPECT_GT(cut.size(), 3900u);
}

TEST(RecordLines, TimeHasTheOffsetOfThePlace) {
    const char* const before = getenv("TZ");
    const std::string kept = before ? before : "";
    setenv("TZ", "NST+3:30", 1);
    tzset();
    EXPECT_STREQ(psTimeText(1795318575).c_str(), "2026-11-22T00:06:15-03:30");
    before ? setenv("TZ", kept.c_str(), 1) : unsetenv("TZ");
    tzset();
}

TEST(RunFacts, AnInputIsARegularFileWithAllItsBytes) {
    const std::string file = writeFile(testPath("large"), std::string(200000, 'a'));
    const std::string link = testPath("link");
    std::filesystem::create_symlink(file, link);
    const auto input = psInputFactsOf(link.c_str());
    ASSERT_TRUE(input);
    EXPECT_EQ(input->name, link.c_str());
    EXPECT_EQ(input->path, std::filesystem::canonical(file).c_str());
    EXPECT_EQ(input->bytes, 200000);
    EXPECT_EQ(input->crc32,
              0xe069539bul); // python3 -c 'import zlib; print(hex(zlib.crc32(b"a" * 200000)))'
    EXPECT_EQ(psInputFactsOf(writeFile(testPath("check"), "123456789").c_str())->crc32, 0xcbf43926);
    for (const std::string& none : {testPath("missing"), testPath(""), std::string("/dev/zero")}) {
        EXPECT_FALSE(psInputFactsOf(none.c_str())) << none;
    }
}

TEST(RunFacts, LibrariesAreToldOnceAndTheirBuildApart) {
    const Aside<psList<psVersionHook>> hooks(ntkVersionList);
    static const NtkLibraryVersion full{"one", "1.2 (a (b))", "Jan 1 2026"}, bare{"two", "3", ""};
    psRegNtkVersion([] { return &full; });
    psRegNtkVersion([]() -> const NtkLibraryVersion* { return nullptr; });
    psRegNtkVersion([] { return &bare; });
    psRegNtkVersion([] { return &full; });
    const std::string line = psRunLine(psRunFactsOf({})).c_str();
    EXPECT_TRUE(has(line,
                    "\"libraries\":[{\"name\":\"one\",\"version\":\"1.2\",\"build\":\"a (b)\","
                    "\"date\":\"Jan 1 2026\",\"files\":["));
    EXPECT_TRUE(has(line, "{\"name\":\"two\",\"version\":\"3\",\"build\":null,\"date\":null,"));
    EXPECT_EQ(line.rfind("\"one\""), line.find("\"one\""));
}

TEST(JsonRecords, AMessageIsWhatTheLogGotOfTheTest) {
    const Aside<psList<psRecordWriter*>> writers(g_pRecordWriters);
    const std::string file = testPath("messages.jsonl");
    const Captured log(PS_OUT_WARN);
    PlainTest test("ntksProbe_8u");
    psJsonRecords records;
    ASSERT_TRUE(records.addStream(file.c_str(), false));
    g_ostrm << PS_ERR << "before\n" << PS_END;
    records.testBegins(test);
    g_ostrm << PS_ERR << "-- bad" << PS_END << PS_NORMAL << "usual\n" << PS_END;
    g_ostrm << PS_WARN << " news\n" << PS_END;
    records.testEnds(test, PS_FUNC_FAIL, 0.5);
    g_ostrm << PS_ERR << "behind\n" << PS_END;
    records.testBegins(test);
    records.testEnds(test, PS_OK, 0.25);
    records.close();
    const std::string text = readFile(file);
    EXPECT_TRUE(has(text, "\"seconds\":0.5,\"seconds_in_calls\":0.0,\"result\":\"FUNCFAIL\","
                          "\"message\":\"-- bad news\"}\n"));
    EXPECT_TRUE(has(text, "\"seconds\":0.25,\"seconds_in_calls\":0.0,\"result\":\"OK\","
                          "\"message\":\"\"}\n"));
}

TEST(JsonRecords, AFileIsToldOnceBeforeItsFirstMeasurement) {
    const Aside<psList<psRecordWriter*>> writers(g_pRecordWriters);
    const std::string file = testPath("files.jsonl");
    const std::string known = writeFile(testPath("known"), "1"),
                      other = writeFile(testPath("other"), "2");
    const auto read = [](const std::string& name) {
        char byte = 0;
        psFileIterator(name.c_str()).readData(&byte, 1, 0);
    };
    psJsonRecords records;
    ASSERT_TRUE(records.addStream(file.c_str(), false));
    psRunPlan plan;
    plan.inputFiles.append(known.c_str());
    records.begin(plan);
    for (const std::string& name : {known, other, other, known}) {
        read(name);
        records.write(measurement());
    }
    records.close();
    read(other);
    std::string kinds;
    for (const std::string& line : linesOf(readFile(file))) {
        kinds += line.substr(11, line.find('"', 11) - 11) + " ";
    }
    EXPECT_EQ(kinds, "run measurement file measurement measurement measurement ");
}
