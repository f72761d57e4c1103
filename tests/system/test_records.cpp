// The records file: what a run leaves for programs, held to its schema.
#include <csignal>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "session.h"

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

class Records : public SystemTest {
protected:
    void SetUp() override {
        const Outcome python =
            runCommand({.program = "/usr/bin/python3", .arguments = {"-c", "import jsonschema"}});
        if (python.status != 0) {
            GTEST_SKIP() << "no line can be held to the schema: apt-get install python3-jsonschema";
        }
    }
    // Runs and checks what it leaves.
    Outcome runAndCheck(const Texts& keys, const Command& how = {}) {
        const Outcome outcome = run(keys + Texts{"-xrun"}, how);
        check("run.jsonl");
        return outcome;
    }
    Outcome runWith(const std::string& deeds, const Texts& keys) {
        const Outcome outcome = runWithDeeds(deeds, quick + keys + Texts{"-xrun"});
        check("run.jsonl");
        return outcome;
    }
    void check(const std::string& name) {
        const Outcome checked =
            runCommand({.program = "/usr/bin/python3",
                        .arguments = {NTK_RECORDS_CHECK_FILE, NTK_RECORDS_SCHEMA_FILE, path(name)},
                        .input = ""});
        EXPECT_EQ(checked.status, 0) << checked.output << checked.errors;
        records.clear();
        for (const std::string& line : linesOf(text(name))) {
            records.push_back(Json::parse(line));
        }
    }
    // " run measurement measurement test end"
    std::string kinds() const {
        std::string all;
        for (const Json& record : records) {
            all.append(" ").append(record["record"].get<std::string>());
        }
        return all;
    }
    std::vector<Json> ofKind(const std::string& kind) const {
        std::vector<Json> found;
        for (const Json& record : records) {
            if (record["record"] == kind) {
                found.push_back(record);
            }
        }
        return found;
    }
    Json testOf(const std::string& function) const {
        for (const Json& test : ofKind("test")) {
            if (test["function"] == function) {
                return test;
            }
        }
        return {};
    }

    std::vector<Json> records; // of the file checked last
};

TEST_F(Records, HaveWhatTheTableHasInFullPrecision) {
    write("data", "123456789");
    const Outcome outcome =
        runAndCheck(quick + Texts{"-f=ntksEncodeLZ4_8u", "-f=ntksCRC32_8u", "-dCodeLength=4;9",
                                  "-dCodeFile=data", "-rtable.csv"});
    EXPECT_EQ(outcome.errors, "");
    ASSERT_EQ(kinds(), " run measurement measurement test measurement measurement test end");
    const Json& run = records[0];
    EXPECT_EQ(run["corpus"], Json::array({{{"name", "data"},
                                           {"path", fs::canonical(path("data")).string()},
                                           {"bytes", 9},
                                           {"crc32", "cbf43926"}}}));
    EXPECT_EQ(run["keys"][2], "-dNumLoops=1");
    EXPECT_EQ(run["libraries"].size(), 1u) << run;
    EXPECT_TRUE(fs::equivalent(run["libraries"][0]["files"][0]["path"].get<std::string>(),
                               NTK_LIBRARY_DIRECTORY "/libntkdc.so.12"))
        << run;

    const Table table(text("table.csv"));
    const std::vector<Json> measured = ofKind("measurement");
    ASSERT_EQ(measured.size(), table.rows.size());
    for (size_t i = 0; i < measured.size(); ++i) {
        const Json& m = measured[i];
        EXPECT_EQ(m["function"], table.cell(table.rows[i], "Function"));
        const double perUnit = m["clocks_per_unit"];
        EXPECT_NEAR(perUnit, std::stod(table.cell(table.rows[i], "Clocks")), perUnit * 0.006);
        EXPECT_EQ(perUnit * m["units_per_call"].get<double>(), m["clocks_per_call"]);
        EXPECT_EQ(m["comment"], table.cell(table.rows[i], "Comment"));
    }
    EXPECT_EQ(measured.back()["parameters"].dump(), R"({"CodeFile":"data","CodeLength":9})");
    EXPECT_EQ(measured.back()["values"]["Length"], 9);
    EXPECT_EQ(testOf("ntksEncodeLZ4_8u")["test"], "TimdcLZ4");
    EXPECT_EQ(records.back()["tests"], 2);
    EXPECT_EQ(records.back()["complete"], true);
}

