#include <cstring>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "captured.h"
#include "option_session.h"
#include "pscstream.h"

namespace {

// A text with the directory of the test in place of "DIR".
std::string placed(std::string text) {
    const size_t at = text.find("DIR");
    return at == std::string::npos ? text : text.replace(at, 3, testPath("")).c_str();
}

} // namespace

TEST(Options, KeyArgumentEffectAndReport) {
    const struct {
        char key;
        const char *argument, *effect, *info;
    } cases[] = {
        {'B', "", "bat", "batch mode"},
        {'A', "TimingParams", "ask=3", "ask, timing method, common parameters from console"},
        {'A', "M", "ask=4", "ask, data misalignment from console"},
        {'A', "All", "ask=15",
         "ask, timing method, common parameters, data misalignment, each test parameters from "
         "console"},
        {'A', "xyz", "ask=15", nullptr},
        {'A', "", "ask=15", nullptr},
        {'d', "Len=5", "preset=Len", "set parameter Len to 5"},
        {'d', " Len = 5=6 ", "preset=Len", "set parameter Len to 5=6"},
        {'d', "Len=", "preset=Len", "set parameter Len to empty value"},
        {'d', "Len", "", "ignored: incorrect parameter setting, <name>=<value> is expected"},
        {'d', " =5", "", "ignored: incorrect parameter setting, <name>=<value> is expected"},
        {'i', "", "", "read PS parameters from file DIRprog.ini: there is no such file"},
        {'I', "a.b", "", "write PS parameters to file DIRa.b and exit"},
        {'P', "", "pressing",
         "read tested function names from ini-file: no test will be run without -i or -I key"},
        {'L', "PERF", "level=7", "output errors & warnings & performance for each parameter set"},
        {'L', "err", "level=1", "output errors"},
        {'L', "TRACE|DATA", "level=103", nullptr},
        {'L', "INFO", "level=15",
         "output errors & warnings & performance for each parameter set & detailed course of "
         "performance measurement"},
        {'L', "ERR,LOUD", "level=1",
         "output errors (not all names are one of ERR, WARN, PERF, INFO, TRACE or DATA)"},
        {'L', "LOUD", "",
         "ignored: incorrect level of output, ERR, WARN, PERF, INFO, TRACE or DATA is expected"},
        {'L', "", "",
         "ignored: incorrect level of output, ERR, WARN, PERF, INFO, TRACE or DATA is expected"},
        {'J', "3", "ext=3", "set number of external measurement loops to 3"},
        {'J', "", "", "set number of external measurement loops to 8"},
        {'J', "0", "", "ignored: incorrect number of loops"},
        {'j', "1", "loops=1", "set minimal number of measurement loops to 1"},
        {'j', "-1", "", "ignored: incorrect number of loops"},
        {'j', "many", "", "ignored: incorrect number of loops"},
        {'j', "99999999999", "", "ignored: incorrect number of loops"},
        {'c', "0x10", "ms=16", "set min number of ms for 1 measurement to 16"},
        {'c', "0", "", "ignored: incorrect number of milliseconds"},
        {'q', "+", "names=1", "ignored: neither of -r and -R key present"},
        {'Q', "", "", "ignored: no -q key present"},
        {'g', "", "end=DIRprog.end", "create file DIRprog.end at the end of PS work"},
        {'g', "/x/y", "end=/x/y", "create file /x/y at the end of PS work"},
        {'f', "LZ4", "cond=01LZ4", "run tests with function name that contains LZ4"},
        {'f', "=LZ4", "cond=02LZ4", "run tests with function name equal to LZ4"},
        {'f', "+", "", "ignored: empty function pattern"},
        {'t', "-Dict", "cond=10Dict", "don't run tests with test name that contains Dict"},
        {'t', "", "", "ignored: empty test pattern"},
        {'m', "+dc", "cond=20dc", "run only tests with source file name that contains dc"},
        {'m', "=", "", "ignored: empty file pattern"},
        {'k', "oh", "or", "run tests that meet -f or -t or -m conditions"},
        {'k', "OR", "", "run tests that meet -f and -t and -m conditions"},
        {'F', "f1", "start=f1", "start testing from function with f1 in name"},
        {'F', "", "", "start testing from the first function"},
        {'Y', "HIGH", "priority=1", "set high process priority (superuser only)"},
        {'Y', "N", "priority=2", "set normal process priority (superuser only)"},
        {'Y', "LOW", "priority=3", "set low process priority (superuser only)"},
        {'Y', "high", "", "ignored: incorrect priority, HIGH, NORMAL or LOW is expected"},
        {'H', "xyz", "hot=1", "add 'Interest' column to table file"},
        {'H', "ONLY", "hot=2", "add 'Interest' column to table file and run only hot tests"},
        {'W', "=", "unmasked x87=32 ssx=4096", "unmask floating-point exceptions"},
        {'T', "SSE2,FOO,BAR", "",
         "call ntkSetCpuFeatures( 0x7 ), unknown cpu features FOO,BAR are ignored"},
        {'T', "FOO", "", "ignored: unknown cpu features FOO"},
        {'T', "", "", "ignored: empty cpu features list"},
        {'S', "U", "use", "measure functions with data set & use"},
        {'S', "", "", "ignored: incorrect option key, -SU is expected"},
        {'C', "", "cache", "run tests with data in cache and out of cache"},
        {'s', "-", "quick", "don't sort functions"},
        {'s', "", "", "sort functions"},
        {'e', "", "list=0", "enumerate tests and exit"},
        {'e', "+", "list=1", "enumerate tests and library functions and exit"},
        {'e', "-", "list=-1", "enumerate function names of tests and exit"},
        {'v', "", "", "type the version number of the Performance System"},
        {'@', "x", "", "ignored: -@ key in argument file"},
        {'h', "", "", "type short help"},
        {'h', "h", "", "type extended help"},
        {'?', "?", "", "type extended help with hidden keys"},
        {'?', "h", "", "type extended help of key -h"},
    };
    for (const auto& c : cases) {
        OptionSession session;
        SCOPED_TRACE(std::string("-") + c.key + c.argument);
        if (c.info) {
            EXPECT_EQ(session.info(c.key, c.argument), placed(c.info));
        }
        EXPECT_EQ(session.effect(c.key, c.argument), placed(c.effect));
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
    const struct {
        std::initializer_list<const char*> words;
        const char* report; // a line of it
    } cases[] = {
        {{"-AT", "-B"}, "-AT: ignored because of -B option\n"},
        {{"-Q", "-q+"}, "-Q: exit after function parameter name table creation\n"},
        {{"-q+", "-R"}, "-q+: write function parameter name lines to csv-file\n"},
        {{"-P", "-i"}, "-P: read tested function names from ini-file\n"},
        {{"-g", "-na", "-nb"}, "-g: create file DIRb.end at the end of PS work\n"},
        {{"-na", "-nb"}, "-na: ignored: default title name is b\n"},
        {{"-na", "-nb"}, "-nb: default title name is b\n"},
        {{"-ld"}, "-ld: default directory for output files is DIRd/\n"},
        {{"-p/d/"}, "-p/d/: default directory for input files is /d/\n"},
        {{"-ld", "-h"}, "-ld: ignored because of -h option\n"},
        {{"-ld", "-h", "-g"}, "-ld: default directory for output files is DIRd/\n"},
        {{"-e", "-v"}, "-v: ignored because of -e option\n"},
        {{"-Z5"}, "-Z5: ignored: incorrect option key\n"},
        {{"-kor", "-kand"}, "-kor: ignored because of later -k key\n"},
        {{"-YHIGH", "-Yx"}, "-YHIGH: set high process priority (superuser only)\n"},
        {{"-TFOO", "-TSSE"}, "-TFOO: ignored: unknown cpu features FOO\n"},
        {{"-J5", "-J"}, "-J: set number of external measurement loops to 5\n"},
        {{"-h", "-?"}, "-h: ignored because of later -? key\n"},
        {{"-AT", "-ia", "-Ib"}, "-AT: ignored because of -I option\n"},
        {{"-da=1", "-Ib"}, "-da=1: ignored because of -I option\n"},
        {{"-Ia", "-ib"}, "-Ia: ignored because of later -i key\n"},
        {{"-d a=1", "-da=2", "-db=1"}, "-d a=1: ignored because of later -d key\n"},
        {{"-da=1", "-db=1", "-da"}, "-da=1: set parameter a to 1\n"},
    };
    for (const auto& c : cases) {
        const Captured output;
        OptionSession session;
        EXPECT_TRUE(session.parse(c.words)) << c.report;
        EXPECT_EQ(timesIn(output.text(), std::string("\n").append(placed(c.report))), 1)
            << output.text();
    }
}

TEST(Options, KeysThatCountNoMore) {
    const std::string word = "-@" + writeFile(testPath("args"), "-ld -Z6");
    const Captured output;
    OptionSession session;
    session.initOption('Z', "", nullptr, nullptr, "");
    EXPECT_TRUE(session.parse({word.c_str()}));
    EXPECT_EQ(timesIn(output.text(),
                      placed("\n-ld: ignored: -l key in argument file, default directory for "
                             "output files is DIR\n-Z6: ignored: deprecated option key\n")),
              1)
        << output.text();
}

TEST(Options, OutputFiles) {
    struct Table {
        psCStream& stream;
        const char* cell;
    };
    const Table tables[] = {{g_cstrm, "result"}, {g_ustrm, "sum"}, {g_nstrm, "name"}};
    const struct {
        const char *key, *argument, *file, *info, *content;
    } cases[] = {
        {"o", "", "prog.txt", "create file DIRprog.txt and write console output", "log\n"},
        {"O", "a", "a.txt", "add console output to file DIRa.txt", "old\nlog\n"},
        {"r", "", "prog.csv", "create file DIRprog.csv and write PS results", "result\n"},
        {"R", "a.b", "a.b", "add PS results to file DIRa.b", "old\nresult\n"},
        {"q", "", "prog_name.csv",
         "create file DIRprog_name.csv and write function parameter name lines", "name\n"},
        {"q", "a", "a_name.csv", nullptr, "name\n"},
        {"u", "", "prog_sum.csv", "create file DIRprog_sum.csv and write summary table", "sum\n"},
        {"u", "a", "a.csv", nullptr, "sum\n"},
        {"U", "", "prog_sum.csv", "add summary table to file DIRprog_sum.csv", "old\nsum\n"},
    };
    for (const auto& c : cases) {
        OptionSession session;
        const std::string file = writeFile(testPath(c.file), "old\n");
        if (c.info) {
            EXPECT_EQ(session.info(c.key[0], c.argument), placed(c.info));
        }
        EXPECT_EQ(session.effect(c.key[0], c.argument), c.key[0] == 'q' ? "names=2" : "");
        g_ostrm << PS_ERR << "log\n" << PS_END;
        g_ostrm.close();
        for (const Table& table : tables) {
            table.stream << table.cell << "\n";
            table.stream.close();
        }
        EXPECT_EQ(readFile(file), c.content) << c.key << c.argument;
    }
    for (const char* word : {"-o", "-O", "-r", "-R", "-q", "-u", "-U"}) {
        const Captured output;
        OptionSession session;
        EXPECT_FALSE(session.parse({word, "no/such/dir/x.y"})) << word;
        EXPECT_EQ(timesIn(output.text(), "FATAL FAIL: can't open output file for writing\n"), 1);
    }
}

TEST(Options, HostileArguments) {
    std::string all;
    for (int c = 1; c < 256; ++c) {
        all += static_cast<char>(c);
    }
    const Captured output(PS_OUT_ERR);
    for (const std::string& argument : {std::string(100000, 'x'), all, std::string("=")}) {
        OptionSession session;
        for (const psOption& option : session.options()) {
            EXPECT_FALSE(option.info(argument.c_str()).empty()) << option.key;
            option.apply(argument.c_str(), &session);
        }
        g_cstrm.close();
        g_ustrm.close();
        g_nstrm.close();
    }
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
    const std::string all = "BAdiIPoOLJrRqQuUgnplftmkFYHWTSCsev@hcj?";
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
    EXPECT_EQ(quick.substr(0, 13), "QUICK HELP\n-B");
    EXPECT_EQ(hiddenQuick.substr(0, 30), "QUICK HELP with hidden keys\n-B");
    EXPECT_EQ(full.substr(0, 16), "EXTENDED HELP\n-B");
    EXPECT_EQ(hiddenFull.substr(0, 33), "EXTENDED HELP with hidden keys\n-B");
    EXPECT_EQ(keysOf(quick), shown + "z");
    EXPECT_EQ(keysOf(hiddenQuick), all + "z");
    const std::string mark = "This is hidden key used by developers only\n";
    EXPECT_EQ(timesIn(full, mark), 0);
    EXPECT_EQ(timesIn(hiddenFull, mark), 4);
    EXPECT_EQ(timesIn(hiddenFull, "-W= unmask floating-point exceptions\n" + mark), 1);
    EXPECT_EQ(timesIn(full, "\n\n-"), static_cast<int>(shown.length())); // between the entries
    EXPECT_EQ(timesIn(full, "without-extention"), 10);
    EXPECT_EQ(timesIn(full, "kept"), 0);
    for (const char* key : {"f", "t", "m"}) {
        EXPECT_EQ(timesIn(full, std::string(" one of -") + key + "= arguments\n"), 1);
    }

    const std::string end = "\nUse -h option to type full key list\n";
    const struct {
        char key;
        bool hidden;
        const char* text;
    } cases[] = {
        {'C', false,
         "-C               = run tests with data in cache and out of cache (if that is supported "
         "by test)\n"
         "This option should be used to clarify performance difference between in-cache and "
         "out-of-cache data\nNot all tests support this option\n"},
        {'v', true,
         "-v               = type the version number of the Performance System and exit\n"
         "No extended description for this key\n"},
        {'h', true,
         "-h               = type short help and exit\n"
         "-hh              = type extended help and exit\n"
         "-h<key>          = type extended help of the key and exit\n"
         "If several -h keys present in command line then only the last key is valid\n"},
        {'#', false, "Key -# is not valid\n"},
        {'Z', false, "Key -Z is deprecated\nkept\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(textOf(c.key, c.hidden), "EXTENDED KEY HELP\n" + (c.text + end)) << c.key;
    }
}

TEST(Options, HelpAndVersionAreAsked) {
    const struct {
        std::initializer_list<const char*> words;
        const char* begin; // of what follows the banner; null: nothing is printed at all
    } cases[] = {
        {{"-h"}, "QUICK HELP\n"},
        {{"-?"}, "QUICK HELP with hidden keys\n"},
        {{"-h", "h"}, "EXTENDED HELP\n"},
        {{"-??"}, "EXTENDED HELP with hidden keys\n"},
        {{"-hfile", "-v"}, "EXTENDED KEY HELP\n-f < or-pattern>"},
        {{"-v"}, ""},
        {{"-v", "-e"}, nullptr},
        {{"-B"}, nullptr},
    };
    for (const auto& c : cases) {
        OptionSession session;
        EXPECT_TRUE(session.parse(c.words));
        const Captured output;
        EXPECT_EQ(session.hintOutput(), c.begin != nullptr);
        const std::string text = output.text();
        const size_t banner = text.find("\nBrask NTK. Performance System 2.0, ");
        EXPECT_EQ(banner, c.begin ? 0 : std::string::npos);
        const size_t begin = text.find('\n', 1) + 1;
        EXPECT_EQ(text.substr(begin, c.begin ? strlen(c.begin) : 0), c.begin ? c.begin : "");
    }
}

TEST(Options, AskModeWhenAllKeysAreKnown) {
    const struct {
        std::initializer_list<const char*> words;
        int askMode;
    } cases[] = {
        {{}, 3}, {{"-AM"}, 4}, {{"-A"}, 15}, {{"-B"}, 0}, {{"-B", "-A"}, 0}, {{"-A", "-B"}, 0},
    };
    const Captured output;
    for (const auto& c : cases) {
        OptionSession session;
        EXPECT_TRUE(session.parse(c.words));
        EXPECT_EQ(session.askMode(), c.askMode);
        EXPECT_EQ(session.updateOptions(), c.askMode);
        const std::string detail = session.getOption('T')->detail.c_str();
        EXPECT_EQ(timesIn(detail, "\t"), 0);
        EXPECT_EQ(timesIn(detail, "\nSSE2     "), 1); // once, also after a second call
        EXPECT_EQ(timesIn(detail, "RDRAND"), 0);
    }
}

TEST(Options, SettingsFile) {
    writeFile(testPath("set.ini"), "[Perf System]\nLen=7\n");
    const struct {
        std::initializer_list<const char*> words;
        bool goesOn, writing;
        const char* len;
    } cases[] = {
        {{"-iset"}, true, false, "7"},
        {{"-iset", "-dLen=8"}, true, false, "8"},
        {{"-iabsent"}, true, false, "none"},
        {{"-Iset"}, true, true, "7"},
        {{"-Iset", "-iset"}, true, false, "7"},
        {{"-Iset", "-e"}, true, false, "none"},
        {{"-Ino/such/dir/x.ini"}, false, false, "none"},
    };
    for (const auto& c : cases) {
        const Captured output;
        OptionSession session;
        SCOPED_TRACE(*c.words.begin());
        EXPECT_EQ(session.parse(c.words), c.goesOn);
        EXPECT_EQ(timesIn(output.text(), "FATAL FAIL: can't open ini-file for writing\n"),
                  !c.goesOn);
        EXPECT_EQ(g_istrm.isWriting(), c.writing);
        psString value = "none";
        g_istrm.setIStream(nullptr);
        g_istrm.read("Len", "Len", "1", value);
        EXPECT_STREQ(value.c_str(), c.len);
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
        std::string told; // "N": the library's text of a status
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
            std::regex_replace(readFile(file), std::regex("(FAIL. status = -?\\d: ).*"), "$1N");
        EXPECT_EQ(timesIn(output, "__psBraskCpu"), 1) << output;
        EXPECT_EQ(timesIn(output, "ntkCpuFeatures =   0x81df )\n" + c.told + "\n"), 1) << output;
    }
    psRegNtkEnvironment(nullptr);
    ntk_SetCpuFeatures = setFeatures;
    ntk_Init = init;
}
