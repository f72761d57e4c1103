#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "../../patterns.h"
#include "captured.h"
#include "option_session.h"

namespace {

// A text with the directory of the test in place of "DIR".
std::string placed(std::string text) {
    const size_t at = text.find("DIR");
    return at == std::string::npos ? text : text.replace(at, 3, testPath("")).c_str();
}

} // namespace

// The system tests cover what the keys do in the guide's examples.
TEST(Options, EffectAndReportOfUnusualArguments) {
    const struct {
        char key;
        const char *argument, *effect, *info;
    } cases[] = {
        {'A', "All", "ask=15",
         "ask, timing method, common parameters, data misalignment, each test parameters from "
         "console"},
        {'d', " Len = 5=6 ", "preset=Len", "set parameter Len to 5=6"},
        {'d', "Len=", "preset=Len", "set parameter Len to empty value"},
        {'d', " =5", "", "ignored: incorrect parameter setting, <name>=<value> is expected"},
        {'i', "", "", "read PS parameters from file DIRprog.ini: there is no such file"},
        {'I', "a.b", "", "write PS parameters to file DIRa.b and exit"},
        {'P', "", "pressing",
         "read tested function names from ini-file: no test will be run without -i or -I key"},
        {'L', "TRACE|DATA", "level=103", nullptr},
        {'L', "INFO", "level=15",
         "output errors & warnings & performance for each parameter set & detailed course of "
         "performance measurement"},
        {'L', "ERR,LOUD", "level=1",
         "output errors (not all names are one of ERR, WARN, PERF, INFO, TRACE or DATA)"},
        {'J', "", "", "set number of external measurement loops to 8"},
        {'j', "-1", "", "ignored: incorrect number of loops"},
        {'j', "99999999999", "", "ignored: incorrect number of loops"},
        {'c', "0x10", "ms=16", "set min number of ms for 1 measurement to 16"},
        {'R', "a.b", nullptr, "add PS results to file DIRa.b"},
        {'q', "a", nullptr, "create file DIRa_name.csv and write function parameter name lines"},
        {'u', "", nullptr, "create file DIRprog_sum.csv and write summary table"},
        {'x', "", nullptr, "create file DIRprog.jsonl and write records for programs"},
        {'q', "+", "names=1", "ignored: neither of -r and -R key present"},
        {'Q', "", "", "ignored: no -q key present"},
        {'g', "/x/y", "end=/x/y", "create file /x/y at the end of PS work"},
        {'f', "=LZ4", "cond=02LZ4", "run tests with function name equal to LZ4"},
        {'f', "+", "", "ignored: empty function pattern"},
        {'t', "-Dict", "cond=10Dict", "don't run tests with test name that contains Dict"},
        {'m', "+dc", "cond=20dc", "run only tests with source file name that contains dc"},
        {'k', "OR", "", "run tests that meet -f and -t and -m conditions"},
        {'F', "", "", "start testing from the first function"},
        {'Y', "LOW", "priority=3", "set low process priority (superuser only)"},
        {'Y', "high", "", "ignored: incorrect priority, HIGH, NORMAL or LOW is expected"},
        {'H', "xyz", "hot=1", "add 'Interest' column to table file"},
        {'T', "SSE2,FOO,BAR", "",
         "call ntkSetCpuFeatures( 0x7 ), unknown cpu features FOO,BAR are ignored"},
        {'S', "", "", "ignored: incorrect option key, -SU is expected"},
        {'@', "x", "", "ignored: -@ key in argument file"},
        {'?', "h", "", "type extended help of key -h"},
    };
    for (const auto& c : cases) {
        OptionSession session;
        SCOPED_TRACE(std::string("-") + c.key + c.argument);
        if (c.info) {
            EXPECT_EQ(session.info(c.key, c.argument), placed(c.info));
        }
        if (c.effect) {
            EXPECT_EQ(session.effect(c.key, c.argument), placed(c.effect));
        }
    }
}

