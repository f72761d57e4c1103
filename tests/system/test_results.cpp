// The results of tests that are known to end with them: their records and the closing counts.
#include "session.h"

#include <ctime>
#include <numeric>

namespace {

struct KnownResult {
    const char* function;
    int code;
};
const KnownResult knownResults[] = {
    {"result00", 0},       {"result01", 1},        {"result02", 2},      {"result03", 3},
    {"result04", 4},       {"result05", 5},        {"result06", 6},      {"result07", 7},
    {"result08", 8},       {"result09", 9},        {"result10_fpe", 10}, {"result10_ill", 10},
    {"result10_segv", 10}, {"result10_throw", 10}, {"result11", 11},
};
const char* const shortNames[] = {"UNDEFINED", "OK",       "ACCURWRN",  "BADSTSWRN",
                                  "DATAWRN",   "FUNCWRN",  "WRN",       "ACCURFAIL",
                                  "DATAFAIL",  "FUNCFAIL", "EXCPTFAIL", "FAIL"};

// The closing counts as they are explained to users: a line each, label and count apart.
std::vector<std::pair<std::string, int>> closingCounts(const std::vector<int>& codes) {
    int n[12] = {};
    for (const int code : codes) {
        ++n[code];
    }
    const int total = std::accumulate(n, n + 12, 0);
    return {{".Number of tests", total},
            {".Successes      ", n[1]},
            {".Failures       ", n[2] + n[3] + n[4] + n[5] + n[7] + n[8] + n[9] + n[10]},
            {"...Fails        ", n[7] + n[8] + n[9] + n[10]},
            {".....-FAIL      ", n[7] + n[8] + n[9]},
            {".....-EXCPTFAIL ", n[10]},
            {"...Notes        ", n[2] + n[3] + n[4] + n[5]},
            {".....-NOTE      ", n[2] + n[4] + n[5]},
            {".....-BADSTSWRN ", n[3]},
            {"...Undefined    ", n[0] + n[6] + n[11]}};
}

void expectEnd(const std::string& written, const std::string& end) {
    ASSERT_GT(written.length(), end.length());
    std::string last = written.substr(written.length() - end.length());
    last[end.find("0x") + 1] = 'x'; // the seconds
    EXPECT_EQ(last, end);
}

class Results : public SystemTest {
protected:
    // Runs tests that end with these results.
    void expectCounts(const Texts& keys, const std::vector<KnownResult>& known) {
        const Outcome outcome = runWell(Texts{"-B", "-usum.csv", "-l" + directory()} + keys,
                                        {.program = NTK_EXAMPLE_FILE});
        auto records = summaryRecords(text("sum.csv"));
        EXPECT_EQ(records.size(), known.size());
        std::vector<int> codes;
        for (const auto& [function, code] : known) {
            EXPECT_EQ(records[function]["Result"], shortNames[code]) << function;
            codes.push_back(code);
        }
        const std::string thick(79, '='), thin(79, '-');
        std::string console = thick + "\n PS Summary\n" + thin + "\n", table = "\nPS Summary\n";
        for (const auto& [label, count] : closingCounts(codes)) {
            console += " " + label + ": " + std::to_string(count) + "\n";
            table += label + "," + std::to_string(count) + "\n";
        }
        expectEnd(outcome.output, console + " .Total time     : 00:00:0x\n" +
                                      " .-F not reached : NULL\n" + thick + "\n");
        expectEnd(text("sum.csv"),
                  table + ".Total time     ,00:00:0x\n.-F not reached ,NULL\nEND_DATA\n");
    }
};

TEST_F(Results, AreRecordedAndCounted) {
    const std::vector<KnownResult> all(std::begin(knownResults), std::end(knownResults));
    expectCounts({"-fresult"}, all);
    for (const KnownResult& one : all) {
        SCOPED_TRACE(one.function);
        expectCounts({"-f=" + std::string(one.function)}, {one});
    }
}

TEST_F(Results, NotesArePassedOverWhereOnlyErrorsAreTold) {
    std::vector<KnownResult> milder(std::begin(knownResults), std::end(knownResults));
    for (KnownResult& known : milder) {
        known.code = known.code >= 2 && known.code <= 6 ? 1 : known.code;
    }
    expectCounts({"-fresult", "-LERR"}, milder);
}

// The text between the label and the end of its line, at the first place.
std::string told(const std::string& output, const std::string& label) {
    const size_t at = output.find(label);
    EXPECT_NE(at, std::string::npos) << label << output;
    return at == std::string::npos ? "" : linesOf(output.substr(at + label.length())).front();
}

long secondsAt(const std::string& date) {
    std::tm time = {};
    EXPECT_NE(strptime(date.c_str(), "%a %b %d %T %Y", &time), nullptr) << date;
    return timegm(&time);
}

TEST_F(Results, TheTotalTimeIsThatOfTheRun) {
    const Outcome outcome =
        runWell({"-B", "-f=memset", "-gdone", "-l" + directory()},
                {.program = NTK_EXAMPLE_FILE, .environment = {"XDG_CACHE_HOME=" + directory()}});
    const Texts signal = linesOf(text("done.end"));
    ASSERT_EQ(signal.size(), 3u);
    const long seconds = secondsAt(signal[1]) - secondsAt(told(outcome.output, " Start    : "));
    EXPECT_GE(seconds, 2); // the frequency is measured, as no earlier run has left it
    std::tm total = {};
    EXPECT_NE(strptime(signal[0].c_str(), "%T", &total), nullptr) << signal[0];
    EXPECT_EQ(total.tm_hour * 3600 + total.tm_min * 60 + total.tm_sec, seconds);
    EXPECT_EQ(told(outcome.output, " .Total time     : "), signal[0]);
}

} // namespace
