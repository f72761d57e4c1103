// The harness's figures against plain loops around the same library calls.
//
// In every round ntkperf, which lies beside this program, measures the encoder on the file and the
// checksum on as many random bytes; then both are timed by hand. Each side keeps the smallest
// clocks of a call, as noise only ever adds. The hand loop makes as many calls as the harness made:
// on the same data, call after call, the processor learns its branches by heart, and the smallest
// value of an encoder goes on falling for thousands of calls.
//
// The figures are medians of the rounds, the ratio's too: the processor's frequency changes from
// one round to the next, while the clocks counted here go on at the same pace, but both sides of a
// round mostly meet the same frequency.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string_view>

#include "comparison.h"
#include "lines.h"
#include "ntkdc.h"
#include "table.h"

namespace {

constexpr int mostBytes = 65536;
// At the start of a cache line, as the harness's buffers are.
alignas(64) Ntk8u g_source[mostBytes];
alignas(64) Ntk8u g_block[2 * mostBytes];

double clocksByHand(int calls, std::function<void()> call, std::function<void()> prepare = {}) {
    constexpr int warmUpCalls = 3;
    std::vector<Variant> alone = {{"", std::move(call), std::move(prepare)}};
    measureInterleaved(alone, warmUpCalls + calls);
    return alone[0].bestClocks();
}

double encodeByHand(const Bytes& data, int calls) {
    const int size = lengthOf(data);
    std::copy(data.begin(), data.end(), g_source);
    Bytes table = sized(ntksEncodeLZ4HashTableGetSize_8u);
    must(ntksEncodeLZ4HashTableInit_8u(table.data(), size));
    int length = 0;
    return clocksByHand(
        calls, [&] { must(ntksEncodeLZ4_8u(g_source, size, g_block, &length, table.data())); },
        [&] { length = sizeof g_block; });
}

double checksumByHand(const Bytes& data, int calls) {
    std::mt19937 generator(7);
    std::generate_n(g_source, data.size(), [&] { return static_cast<Ntk8u>(generator()); });
    Ntk32u checksum = 0;
    return clocksByHand(calls, [&] { must(ntksCRC32_8u(g_source, lengthOf(data), &checksum)); });
}

// By function.
using Measurements = std::map<std::string, report::Measurement>;

// Of the table in all that a run printed; empty when there is none.
Measurements measurementsIn(FILE* output) {
    report::Reading reading;
    report::TableReader table("the output of ntkperf", reading);
    char line[1024];
    for (long long number = 1; output && std::fgets(line, sizeof line, output); ++number) {
        const std::string_view text = line;
        table.take(text.substr(0, text.find('\n')), true, number);
    }
    try {
        table.finish();
    } catch (const report::Unreadable&) {
        return {};
    }
    Measurements measurements;
    for (const report::Run& run : reading.runs) {
        for (const report::Measurement& row : run.measurements) {
            measurements[row.function] = row;
        }
    }
    return measurements;
}

struct Subject {
    std::string function;
    double (*byHand)(const Bytes& data, int calls);
    std::vector<double> hand = {}, harness = {}, ratio = {}; // clocks per byte; one per round
};

// Paths go by the environment, where no character of theirs has a meaning of its own.
Measurements runHarness(const Run& run, const std::vector<Subject>& subjects) {
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    setenv("NTKPERF", (self.parent_path() / "ntkperf").c_str(), 1);
    setenv("NTKPERF_FILE", run.path.c_str(), 1);
    std::string command = "exec \"$NTKPERF\" -B -LERR -r/dev/stdout \"-dCodeFile=$NTKPERF_FILE\" "
                          "-dCodeLength=" +
                          std::to_string(run.data.size());
    for (const Subject& subject : subjects) {
        command += " -f=" + subject.function;
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    return measurementsIn(pipe.get());
}

void runRound(const Run& run, std::vector<Subject>& subjects) {
    Measurements measurements = runHarness(run, subjects);
    for (Subject& subject : subjects) {
        const report::Measurement& row = measurements[subject.function];
        const double harness = row.clocksPerUnit.value_or(0);
        const auto calls = static_cast<int>(row.calls);
        if (harness <= 0 || calls <= 0) {
            throw std::runtime_error("the ntkperf beside this program gave no clocks and number of "
                                     "calls for " +
                                     subject.function);
        }
        const double hand = subject.byHand(run.data, calls) / static_cast<double>(run.data.size());
        subject.hand.push_back(hand);
        subject.harness.push_back(harness);
        subject.ratio.push_back(harness / hand);
    }
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void compareWithHandLoop(Run& run) {
    std::vector<Subject> subjects = {{"ntksCRC32_8u", checksumByHand},
                                     {"ntksEncodeLZ4_8u", encodeByHand}};
    for (int round = 0; round < run.rounds; ++round) {
        runRound(run, subjects);
    }
    for (const Subject& s : subjects) {
        const auto [lowest, highest] = std::minmax_element(s.ratio.begin(), s.ratio.end());
        const Ratio ratio = {median(s.ratio), *lowest, *highest};
        run.print({s.function, run.data.size(), median(s.harness), "a loop by hand", median(s.hand),
                   ratio});
    }
}

} // namespace

const Comparison handloopComparison = {"handloop", "ntkperf's own figures with loops timed by hand",
                                       {"book1"},  65536,
                                       15,         compareWithHandLoop};
