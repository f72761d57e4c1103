#include <algorithm>
#include <cstdio>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "child.h"
#include "tables.h"

namespace {

struct Question {
    const char* program;
    const char* keys; // with blanks in between
    int status;
};

// A wrong key of ntkperf is told, and the run goes on.
constexpr Question questions[] = {
    {"ntkperf", "-e", 0},        {"ntkperf", "-e+", 0},          {"ntkperf", "-v", 0},
    {"ntkperf", "-v -&", 0},     {"ntkperf", "-h", 0},           {"ntkperf", "-hh", 0},
    {"ntkcompare", "--help", 0}, {"ntkcompare", "--version", 0}, {"ntkcompare", "--wrong", 2},
    {"ntkreport", "--help", 0},  {"ntkreport", "--version", 0},  {"ntkreport", "--wrong", 2},
    {"ntkguard", "--help", 0},   {"ntkguard", "--version", 0},   {"ntkguard", "--wrong", 2},
    {"ntkcorpus", "--help", 0},  {"ntkcorpus", "--version", 0},  {"ntkcorpus", "--wrong", 2},
    {"ntkbench", "--help", 0},   {"ntkbench", "--version", 0},   {"ntkbench", "--wrong", 2},
};

std::vector<std::string> wordsOf(const char* text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

} // namespace

void printAnswers(const std::filesystem::path& programs, int runs) {
    std::printf("| command | status | quickest, ms | median, ms | slowest, ms |\n"
                "|---|---:|---:|---:|---:|\n");
    for (const Question& question : questions) {
        std::vector<double> milliseconds;
        for (int i = 0; i < runs; ++i) {
            const Cost cost = costOf({programs / question.program, wordsOf(question.keys)});
            if (cost.status != question.status) {
                throw std::runtime_error(std::string(question.program) + " " + question.keys +
                                         " ended with status " + std::to_string(cost.status));
            }
            milliseconds.push_back(1000 * cost.wallSeconds);
        }
        std::sort(milliseconds.begin(), milliseconds.end());
        std::printf("| `%s %s` | %d | %.1f | %.1f | %.1f |\n", question.program, question.keys,
                    question.status, milliseconds.front(), milliseconds[milliseconds.size() / 2],
                    milliseconds.back());
        std::fflush(stdout);
    }
}