TEST(Options, LaterKeysAddOrReplace) {
    const struct {
        const char* keys; // key and argument, separated by blanks
        const char* effect;
    } cases[] = {
        {"AT AM", "ask=5"},
        {"LWARN LTRACE", "level=39"},
        {"s- s", "quick"},
        {"HONLY H", "hot=1"},
        {"kor kand", ""},
        {"YHIGH Yx", "priority=1"},
        {"J5 J0", "ext=5"},
        {"Ff Fg", "start=g"},
        {"e+ e", "list=0"},
        {"ga gb", "end=DIRb.end"},
        {"fa ta f=b f", "cond=01a cond=11a cond=02b"},
    };
    for (const auto& c : cases) {
        OptionSession session;
        std::istringstream words(c.keys);
        std::string effect;
        for (std::string word; words >> word;) {
            effect = session.effect(word[0], word.c_str() + 1);
        }
        EXPECT_EQ(effect, placed(c.effect)) << c.keys;
    }
}

TEST(Options, SessionsThatMeasureNothingPassKeysOver) {
    constexpr int list = 1, help = 2, version = 3;
    const struct {
        int exit;
        const char *takenKeys, *reason;
    } cases[] = {
        {list, "oOrRgnlftmkHTse@h?", "ignored because of -e option"},
        {help, "g@h?", "ignored because of -h option"},
        {version, "gv@h?", "ignored because of -v option"},
    };
    for (const auto& c : cases) {
        OptionSession session;
        psSession::m_exitLevel = c.exit;
        std::string taken;
        for (const psOption& option : session.options()) {
            if (option.info("U=") == c.reason) {
                const std::string before = session.state();
                EXPECT_EQ(session.effect(option.key, "U="), before) << option.key;
            } else {
                taken += option.key;
            }
        }
        EXPECT_EQ(taken, c.takenKeys) << c.exit;
        EXPECT_FALSE(std::ifstream(testPath("U=.txt"))) << c.exit;
    }
}

TEST(Options, KeysThatDependOnOthers) {
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"-AT", "-B"}, "-AT: ignored because of -B option\n"},
        {{"-Q", "-q+"}, "-Q: exit after function parameter name table creation\n"},
        {{"-q+", "-R"}, "-q+: write function parameter name lines to csv-file\n"},
        {{"-P", "-i"}, "-P: read tested function names from ini-file\n"},
        {{"-na", "-nb"}, "-nb: default title name is b\n"},
        {{"-ld", "-h", "-g"}, "-ld: default directory for output files is DIRd/\n"},
        {{"-kor", "-kand"}, "-kor: ignored because of later -k key\n"},
        {{"-h", "-?"}, "-h: ignored because of later -? key\n"},
        {{"-AT", "-ia", "-Ib"}, "-AT: ignored because of -I option\n"},
        {{"-da=1", "-Ib"}, "-da=1: ignored because of -I option\n"},
        {{"-Ia", "-ib"}, "-Ia: ignored because of later -i key\n"},
        {{"-d a=1", "-da=2", "-db=1"}, "-d a=1: ignored because of later -d key\n"},
    };
    for (const auto& [words, report] : cases) {
        const Captured output;
        OptionSession session;
        EXPECT_TRUE(session.parse(words)) << report;
        EXPECT_TRUE(hasOnce(output.text(), std::string("\n").append(placed(report))));
    }
}

TEST(Options, KeysWithoutAnEffectAreReported) {
    const std::string word = "-@" + writeFile(testPath("args"), "-ld -Z6");
    const Captured output;
    OptionSession session;
    session.initOption('Z', "", nullptr, nullptr, "");
    EXPECT_TRUE(session.parse({word.c_str()}));
    EXPECT_TRUE(hasOnce(output.text(),
                        placed("\n-ld: ignored: -l key in argument file, default directory for "
                               "output files is DIR\n-Z6: ignored: deprecated option key\n")));
}

