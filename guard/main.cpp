// ntkguard: runs a program of the harness so that what ends its process costs one test.
#include <climits>
#include <cstdio>
#include <filesystem>

#include <unistd.h>

#include "commandline.h"
#include "guard.h"

namespace fs = std::filesystem;

namespace {

struct Arguments {
    std::string information = {};        // what --help or --version prints
    std::vector<std::string> words = {}; // of the program
    int limitSeconds = 300;
};

const char* const description =
    "Runs PROGRAM, ntkperf or another program of the harness, with its KEYs. When its process "
    "ends\n"
    "in the middle, or gives no sign for too long, the test that it was in is written down as an\n"
    "exception, in log, table and summary, and another process goes on with the next test. The\n"
    "outputs look as if one process had written them, and the closing summary counts all tests.\n";

const char* const usage = "Usage: ntkguard [OPTION...] PROGRAM [KEY...]\n";

const char* const footer =
    "PROGRAM is a path, or a name that is looked for as the shell does and in the folder of\n"
    "ntkguard. What is not an option before PROGRAM belongs to it.\n\n"
    "Examples:\n"
    "  ntkguard ntkperf -B -o -r -u               all tests\n"
    "  ntkguard --limit 30 ntkperf -B -fLZ4 -r    half a minute for each combination\n\n"
    "SIGINT, SIGTERM and SIGHUP are passed on to the program and end the run with it.\n\n"
    "Exit status: that of PROGRAM when the run came to its end (0 for ntkperf, whatever the tests\n"
    "gave), however many processes it took. Else:\n"
    "    2  a wrong command line\n"
    "  125  given up: the program ended before its first test, or three times in a row without\n"
    "       beginning one\n"
    "  126  the program is not there or cannot be run\n"
    "  127  the program cannot be loaded: a library is missing or does not fit\n"
    "  128  and the number of the signal that ended the run (130: SIGINT, 143: SIGTERM)\n";

void describe(CLI::App& app, Arguments& arguments) {
    common::describeProgram(app, usage, footer);
    app.prefix_command();
    app.add_option("--limit", arguments.limitSeconds,
                   "Seconds that the program may take for a combination before it counts as hung "
                   "(default: 300)")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, INT_MAX / 1000).description(""));
}

Arguments parseArguments(std::vector<std::string> words) {
    Arguments arguments;
    CLI::App app(description, "ntkguard");
    describe(app, arguments);
    arguments.information = common::parseWords(app, std::move(words));
    if (!arguments.information.empty()) {
        return arguments;
    }
    arguments.words = app.remaining();
    if (arguments.words.empty()) {
        throw CLI::RequiredError("PROGRAM");
    }
    if (arguments.words.front().starts_with("-")) {
        throw CLI::ExtrasError("ntkguard", {arguments.words.front()});
    }
    return arguments;
}

// Beside this program, where the shell would not find it: the build puts them together.
std::string pathOf(const std::string& program) {
    if (program.find('/') != std::string::npos) {
        return program;
    }
    std::error_code error;
    const fs::path beside = fs::read_symlink("/proc/self/exe", error).parent_path() / program;
    const char* const path = getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((fs::path(folder) / program).c_str(), X_OK) == 0) {
            return program;
        }
    }
    return access(beside.c_str(), X_OK) == 0 ? beside.string() : program;
}

} // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    try {
        arguments = parseArguments({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "ntkguard: %s (ntkguard --help tells more)\n", error.what());
        return 2;
    }
    if (!arguments.information.empty()) {
        std::fputs(arguments.information.c_str(), stdout);
        return 0;
    }
    arguments.words.front() = pathOf(arguments.words.front());
    return guard::Guard(arguments.words, arguments.limitSeconds).run();
}
