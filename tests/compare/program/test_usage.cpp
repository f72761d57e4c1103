#include "program.h"

namespace compare {

namespace {

using Usage = Program;

TEST_F(Usage, WhatIsWrongIsSaidInOneSentenceBeforeAnythingStarts) {
    struct Row {
        std::vector<std::string> arguments;
        const char* message;
    };
    write("plain", "");
    fs::create_hard_link(m_folder / "plain", m_folder / "linked");
    fs::create_directory(m_folder / "empty");
    const Row rows[] = {
        {{}, "BASE and NEW are missing"},
        {{"own"}, "NEW is missing"},
        {{"own", "own", "own"}, "own is a third directory"},
        {{"own", "nowhere"}, "nowhere does not exist"},
        {{"plain", "own"}, "plain is no directory"},
        {{"own", "empty"},
         "empty holds none of libntkdc.so.12, libntks.so.12 and libntkcore.so.12"},
        {{"--self", "own"}, "leave out own"},
        {{"--fast", "own", "own"}, "--fast"},
        {{"-fLZ4", "own", "own"}, "keys of ntkperf stand behind --"},
        {{"own", "own", "--precision", "much"}, "--precision much"},
        {{"own", "own", "--budget=1d"}, "--budget 1d"},
        {{"own", "own", "--cpu", "100000"}, "--cpu 100000 is no processor"},
        {{"own", "own", "--cpu", "-1"}, "--cpu -1 is no processor"},
        {{"own", "own", "--seed", "x"}, "--seed = x"},
        {{"own", "own", "--csv"}, "--csv"},
        {{"--csv", "-t", "0.3", "own", "own"}, "--csv needs a file name, but -t follows"},
        {{"own", "own", "--json", "-"}, "standard output is not supported"},
        {{"own", "own", "--markdown=-"}, "standard output is not supported"},
        {{"own", "own", "--csv", "out", "--json", "./empty/../out"}, "are the same file"},
        {{"own", "own", "--json=plain", "--markdown=linked"}, "are the same file"},
        {{"own", "own", "--csv", "no/such/folder.csv"}, "cannot write no/such/folder.csv: No such"},
        {{"own", "own", "--json", "empty"}, "cannot write empty: Is a directory"},
        {{"own", "own", "--markdown", "/dev/null"}, "cannot write /dev/null"},
        {{"own", "own", "--worker", "noworker"}, "cannot start noworker: No such file"},
        {{"own", "own", "--base-keys", "-d'x"}, "is not closed"},
        {{"own", "own", "--new-keys", "-C"}, "the key -C has no place"},
        {{"own", "own", "--", "LZ4"}, "the key 'LZ4' does not begin with -"},
        {{"own", "own", "--", ""}, "the key '' does not begin with -"},
        {{"own", "own", "--", "--json=x"}, "put it before the --"},
        {{"own", "own", "--", "-Z"}, "ntkperf has no key -Z"},
    };
    for (const Row& row : rows) {
        std::vector<std::string> arguments = {"--worker", path("worker")};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        if (row.arguments.size() > 2 && row.arguments[2] == "--worker") {
            arguments.erase(arguments.begin(), arguments.begin() + 2);
        }
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << row.message;
        EXPECT_EQ(outcome.output, "") << row.message;
        EXPECT_EQ(outcome.errors.rfind("ntkcompare: ", 0), 0u) << outcome.errors;
        EXPECT_TRUE(has(outcome.errors, row.message));
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
    }
    EXPECT_FALSE(fs::exists(path("log"))) << "a worker was started";
}

TEST_F(Usage, KeysWithoutMeaningInAComparisonAreRefusedByName) {
    const std::pair<const char*, std::vector<std::string>> reasons[] = {
        {"use --csv, --json or --markdown",
         {"-o", "-Olog", "-r", "-Rx", "-q", "-q+", "-Q", "-u", "-U", "-g", "-nnight", "-lout"}},
        {"writes a settings file", {"-Inew"}},
        {"prints and measures nothing", {"-e", "-e-", "-h", "-hf", "-v", "-?"}},
        {"asks on the console", {"-A", "-ATiming"}},
        {"in and out of the cache", {"-C"}},
        {"restoring of the buffers", {"-SU"}},
        {"--time and --precision", {"-c1000", "-j5", "-J2", "-dMethod=Manual", "-dNumLoops=3"}},
        {"nice", {"-YHIGH"}},
    };
    for (const auto& [reason, keys] : reasons) {
        for (const std::string& key : keys) {
            const Outcome outcome = run({"own", "own", "--", "-fLZ4", key});
            EXPECT_EQ(outcome.status, 2) << key;
            EXPECT_TRUE(has(outcome.errors, "the key " + key + " ")) << key;
            EXPECT_TRUE(has(outcome.errors, reason));
        }
    }
}

TEST_F(Usage, KeysForInputsAndSelectionPass) {
    const Outcome outcome = run(played({"--", "-B", "-dCodeFile=book1", "-iquick", "-P", "-LERR",
                                        "-pmore", "-f-x", "-tLZ4", "-m=x", "-kor", "-Fa", "-HO",
                                        "-W", "-TSSE42", "-s-", "-@quick.arg", "-dmethod=ST"}));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

TEST_F(Usage, HelpAndVersionArePrinted) {
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(run({"-h"}).output, help.output);
    for (const char* text : {"Usage: ntkcompare [OPTION...] BASE NEW [-- KEY...]\n", "--base-keys",
                             "--self", "Examples:", "Exit status:"}) {
        EXPECT_TRUE(has(help.output, text));
    }
    EXPECT_EQ(help.output.find("--worker"), std::string::npos);
    const Outcome version = run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output.rfind("ntkcompare ", 0), 0u) << version.output;
    EXPECT_EQ(run({"-V"}).output, version.output);
}

} // namespace

} // namespace compare