TEST(Options, Help) {
    // The keys in the order of the lines, each line beginning with its own key.
    const auto keysOf = [](const std::string& text) {
        std::istringstream lines(text);
        std::string keys;
        for (std::string line; std::getline(lines, line);) {
            if (line.length() > 1 && line[0] == '-' && (keys.empty() || keys.back() != line[1])) {
                keys += line[1];
            }
        }
        return keys;
    };
    const std::string shown = "BAdiIPoOLJrRqQuUgnplftmkFYHTSCsev@h";
    const std::string all = "BAdiIPoOLJrRqQuUxgnplftmkFYHWTSCsev@hcj?";
    const auto textOf = [](char key, bool hidden) {
        const Captured output(PS_OUT_ERR);
        OptionSession session;
        session.initOption('Z', "", nullptr, nullptr, "kept\n");
        session.initOption('z', "-z = last\n", nullptr, nullptr, "");
        session.hint(key, hidden);
        return output.text();
    };
    const std::string quick = textOf(1, false), full = textOf('h', false);
    const std::string hiddenQuick = textOf(1, true), hiddenFull = textOf('?', true);
    EXPECT_EQ(keysOf(quick), shown + "z");
    EXPECT_EQ(keysOf(hiddenQuick), all + "z");
    const std::string mark = "This is hidden key used by developers only\n";
    EXPECT_TRUE(hasOnce(hiddenFull, "-W= unmask floating-point exceptions\n" + mark));
    EXPECT_EQ(timesIn(full, "\n\n-"), static_cast<int>(shown.length())); // between the entries
    EXPECT_EQ(timesIn(full, "without-extention"), 10);
    EXPECT_EQ(timesIn(full, "kept"), 0);
    for (const char* key : {"f", "t", "m"}) {
        EXPECT_TRUE(hasOnce(full, std::string(" one of -") + key + "= arguments\n"));
    }

    const std::string end = "\nUse -h option to type full key list\n";
    const struct {
        char key;
        bool hidden;
        const char* text;
    } cases[] = {
        {'v', true,
         "-v               = type the version number of the Performance System and exit\n"
         "No extended description for this key\n"},
        {'#', false, "Key -# is not valid\n"},
        {'Z', false, "Key -Z is deprecated\nkept\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(textOf(c.key, c.hidden), "EXTENDED KEY HELP\n" + (c.text + end)) << c.key;
    }
}

TEST(Options, AskModeWhenAllKeysAreKnown) {
    const std::pair<std::vector<const char*>, int> cases[] = {
        {{}, 3}, {{"-AM"}, 4}, {{"-A"}, 15}, {{"-B"}, 0}, {{"-B", "-A"}, 0}, {{"-A", "-B"}, 0},
    };
    const Captured output;
    for (const auto& [words, askMode] : cases) {
        OptionSession session;
        EXPECT_TRUE(session.parse(words));
        EXPECT_EQ(session.askMode(), askMode);
        EXPECT_EQ(session.updateOptions(), askMode);
        const std::string detail = session.option('T').detail.c_str();
        EXPECT_EQ(timesIn(detail, "\t"), 0);
        EXPECT_TRUE(hasOnce(detail, "\nSSE2     ")); // once, also after a second call
        EXPECT_EQ(timesIn(detail, "RDRAND"), 0);
    }
}

TEST(Options, FeaturesReachTheLibraryAndTestsAreListed) {
    static Ntk64u features;
    static NtkStatus status, initStatus;
    const auto setFeatures = ntk_SetCpuFeatures;
    const auto init = ntk_Init;
    psRegNtkEnvironment([] {
        ntk_SetCpuFeatures = [](Ntk64u mask) {
            features = mask;
            return status;
        };
        ntk_Init = [] { return initStatus; };
    });
    const struct {
        NtkStatus status, initStatus;
        std::string report; // "N": the library's text of a status
    } cases[] = {
        {0, -5, "--status = ntkStsNoErr\n"},
        {3, -5, "--NTK FAIL. status = 3: N\n"},
        {-2, 4, "--NTK FAIL. status = -2: N\n--calling ntkInit()\n"},
        {-2, -5, "--NTK FAIL. status = -2: N\n--calling ntkInit()\n--NTK FAIL. status = -5: N\n"},
    };
    const std::string file = testPath("listing.txt");
    for (const auto& c : cases) {
        features = 0;
        status = c.status;
        initStatus = c.initStatus;
        {
            const StdoutTo out(file);
            OptionSession session;
            char words[][16] = {"prog", "-e-", "-TSSE2,AVX2", "-TFOO"};
            char* argv[] = {words[0], words[1], words[2], words[3], nullptr};
            EXPECT_EQ(session.run(4, argv), 0);
            g_ostrm.close();
        }
        EXPECT_EQ(features, 0x81dfu);
        const std::string output =
            replaced(readFile(file), "(FAIL. status = -?[0-9]: )[^\n]*", "N");
        EXPECT_TRUE(hasOnce(output, "__psBraskCpu"));
        EXPECT_TRUE(hasOnce(output, "ntkCpuFeatures =   0x81df )\n" + c.report + "\n"));
    }
    psRegNtkEnvironment(nullptr);
    ntk_SetCpuFeatures = setFeatures;
    ntk_Init = init;
}
