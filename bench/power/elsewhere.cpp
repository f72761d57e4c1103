#include "elsewhere.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

constexpr int repetitions = 9;

double since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Keeps the processor time of each repetition, which a neighbour on the processor has no part in.
class Keeper : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                times.push_back(run.GetAdjustedCPUTime());
            }
        }
    }
    std::vector<double> times;
};

std::vector<double> benchmarkTimes(const psTurns& turns, double seconds) {
    [[maybe_unused]] static const bool isInitialised = [] {
        static char name[] = "bench_plain";
        char* words[] = {name, nullptr};
        int count = 1;
        benchmark::Initialize(&count, words);
        return true;
    }();
    benchmark::RegisterBenchmark("case",
                                 [&turns](benchmark::State& state) {
                                     for (auto iteration : state) {
                                         benchmark::DoNotOptimize(turns.callOnce());
                                     }
                                 })
        ->Repetitions(repetitions)
        ->MinTime(seconds / repetitions);
    Keeper keeper;
    benchmark::RunSpecifiedBenchmarks(&keeper);
    benchmark::ClearRegisteredBenchmarks();
    return keeper.times;
}

double quickestCall(const psTurns& turns, double seconds) {
    constexpr int calls = 50;
    double clocks = turns.take(1, calls).clocksPerCall;
    const auto start = std::chrono::steady_clock::now();
    while (since(start) < seconds) {
        clocks = std::min(clocks, turns.take(1, calls).clocksPerCall);
    }
    return clocks;
}

} // namespace

nlohmann::ordered_json measureElsewhere(const psTurns& turns, double seconds) {
    const auto start = std::chrono::steady_clock::now();
    const std::vector<double> times = benchmarkTimes(turns, seconds);
    const double benchmarkSeconds = since(start);
    const double quickest = quickestCall(turns, seconds);
    return {{"benchmark", times},
            {"benchmark_seconds", benchmarkSeconds},
            {"quickest", quickest},
            {"quickest_seconds", since(start) - benchmarkSeconds}};
}
