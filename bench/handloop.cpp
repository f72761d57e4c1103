// The harness's figures against plain loops around the same library calls.
//
// Every round times the calls by hand and then lets ntkperf, which lies beside this program,
// measure the same: the encoder on the first 65536 bytes of book1, the checksum on as many random
// bytes. A change of the processor's frequency or a busy neighbour so meets both. Each side keeps
// its smallest value, because noise only ever adds.
//
// Usage: bench_handloop CORPUSDIR

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include "ntkcore.h"
#include "ntkdc.h"

namespace {

constexpr int bytesPerCall = 65536;
constexpr int rounds = 5;
constexpr int callsPerRound = 3000;

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

// The smallest clocks per byte of many calls; prepare runs untimed before each.
template <class Prepare, class Call> double handLoop(Prepare prepare, Call call) {
    Ntk64u best = std::numeric_limits<Ntk64u>::max();
    for (int i = 0; i < callsPerRound; ++i) {
        prepare();
        const Ntk64u start = startClocks();
        call();
        best = std::min(best, stopClocks() - start);
    }
    return static_cast<double>(best) / bytesPerCall;
}

double encodeByHand() {
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
    return handLoop([&] { blockBytes = capacity; },
                    [&] {
                        ntksEncodeLZ4_8u(source.get(), bytesPerCall, block.get(), &blockBytes,
                                         table.get());
                    });
}

double checksumByHand() {
    const Bytes source = bytes(bytesPerCall);
    std::mt19937 generator(7);
    std::generate_n(source.get(), bytesPerCall, [&] { return static_cast<Ntk8u>(generator()); });
    Ntk32u checksum = 0;
    return handLoop([] {}, [&] { ntksCRC32_8u(source.get(), bytesPerCall, &checksum); });
}

struct Subject {
    const char* function;
    double (*byHand)();
    double hand = 0, harness = 0; // of this round
    double bestHand = std::numeric_limits<double>::infinity();
    double bestHarness = std::numeric_limits<double>::infinity();
};

// The figure of the function in a line of the performance table; 0 when it is another line.
double clocksInRow(const std::string& line, const char* function) {
    constexpr int clocksColumn = 6;
    if (line.rfind(function + std::string(","), 0) != 0) {
        return 0;
    }
    size_t cell = 0;
    for (int column = 0; column < clocksColumn; ++column) {
        cell = line.find(',', cell) + 1;
    }
    return std::strtod(line.c_str() + cell, nullptr);
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

void measureByHarness(Subject (&subjects)[2]) {
    const std::string command = "exec \"$NTKPERF\" -B -LERR -r/dev/stdout -dCodeFile=book1 "
                                "-dCodeLength=" +
                                std::to_string(bytesPerCall) + " -f=" + subjects[0].function +
                                " -f=" + subjects[1].function;
    FILE* const output = popen(command.c_str(), "r");
    char line[1024];
    while (output && fgets(line, sizeof line, output)) {
        for (Subject& subject : subjects) {
            const double clocks = clocksInRow(line, subject.function);
            subject.harness = clocks > 0 ? clocks : subject.harness;
        }
    }
    if (output) {
        pclose(output);
    }
}

void print(const char* function, const char* round, double hand, double harness) {
    std::printf("%-18s %5s %9.4f %9.4f %7.3f\n", function, round, hand, harness, harness / hand);
}

bool runRound(Subject (&subjects)[2], int round) {
    for (Subject& subject : subjects) {
        subject.hand = subject.byHand();
        subject.harness = 0;
    }
    measureByHarness(subjects);
    for (Subject& subject : subjects) {
        if (subject.harness <= 0) {
            std::fprintf(stderr, "ntkperf beside this program gave no figure for %s\n",
                         subject.function);
            return false;
        }
        print(subject.function, std::to_string(round).c_str(), subject.hand, subject.harness);
        subject.bestHand = std::min(subject.bestHand, subject.hand);
        subject.bestHarness = std::min(subject.bestHarness, subject.harness);
    }
    return true;
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
    Subject subjects[2] = {{"ntksEncodeLZ4_8u", encodeByHand}, {"ntksCRC32_8u", checksumByHand}};
    std::printf("%-18s %5s %9s %9s %7s\n", "clocks per byte", "round", "by hand", "ntkperf",
                "ratio");
    for (int round = 1; round <= rounds; ++round) {
        if (!runRound(subjects, round)) {
            return 1;
        }
    }
    for (const Subject& subject : subjects) {
        print(subject.function, "best", subject.bestHand, subject.bestHarness);
    }
    return 0;
}
