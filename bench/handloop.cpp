// The harness's figures against plain loops around the same library calls.
//
// In every round ntkperf, which lies beside this program, measures the encoder on the first 65536
// bytes of book1 and the checksum on as many random bytes; then both are timed by hand. Each side
// keeps the smallest clocks of a call, as noise only ever adds. The hand loop makes as many calls
// as the harness made: on the same data, call after call, the processor learns its branches by
// heart, and the smallest value of an encoder goes on falling for thousands of calls.
//
// The last lines give the medians of the rounds, the ratio's too: the processor's frequency changes
// from one round to the next, while the clocks counted here go on at the same pace, but both sides
// of a round mostly meet the same frequency.
//
// Usage: bench_handloop CORPUSDIR

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "ntkcore.h"
#include "ntkdc.h"

namespace {

constexpr int bytesPerCall = 65536;
constexpr int rounds = 15; // within a minute
constexpr int warmUpCalls = 3;

using ClockReader = Ntk64u (*)();
ClockReader startClocks = ntkStartTsc;
ClockReader stopClocks = ntkStopTsc;

// The pair that the harness uses: the one built on RDTSCP where the processor has it.
void chooseClocks() {
    Ntk64u features = 0;
    Ntk32u registers[4] = {0x80000001, 0, 0, 0};
    ntkGetCpuFeatures(&features, registers);
    if (registers[3] >> 27 & 1) {
        startClocks = ntkStartTscp;
        stopClocks = ntkStopTscp;
    }
}

struct Free {
    void operator()(void* block) const { std::free(block); }
};
using Bytes = std::unique_ptr<Ntk8u[], Free>;

Bytes bytes(int count) {
    constexpr size_t line = 64;
    const size_t size = (static_cast<size_t>(count) + line - 1) / line * line;
    Bytes block(static_cast<Ntk8u*>(std::aligned_alloc(line, size)));
    std::memset(block.get(), 0, size);
    return block;
}

// The smallest clocks per byte of so many calls; prepare runs untimed before each.
template <class Prepare, class Call> double handLoop(int calls, Prepare prepare, Call call) {
    for (int i = 0; i < warmUpCalls; ++i) {
        prepare();
        call();
    }
    Ntk64u best = std::numeric_limits<Ntk64u>::max();
    for (int i = 0; i < calls; ++i) {
        prepare();
        const Ntk64u start = startClocks();
        call();
        best = std::min(best, stopClocks() - start);
    }
    return static_cast<double>(best) / bytesPerCall;
}

double encodeByHand(int calls) {
    constexpr int capacity = 2 * bytesPerCall;
    const Bytes source = bytes(bytesPerCall);
    const Bytes block = bytes(capacity);
    std::ifstream("book1", std::ios::binary)
        .read(reinterpret_cast<char*>(source.get()), bytesPerCall);
    int tableBytes = 0;
    ntksEncodeLZ4HashTableGetSize_8u(&tableBytes);
    const Bytes table = bytes(tableBytes);
    ntksEncodeLZ4HashTableInit_8u(table.get(), bytesPerCall);
    int blockBytes = 0;
    return handLoop(
        calls, [&] { blockBytes = capacity; },
        [&] {
            ntksEncodeLZ4_8u(source.get(), bytesPerCall, block.get(), &blockBytes, table.get());
        });
}

double checksumByHand(int calls) {
    const Bytes source = bytes(bytesPerCall);
    std::mt19937 generator(7);
    std::generate_n(source.get(), bytesPerCall, [&] { return static_cast<Ntk8u>(generator()); });
    Ntk32u checksum = 0;
    return handLoop(
        calls, [] {}, [&] { ntksCRC32_8u(source.get(), bytesPerCall, &checksum); });
}

// The cells of a line of the performance table.
std::vector<std::string> cellsOf(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> cells;
    for (std::string cell; std::getline(in, cell, ',');) {
        cells.push_back(cell);
    }
    return cells;
}

struct Subject {
    const char* function;
    double (*byHand)(int calls);
    std::vector<double> hand = {}, harness = {}, ratio = {}; // clocks per byte; one per round
};

struct HarnessResult {
    double clocksPerByte;
    int calls;
};

// What the table's line of the function tells; no calls when there is none.
HarnessResult resultOf(const std::vector<std::string>& lines, const char* function) {
    constexpr size_t clocksColumn = 6, commentColumn = 10;
    for (const std::string& line : lines) {
        const std::vector<std::string> cells = cellsOf(line);
        if (cells.size() > commentColumn && cells[0] == function) {
            const std::string& comment = cells[commentColumn]; // "nLps=<calls>"
            return {std::atof(cells[clocksColumn].c_str()),
                    std::atoi(comment.substr(comment.find('=') + 1).c_str())};
        }
    }
    return {0, 0};
}

// The harness lies beside this program; its path goes by the environment, where no character of it
// has a meaning of its own.
void nameHarness() {
    char self[4096] = {};
    if (readlink("/proc/self/exe", self, sizeof self - 1) > 0) {
        const std::string path = self;
        setenv("NTKPERF", (path.substr(0, path.rfind('/') + 1) + "ntkperf").c_str(), 1);
    }
}

std::vector<std::string> runHarness(const Subject (&subjects)[2]) {
    const std::string command = "exec \"$NTKPERF\" -B -LERR -r/dev/stdout -dCodeFile=book1 "
                                "-dCodeLength=" +
                                std::to_string(bytesPerCall) + " -f=" + subjects[0].function +
                                " -f=" + subjects[1].function;
    std::vector<std::string> lines;
    FILE* const output = popen(command.c_str(), "r");
    char line[1024];
    while (output && fgets(line, sizeof line, output)) {
        lines.emplace_back(line);
    }
    if (output) {
        pclose(output);
    }
    return lines;
}

void print(const char* function, const char* round, double hand, double harness, double ratio) {
    std::printf("%-18s %6s %9.4f %9.4f %7.3f\n", function, round, hand, harness, ratio);
}

bool runRound(Subject (&subjects)[2], int round) {
    const std::vector<std::string> lines = runHarness(subjects);
    for (Subject& subject : subjects) {
        const HarnessResult result = resultOf(lines, subject.function);
        if (result.calls < 1) {
            std::fprintf(stderr, "ntkperf beside this program gave no figure for %s\n",
                         subject.function);
            return false;
        }
        const double hand = subject.byHand(result.calls);
        const double ratio = result.clocksPerByte / hand;
        subject.hand.push_back(hand);
        subject.harness.push_back(result.clocksPerByte);
        subject.ratio.push_back(ratio);
        print(subject.function, std::to_string(round).c_str(), hand, result.clocksPerByte, ratio);
    }
    return true;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + rounds / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || chdir(argv[1]) != 0 || access("book1", R_OK) != 0) {
        std::fprintf(stderr, "Usage: bench_handloop CORPUSDIR\n"
                             "The directory holds the file book1.\n");
        return 1;
    }
    chooseClocks();
    nameHarness();
    // In the order in which the harness runs them.
    Subject subjects[2] = {{"ntksCRC32_8u", checksumByHand}, {"ntksEncodeLZ4_8u", encodeByHand}};
    std::printf("%-18s %6s %9s %9s %7s\n", "clocks per byte", "round", "by hand", "ntkperf",
                "ratio");
    for (int round = 1; round <= rounds; ++round) {
        if (!runRound(subjects, round)) {
            return 1;
        }
    }
    for (const Subject& subject : subjects) {
        print(subject.function, "median", median(subject.hand), median(subject.harness),
              median(subject.ratio));
    }
    return 0;
}
