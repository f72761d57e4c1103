#include "options.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "programs.h"

namespace {

const char* const description =
    "Puts ntkcompare to the test: compares builds of the library whose difference is known,\n"
    "quiet and with a process that spins on the same processor.";

const char* const footer =
    "Examples:\n"
    "  bench_compare_power --corpus corpus --quick           a look, in some minutes\n"
    "  bench_compare_power --corpus corpus --results power   all of it, an hour and more;\n"
    "                                                        called again, it adds rounds\n"
    "  bench_compare_power --results power --show --markdown the tables of what there is\n\n"
    "Exit status: 0; 1 when something cannot be run; 2 for a wrong command line.\n";

// At least one of every family.
const std::vector<std::string> allFunctions = {"ntksEncodeLZ4_8u",
                                               "ntksDecodeLZ4_8u",
                                               "ntksCRC32_8u",
                                               "ntksAdler32_8u",
                                               "ntksBWTInv_8u",
                                               "ntksMTFFwd_8u",
                                               "ntksEncodeHuff_BZ2_16u8u",
                                               "ntksDecodeHuff_BZ2_8u16u",
                                               "ntksDeflateLZ77_8u",
                                               "ntksInflate_8u",
                                               "ntksEncodeLZO_8u",
                                               "ntksDecodeLZO_8u",
                                               "ntksEncodeLZSS_8u",
                                               "ntksDecodeLZSS_8u",
                                               "ntksEncodeZfp444_32f",
                                               "ntksDecodeZfp444_32f"};

struct Flags {
    bool isQuick = false, onlyQuiet = false, onlyDisturbed = false;
};

void describe(CLI::App& app, PowerOptions& options, Flags& flags) {
    app.footer(footer);
    app.add_option("--functions", options.functions,
                   "Functions to slow (default: 16 of all families)")
        ->delimiter(',');
    app.add_option("--lengths", options.lengths, "Bytes of book1 to work on (16384,65536)")
        ->delimiter(',');
    app.add_option("--levels", options.levels, "Shares to add (0,0.005,0.01,0.02,0.05)")
        ->delimiter(',');
    app.add_option("--rounds", options.rounds,
                   "Of each level but 0 (4); half as many of 0.005, which gets 10 s a case")
        ->check(CLI::Range(0, 1000));
    app.add_option("--null-cases", options.nullCases,
                   "Cases to compare with nothing added, at least (500)")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--peer-rounds", options.peerRounds,
                   "Rounds of each level with Google Benchmark and plain loops, too (1)")
        ->check(CLI::Range(0, 1000));
    app.add_option("--corpus", options.corpus, "Folder of the corpus (default: the current one)")
        ->type_name("DIR")
        ->envname("CORPUS");
    app.add_option("--cpu", options.cpu, "Processor for all of it (the last one)");
    app.add_option("--results", options.results, "File to add the results to, and to show");
    app.add_flag("--show", options.showsOnly, "Measure nothing");
    app.add_flag("--markdown", options.asMarkdown, "Print Markdown tables");
    app.add_flag("--quick", flags.isQuick, "4 functions, 16384 bytes, one round of each level");
    auto* const quiet = app.add_flag("--only-quiet", flags.onlyQuiet, "Without the neighbour");
    app.add_flag("--only-disturbed", flags.onlyDisturbed, "With the neighbour alone")
        ->excludes(quiet);
}

void apply(const Flags& flags, PowerOptions& options) {
    options.isQuiet = !flags.onlyDisturbed;
    options.isDisturbed = !flags.onlyQuiet;
    if (flags.isQuick) {
        options.rounds = 1;
        options.nullCases = 1;
        options.lengths = {16384};
    }
    if (options.functions.empty()) {
        options.functions = allFunctions;
        options.functions.resize(flags.isQuick ? 4 : allFunctions.size());
    }
    options.cpu = options.cpu < 0 ? lastProcessor() : options.cpu;
}

} // namespace

bool readOptions(int argc, char** argv, PowerOptions& options, int& status) {
    CLI::App app(description, "bench_compare_power");
    Flags flags;
    describe(app, options, flags);
    try {
        app.parse(argc, argv);
        if (options.showsOnly && options.results.empty()) {
            throw CLI::ValidationError("--show", "needs --results FILE");
        }
    } catch (const CLI::CallForHelp& help) {
        status = app.exit(help);
        return false;
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "bench_compare_power: %s (--help tells more)\n", error.what());
        status = 2;
        return false;
    }
    apply(flags, options);
    return true;
}
