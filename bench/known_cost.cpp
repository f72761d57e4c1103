// bench_known_cost: are the clocks that the harness reads the clocks that a call takes?
//
// A chain of multiplications that wait for each other takes three clocks of the core each, whatever
// the machine does. The program measures how many clocks of the time-stamp counter pass in one of
// the core, by chains of additions, then has the harness's own timing frame read a chain of
// multiplications as if it were a function to measure, and compares.

#include <cpuid.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>

#include <CLI/CLI.hpp>

#include "chaincost.h"
#include "chains.h"
#include "kxtiming.h"

namespace {

constexpr int shortBlocks = 64;
constexpr int measuredBlocks = 192; // 12288 multiplications: some ten microseconds
constexpr double limit = 0.02;

double quickest(std::uint64_t (*chain)(int, std::uint64_t), int blocks) {
    constexpr int spans = 40;
    double clocks = 1e18;
    for (int i = 0; i < spans; ++i) {
        const Ntk64u start = ntk_StartCpuClocks();
        chain(blocks, 3);
        clocks = std::min(clocks, static_cast<double>(ntk_StopCpuClocks() - start));
    }
    return clocks;
}

ChainReading read(std::uint64_t (*chain)(int, std::uint64_t), double coreClocksPerLink) {
    const int longBlocks = shortBlocks + measuredBlocks;
    return {quickest(chain, shortBlocks), quickest(chain, longBlocks),
            coreClocksPerLink * linksPerBlock * measuredBlocks};
}

int knownCall() {
    static std::uint64_t product =
        3; // of the call before: else the next would begin before its end
    product = multiplicationChain(measuredBlocks, product);
    return 0;
}

double readByHarness() {
    constexpr int callsPerSpan = 4;
    int calls = 100;
    long long clocks = 0;
    kxTiming<knownCall, nullptr>::stat(&calls, &clocks, callsPerSpan, "knownCall");
    return static_cast<double>(clocks);
}

ChainRound measure() {
    return {read(additionChain, coreClocksPerAddition),
            read(multiplicationChain, coreClocksPerMultiplication),
            coreClocksPerMultiplication * linksPerBlock * measuredBlocks, readByHarness()};
}

double counterMHz() {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const Ntk64u from = ntk_StartCpuClocks();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const Ntk64u to = ntk_StopCpuClocks();
    const std::chrono::duration<double, std::micro> passed = Clock::now() - start;
    return static_cast<double>(to - from) / passed.count();
}

std::string cpuinfo(const std::string& key) {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(key)) {
            return line.substr(line.find(':') + 2);
        }
    }
    return "not told";
}

std::string nominalFrequency() {
    unsigned base = 0, most = 0, bus = 0, rest = 0;
    if (!__get_cpuid(0x16, &base, &most, &bus, &rest) || base == 0) {
        return "not told by the processor";
    }
    return std::to_string(base) + " MHz, at most " + std::to_string(most) + " MHz";
}

bool isInvariant() {
    unsigned a = 0, b = 0, c = 0, d = 0;
    return __get_cpuid(0x80000007, &a, &b, &c, &d) && (d & 1U << 8);
}

void printMachine() {
    std::printf("processor            %s\n", cpuinfo("model name").c_str());
    std::printf("frequency, nominal   %s\n", nominalFrequency().c_str());
    std::printf("frequency, system    %s MHz\n", cpuinfo("cpu MHz").c_str());
    std::printf("time-stamp counter   %.0f MHz, %s\n\n", counterMHz(),
                isInvariant() ? "the same at every frequency of the core"
                              : "not said to be the same at every frequency of the core");
}

void print(const ChainVerdict& verdict, const ChainRound& last) {
    std::printf("clocks of the counter in one of the core\n");
    std::printf("  by additions         %.4f (%.4f to %.4f in this run)\n",
                verdict.counterPerCoreClock, verdict.lowestRatio, verdict.highestRatio);
    std::printf("  by multiplications   %+.2f%% from that\n\n", 100 * verdict.disagreement);
    std::printf("a chain of %d multiplications, read by the harness\n",
                linksPerBlock * measuredBlocks);
    std::printf("  known cost           %.0f clocks of the core\n", last.knownCoreClocks);
    std::printf("                       %.0f clocks of the counter\n",
                last.knownCoreClocks * verdict.counterPerCoreClock);
    std::printf("  read                 %+.2f%% from that; the limit is %.0f%%: %s\n",
                100 * verdict.deviation, 100 * limit,
                verdict.isWithin(limit) ? "passed" : "FAILED");
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Reads a chain of multiplications, whose cost is known, through the harness's own "
                 "timing frame,\nand tells how many clocks of the time-stamp counter pass in one "
                 "of the core.",
                 "bench_known_cost");
    int count = 25;
    bool isVerbose = false;
    app.add_option("--rounds", count, "Measurements; the medians count")
        ->check(CLI::Range(1, 100000));
    app.add_flag("--verbose", isVerbose, "Print every round");
    app.footer("Exit status: 0; 1 when a reading is further than 2% from the known cost; 2 for a "
               "wrong command line.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    printMachine();
    std::vector<ChainRound> rounds;
    for (int i = 0; i < count; ++i) {
        rounds.push_back(measure());
        if (isVerbose) {
            std::printf("round %3d: ratio %.4f, by multiplications %+.2f%%, harness %+.2f%%\n",
                        i + 1, rounds.back().additions.counterPerCoreClock(),
                        100 * rounds.back().disagreement(), 100 * rounds.back().deviation());
        }
    }
    const ChainVerdict verdict = judgeChains(rounds);
    print(verdict, rounds.back());
    return verdict.isWithin(limit) ? 0 : 1;
}
