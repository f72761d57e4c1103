// bench_compare_power: ntkcompare put to the test on the user's machine.
//
// Two folders hold the library that slows chosen functions by a known amount (bench/slower): one
// without amounts, one in which every function of the selection takes longer by a share of its
// time. Each round compares the two with ntkcompare and, for some rounds, with what is at hand
// elsewhere, on the same cases in the same minutes; quiet and with a process that spins on the same
// processor. The results are lines of a file, so that a run can be interrupted and gone on with.

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "options.h"
#include "powertable.h"
#include "rounds.h"

namespace fs = std::filesystem;

namespace {

Results resultsIn(const std::string& path) {
    Results results;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        addLine(line, results);
    }
    return results;
}

// Gone with the program.
class Folder {
public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "compare_power_XXXXXX").string();
        if (!mkdtemp(name.data())) {
            throw std::runtime_error("cannot make a folder in " +
                                     fs::temp_directory_path().string());
        }
        m_path = name;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

void run(const PowerOptions& options, const std::string& resultsFile, const fs::path& folder) {
    std::ofstream results(resultsFile, std::ios::app);
    if (!results) {
        throw std::runtime_error("cannot write to " + resultsFile);
    }
    Rounds rounds(options, folder, results);
    rounds.calibrate();
    rounds.compareAll();
    if (options.measuresTurnShare) {
        rounds.measureTurnShares();
    }
}

} // namespace

int main(int argc, char** argv) {
    PowerOptions options;
    int status = 0;
    if (!readOptions(argc, argv, options, status)) {
        return status;
    }
    std::signal(SIGINT, SIG_IGN); // the program that runs ends, then this one cleans up
    try {
        const Folder folder;
        const std::string file = options.results.empty() ? (folder.path() / "results").string()
                                                         : fs::absolute(options.results).string();
        if (!options.showsOnly) {
            run(options, file, folder.path());
        }
        const Results results = resultsIn(file);
        std::fputs((options.asMarkdown ? markdownTables(results) : plainTables(results)).c_str(),
                   stdout);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_compare_power: %s\n", error.what());
        return 1;
    }
    return 0;
}