// By a test, in all, and in the log for those who ask; an information test has none.
TEST_F(Records, TellTheTimeInsideMeasuredCalls) {
    const Outcome outcome =
        runAndCheck({"-B", "-fCRC", "-f=__psHost", "-dCodeLength=100000", "-c10", "-LINFO"});
    double sum = 0;
    for (const Json& test : ofKind("test")) {
        const double inCalls = test["seconds_in_calls"], all = test["seconds"];
        EXPECT_EQ(inCalls > 0, test["function"] != "__psHost") << test;
        EXPECT_LT(inCalls, all) << test;
        sum += inCalls;
    }
    const double inCalls = records.back()["seconds_in_calls"], all = records.back()["seconds"];
    EXPECT_NEAR(inCalls, sum, 1e-6);
    EXPECT_LT(inCalls, all);
    char part[64];
    std::snprintf(part, sizeof part, " inside measured calls,\n            %.3f of ", inCalls);
    EXPECT_TRUE(hasOnce(outcome.output, part));
    EXPECT_EQ(timesIn(runAndCheck({"-B", "-fCRC", "-dCodeLength=100000", "-c10"}).output,
                      "inside measured calls"),
              0);
}

// Those of the example, one for each; and of the library in its ways to fail.
TEST_F(Records, OfAFailureHaveTheWordsOfTheLog) {
    runAndCheck({"-B", "-fresult", "-olog.txt", "-l" + directory()}, {.program = NTK_EXAMPLE_FILE});
    const std::string log = text("log.txt");
    std::set<std::string> words;
    for (const Json& test : ofKind("test")) {
        const std::string result = test["result"], message = test["message"];
        words.insert(result);
        EXPECT_EQ(message.empty(), result == "OK" || result == "UNDEFINED") << test;
        for (const std::string& line : linesOf(message)) { // a disturbed one has others between
            EXPECT_TRUE(has(log, line));
        }
        EXPECT_FALSE(message.ends_with("\n")) << test;
    }
    EXPECT_EQ(words.size(), 12u);
    EXPECT_EQ(records.back()["failed"], 8);
    for (const Json& m : ofKind("measurement")) {
        const bool isFailure = m["result"].get<std::string>().ends_with("FAIL");
        EXPECT_EQ(m["clocks_per_call"].is_null(), isFailure) << m;
        EXPECT_EQ(m["clocks_per_unit"].is_null(), isFailure) << m;
    }

    runWith("ntksCRC32_8u segv; ntksCRC32C_8u status -4; ntksEncodeLZ4HashTableInit_8u status -4; "
            "ntksEncodeLZO_8u at 3 signal 15",
            {"-fCRC", "-f=ntksDecodeLZ4_8u", "-f=ntksEncodeLZO_8u"});
    const struct {
        const char *function, *result, *message;
    } cases[] = {
        {"ntksCRC32_8u", "EXCPTFAIL", "--NTK. Signal: Illegal storage access. in ntkFunctionCalls"},
        {"ntksCRC32C_8u", "FUNCFAIL", "--NTK FAIL. status = -4 in ntksCRC32C_8u: "},
        {"ntksDecodeLZ4_8u", "FUNCFAIL", "--NTK FAIL. status = -4 in "},
        {"ntksCRC32_BZ2_8u", "OK", ""},
    };
    for (const auto& c : cases) {
        const Json test = testOf(c.function);
        EXPECT_EQ(test["result"], c.result) << test;
        EXPECT_TRUE(test["message"].get<std::string>().starts_with(c.message)) << test;
    }
    EXPECT_EQ(records.back()["complete"], false) << "SIGTERM";
}

TEST_F(Records, NamesAreWhateverTheyAre) {
    const std::string odd = "a \"quoted\"\nline, \\ and \xff";
    write(odd, std::string(100, 'x'));
    write("own.ini", "[ntksEncodeLZ4_8u]\nCodeFile=own\n");
    write("own", "data of its own");
    runAndCheck(quick + Texts{"-f=ntksEncodeLZ4_8u", "-dCodeLength=9", "-dCodeFile=" + odd});
    const std::string shown =
        "a \"quoted\"\nline, \\ and \xef\xbf\xbd"; // the replacement character
    ASSERT_EQ(kinds(), " run measurement test end");
    EXPECT_EQ(records[0]["corpus"][0]["name"], shown);
    EXPECT_EQ(records[1]["parameters"]["CodeFile"], shown);

    // A file that only the section of the test names has a line before its first measurement.
    runAndCheck(quick +
                Texts{"-f=ntksEncodeLZ4_8u", "-dCodeLength=4;8", "-iown", "-p" + directory()});
    ASSERT_EQ(kinds(), " run file measurement measurement test end");
    EXPECT_EQ(records[0]["corpus"].size(), 0u) << records[0];
    EXPECT_EQ(records[1]["name"], "own");
    EXPECT_EQ(records[1]["bytes"], 15);
}

TEST_F(Records, AKilledRunLeavesWhatItHad) {
    const Outcome outcome = runWith("ntksCRC32_8u if 2 65536 signal 9", {"-fCRC"});
    EXPECT_EQ(outcome.signal, SIGKILL);
    const std::string all = kinds();
    EXPECT_TRUE(all.starts_with(" run measurement")) << all;
    EXPECT_TRUE(all.ends_with(" test measurement measurement")) << all;
    EXPECT_TRUE(text("run.jsonl").ends_with("}\n"));
}

} // namespace
