// ntkbench: named comparisons of the library with others. They print; nothing judges their figures.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "commandline.h"
#include "comparison.h"

namespace fs = std::filesystem;

namespace {

const Comparison* const comparisons[] = {
    &checksumComparison,  &lz4Comparison,     &lzoComparison,     &lzssComparison,
    &deflateComparison,   &inflateComparison, &bwtComparison,     &bz2Comparison,
    &bz2stagesComparison, &zfpComparison,     &handloopComparison};

struct Arguments {
    std::string comparison = {}; // empty: all
    std::vector<std::string> files = {};
    std::string corpus = ".";
    int rounds = 0; // 0: as the comparison has it
    bool isList = false;
    bool asMarkdown = false;
};

const char* const description =
    "Compares the library's functions with packaged libraries that do the same. Both sides run\n"
    "by turns, so the ratio holds on a busy machine too. It is clocks of ours over clocks of the\n"
    "other: below 1 ours is faster.\n";

const char* const usage = "Usage: ntkbench [OPTION...] [COMPARISON [FILE...]]\n";

std::string footer() {
    std::string text = "Comparisons (all of them in this order when none is named):\n";
    for (const Comparison* comparison : comparisons) {
        const std::string name = comparison->name;
        text += "  " + name + std::string(12 - name.size(), ' ') + comparison->summary + "\n";
    }
    return text + "\nExamples:\n"
                  "  ntkbench lz4 book1                    on a file of this folder\n"
                  "  ntkbench --corpus corpus inflate pic  on a file of the corpus\n"
                  "  ntkbench --rounds 20 checksum         a quick look\n\n"
                  "Exit status: 0; 1 when a file cannot be read or a call fails; 2 for a wrong "
                  "command line.\n";
}

void describe(CLI::App& app, Arguments& arguments) {
    common::describeProgram(app, usage, footer());
    app.add_option("COMPARISON", arguments.comparison, "What to compare")->type_name("");
    app.add_option("FILE", arguments.files,
                   "Data: a path, or the name of a file of the corpus (default: mostly book1 and "
                   "pic)")
        ->type_name("");
    app.add_option("--corpus", arguments.corpus, "Folder of the corpus (default: the current one)")
        ->type_name("DIR")
        ->envname("CORPUS");
    app.add_option("--rounds", arguments.rounds,
                   "How often each side runs; each counts with its best time")
        ->type_name("N")
        ->check(CLI::Range(1, 1000000).description(""));
    app.add_flag("--markdown", arguments.asMarkdown, "Print Markdown tables");
    app.add_flag("--list", arguments.isList, "Print the names of the comparisons");
}

// Throws what CLI11's own checks throw.
void checkNames(const Arguments& arguments) {
    std::string names;
    for (const Comparison* comparison : comparisons) {
        names += std::string(names.empty() ? "" : ", ") + comparison->name;
        if (arguments.comparison == comparison->name) {
            if (comparison->files.empty() && !arguments.files.empty()) {
                throw CLI::ValidationError(arguments.comparison + " makes its own data",
                                           "leave out " + arguments.files.front());
            }
            return;
        }
    }
    if (!arguments.comparison.empty()) {
        throw CLI::ValidationError("no comparison is named " + arguments.comparison,
                                   "choose one of " + names);
    }
}

Bytes readFile(const fs::path& path, std::size_t mostBytes) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    Bytes bytes(mostBytes);
    file.read(chars(bytes), static_cast<std::streamsize>(mostBytes));
    if (file.gcount() == 0) {
        throw std::runtime_error("cannot use " + path.string() + ": " +
                                 (errno != 0 ? std::strerror(errno) : "it is empty") +
                                 "; name another FILE, or the folder of the corpus with --corpus "
                                 "(ntkcorpus DIR makes stand-ins)");
    }
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::vector<Run> runsOf(const Comparison& comparison, const Arguments& arguments) {
    const Run plain = {arguments.rounds > 0 ? arguments.rounds : comparison.rounds,
                       arguments.asMarkdown, "made"};
    const fs::path corpus = arguments.corpus;
    std::vector<fs::path> paths;
    for (const std::string& file : arguments.files) {
        paths.push_back(fs::exists(file) ? fs::path(file) : corpus / file);
    }
    for (const char* name : comparison.files) {
        if (arguments.files.empty()) {
            paths.push_back(corpus / name);
        }
    }
    std::vector<Run> runs(std::max<std::size_t>(paths.size(), 1), plain);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        runs[i].dataName = paths[i].filename().string();
        runs[i].path = paths[i].string();
        runs[i].data = readFile(paths[i], comparison.mostBytes);
    }
    return runs;
}

void compare(const Comparison& comparison, const Arguments& arguments) {
    std::vector<Run> runs = runsOf(comparison, arguments);
    if (!arguments.asMarkdown) {
        std::printf("%s: %s\n", comparison.name, comparison.summary);
    }
    printTitle(arguments.asMarkdown);
    for (Run& run : runs) {
        comparison.run(run);
    }
}

void runAll(const Arguments& arguments) {
    for (const Comparison* comparison : comparisons) {
        if (arguments.isList) {
            std::puts(comparison->name);
        } else if (arguments.comparison.empty() || arguments.comparison == comparison->name) {
            compare(*comparison, arguments);
            std::fputs(arguments.comparison.empty() ? "\n" : "", stdout);
        }
    }
}

void flushOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        throw std::runtime_error(std::string("cannot write to standard output: ") +
                                 std::strerror(errno));
    }
}

} // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app(description, "ntkbench");
    describe(app, arguments);
    try {
        const std::string information =
            common::parseWords(app, {argv + (argc > 0 ? 1 : 0), argv + argc});
        std::fputs(information.c_str(), stdout);
        if (information.empty()) {
            checkNames(arguments);
            runAll(arguments);
        }
        flushOutput();
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "ntkbench: %s (ntkbench --help tells more)\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ntkbench: %s\n", error.what());
        return 1;
    }
    return 0;
}
