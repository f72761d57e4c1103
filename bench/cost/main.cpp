// bench_own_cost: what the programs themselves cost. It prints; nothing judges its figures.
#include <cstdio>
#include <stdexcept>
#include <string>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "tables.h"

namespace fs = std::filesystem;

namespace {

// Removed at the end.
class Scratch {
public:
    Scratch() {
        std::string name = (fs::temp_directory_path() / "bench_own_cost-XXXXXX").string();
        if (!mkdtemp(name.data())) {
            throw std::runtime_error("cannot make a folder in " +
                                     fs::temp_directory_path().string());
        }
        m_path = name;
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

} // namespace

int main(int argc, char** argv) {
    CLI::App app("What the programs beside this one cost: how soon they answer, and how processor\n"
                 "time and memory grow with the work. Prints Markdown tables.");
    int runs = 50;
    app.require_subcommand(1);
    CLI::App* const answers = app.add_subcommand("answers", "How soon help and refusals come");
    answers->add_option("--runs", runs, "Of each command")
        ->type_name("N")
        ->check(CLI::Range(1, 100000).description(""));
    app.add_subcommand("growth", "1250 to 10000 tests, combinations and keys; rows by the million");
    CLI11_PARSE(app, argc, argv);
    try {
        const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
        if (*answers) {
            printAnswers(programs, runs);
        } else {
            const Scratch scratch;
            printGrowth(programs, scratch.path());
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "bench_own_cost: %s\n", e.what());
        return 1;
    }
    return 0;
}
