// From the files that runs leave to the formats, through the program.
#include <nlohmann/json.hpp>

#include "reader.h"

namespace report {

namespace {

using Json = nlohmann::json;

class ExchangeProgram : public Reader {
protected:
    static std::string records(const std::string& started, double clocks) {
        const std::string run =
            R"({"record":"run","format":"ntkperf","version":1,"started":")" + started +
            R"(","program":"2.0","keys":["-B"],"machine":{"processor":"A processor",)"
            R"("processors":2,"ticks_mhz":2000,"cache_bytes":null,"os":"Linux","computer":"desk"},)"
            R"("libraries":[],"corpus":[]})";
        const std::string measurement =
            R"({"record":"measurement","function":"ntksDecodeLZ4_8u","types":"8u",)"
            R"("source":"p_dclz4","parameters":{"CodeLength":16384,"CodeFile":"bib"},)"
            R"("values":{"Length":16384,"Ratio":2},"method":"Auto","clocks_per_call":null,)"
            R"("calls":21,"batches":7,"spread":0.01,"switches":0,"accuracy":0,)"
            R"("units_per_call":8192,"unit":"e","flops_per_call":0,"clocks_per_unit":)" +
            std::to_string(clocks) + R"(,"result":"OK","comment":"","deprecated":false,)" +
            R"("hot":false})";
        const std::string failure =
            R"({"record":"measurement","function":"ntksDecodeLZ4_8u","types":"8u",)"
            R"("source":"p_dclz4","parameters":{"CodeLength":16384,"CodeFile":"geo"},"values":{},)"
            R"("method":"Auto","clocks_per_call":null,"calls":0,"batches":0,"spread":null,)"
            R"("switches":0,"accuracy":null,"units_per_call":0,"unit":"e","flops_per_call":0,)"
            R"("clocks_per_unit":null,"result":"FUNCFAIL","comment":"status -5",)"
            R"("deprecated":false,"hot":false})";
        return run + '\n' + measurement + '\n' + failure + '\n' +
               R"({"record":"end","tests":1,"failed":1,"complete":true,"seconds":1})" + '\n';
    }

    static std::string table() {
        return "Processor,A processor  x2  2.00 GHz\nOS,Linux\nComputer,desk\nLibrary,\n"
               "Start,Sat Nov 21 01:02:03 2026\n"
               "Function,Types,Length,CodeFile,Ratio,Clocks,Unit,Rate,Result,Comment\n"
               "ntksDecodeLZ4_8u,8u,16384,bib,2.00,3.00,e,-,OK,nLps=21\n";
    }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }
};

} // namespace

TEST_F(ExchangeProgram, RecordsOfTwoRunsBecomeRepetitions) {
    const Answer answer =
        answerOf(NTK_REPORT_FILE " --json " + path("g.json") + " --bmf " + path("b.json") +
                 " --smaller-is-better " + path("s.json") + " --benchstat " + path("b.txt") + " " +
                 write("1.jsonl", records("2026-11-22T01:02:03+00:00", 3)) + " " +
                 write("2.jsonl", records("2026-11-22T01:03:03+00:00", 5)));
    ASSERT_EQ(answer.status, 0) << answer.text;
    const Json google = Json::parse(read("g.json"));
    ASSERT_EQ(google["benchmarks"].size(), 3u);
    const std::string name = "ntksDecodeLZ4_8u/CodeLength=16384 CodeFile=bib";
    for (const int run : {0, 1}) {
        const Json& row = google["benchmarks"][run];
        EXPECT_EQ(row["name"], name);
        EXPECT_DOUBLE_EQ(row["real_time"], 8192 * (run ? 5 : 3) / 2.0);
        EXPECT_DOUBLE_EQ(row["bytes_per_second"], 2000e6 * 2 / (run ? 5 : 3));
        EXPECT_EQ(row["iterations"], 21);
    }
    EXPECT_EQ(google["benchmarks"][2]["error_message"], "FUNCFAIL: status -5");
    EXPECT_EQ(Json::parse(read("b.json")), Json::parse(R"({")" + name + R"(": {"clocks-per-unit":
        {"value": 4.0, "lower_value": 3.0, "upper_value": 5.0}}})"));
    EXPECT_EQ(Json::parse(read("s.json"))[0]["value"], 2.0);
    EXPECT_NE(read("b.txt").find("\nBenchmarkntksDecodeLZ4_8u/CodeLength=16384/CodeFile=bib "
                                 "21 1.5 clocks/byte 2 ratio 1333.33"),
              std::string::npos)
        << read("b.txt");
}

TEST_F(ExchangeProgram, RunsOfATableAreToldFromThoseOfRecords) {
    const Answer answer = answerOf(NTK_REPORT_FILE " --json " + path("g.json") + " " +
                                   write("1.jsonl", records("2026-11-22T01:02:03+00:00", 3)) + " " +
                                   write("old.csv", table()));
    ASSERT_EQ(answer.status, 0) << answer.text;
    const Json rows = Json::parse(read("g.json"))["benchmarks"];
    ASSERT_EQ(rows.size(), 3u);
    const std::string exact = rows[0]["name"], rounded = rows[2]["name"];
    EXPECT_TRUE(exact.starts_with("ntksDecodeLZ4_8u/CodeLength=16384 CodeFile=bib Group="))
        << exact;
    EXPECT_TRUE(rounded.starts_with("ntksDecodeLZ4_8u/Length=16384 CodeFile=bib Group="))
        << rounded;
    EXPECT_TRUE(rounded.ends_with(" Units=1000000")) << rounded;
    EXPECT_DOUBLE_EQ(rows[2]["real_time"], 1.5e6);
}

} // namespace report
