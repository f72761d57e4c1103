// A row for each kind of work, at a doubling number of pieces. Processor time, because the wall
// time of minutes tells more about what else runs; the quickest of three runs, as noise only adds.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "child.h"
#include "exponent.h"
#include "tables.h"

namespace fs = std::filesystem;

namespace {

constexpr int manySizes[] = {1250, 2500, 5000, 10000};
constexpr int rowFactor = 100; // a million rows
constexpr int runsOfEach = 3;

struct Place {
    fs::path programs, scratch;
};

struct Work {
    const char* what;
    int factor; // of the sizes
    // Writes what is read; size 0 stands for as little as there can be.
    Child (*prepare)(const Place& place, int size);
};

std::string manyTests(int size) {
    return "MANY_TESTS=" + std::to_string(std::max(size, 1));
}

Child harness(const Place& place, std::vector<std::string> more, int tests) {
    std::vector<std::string> keys = {"-B", "-dMethod=Manual", "-dNumLoops=1"};
    keys.insert(keys.end(), more.begin(), more.end());
    return {place.programs / "bench_many_tests", keys, manyTests(tests), place.scratch};
}

const std::vector<std::string> allOutputs = {"-olog.txt", "-rtable.csv", "-usum.csv", "-xrun"};

Child listed(const Place& place, int size) {
    return harness(place, {"-e"}, size);
}
Child measured(const Place& place, int size) {
    return harness(place, allOutputs, size);
}
Child guarded(const Place& place, int size) {
    Child child = measured(place, size);
    child.arguments.insert(child.arguments.begin(), child.program.string());
    child.program = place.programs / "ntkguard";
    return child;
}
Child combined(const Place& place, int size) {
    std::vector<std::string> keys = allOutputs;
    keys.push_back("-dLength=1;" + std::to_string(std::max(size, 1)) + ";+1");
    return harness(place, keys, 1);
}
Child listOfValues(const Place& place, int size) {
    const fs::path name = place.scratch / "values.ini";
    std::ofstream file(name);
    file << "[Perf System]\nLength=1";
    for (int i = 1; i < size; ++i) {
        file << ";" << i * 7 % 100003;
    }
    file << "\n";
    file.close();
    return harness(place, {"-rtable.csv", "-i" + name.string()}, 1);
}
Child withSections(const Place& place, int size) {
    const fs::path name = place.scratch / "sections.ini";
    std::ofstream file(name);
    for (int i = 0; i < std::max(size, 1); ++i) {
        char section[32];
        std::snprintf(section, sizeof section, "[many%07d]\n", i);
        file << section << "Length=" << i + 1 << "\n";
    }
    file.close();
    return harness(place, {"-P", "-rtable.csv", "-i" + name.string()}, size);
}
Child withUnknownKeys(const Place& place, int size) {
    const fs::path name = place.scratch / "unknown.ini";
    std::ofstream file(name);
    file << "[Perf System]\n";
    for (int i = 0; i < size; ++i) {
        file << "Nobody" << i << "=1\n";
    }
    file.close();
    return harness(place, {"-rtable.csv", "-i" + name.string()}, 1);
}

// As ntkperf writes them: 100 functions, each at as many lengths.
fs::path writeTable(const Place& place, int rows) {
    const fs::path name = place.scratch / "rows.csv";
    std::ofstream file(name);
    file << "Processor,Made\nOS,Made\nComputer,Made\nLibrary,Made\nStart,Sun Nov 22 07:06:18 2026\n"
            "Function,Types,Length,CodeFile,Variant,Ratio,Clocks,Unit,Rate,Result,Comment,Spread\n";
    constexpr int functions = 100;
    for (int i = 0; i < std::max(rows, 1); ++i) {
        file << "many" << i * 1LL * functions / std::max(rows, 1) << ",8u," << i + 1
             << ",book1,-,-," << 1 + i % 97 << ".5,e,-,OK,nLps=8," << i % 9 << ".5\n";
    }
    return name;
}
Child merged(const Place& place, int size) {
    return {place.programs / "ntkreport",
            {"--csv=merged.csv", writeTable(place, size)},
            {},
            place.scratch};
}
Child summed(const Place& place, int size) {
    return {place.programs / "ntkreport", {writeTable(place, size)}, {}, place.scratch};
}

constexpr Work works[] = {
    {"tests, listed: `-e`", 1, listed},
    {"tests, run: log, table, summary, records", 1, measured},
    {"tests, run under `ntkguard`", 1, guarded},
    {"combinations of one test: `-dLength=1;N;+1`", 1, combined},
    {"values of one parameter in a settings file", 1, listOfValues},
    {"tests, each with a section of the settings file: `-P`", 1, withSections},
    {"keys of a settings file that no test asks for", 1, withUnknownKeys},
    {"rows of a table: `ntkreport --csv`", rowFactor, merged},
    {"rows of a table: `ntkreport`, summary", rowFactor, summed},
};

Cost quickest(const Work& work, const Place& place, int size) {
    const Child child = work.prepare(place, size);
    Cost best;
    for (int run = 0; run < runsOfEach; ++run) {
        const Cost cost = costOf(child);
        if (cost.status != 0) {
            throw std::runtime_error(child.program.string() + " ended with status " +
                                     std::to_string(cost.status) + " at " + work.what);
        }
        if (run == 0 || cost.processorSeconds < best.processorSeconds) {
            best = cost;
        }
    }
    return best;
}

} // namespace

void printGrowth(const fs::path& programs, const fs::path& scratch) {
    std::printf("| N of | seconds at N =");
    for (const int size : manySizes) {
        std::printf(" %d |", size);
    }
    std::printf(
        " MiB at the last | exponent of time | of memory |\n|---|---:|---:|---:|---:|---:|---:|"
        "---:|\n");
    for (const Work& work : works) {
        const Place place = {programs, scratch};
        const Cost nothing = quickest(work, place, 0);
        std::vector<Point> times, memories;
        std::printf("| %s%s |", work.factor > 1 ? "100 " : "", work.what);
        for (const int size : manySizes) {
            const Cost cost = quickest(work, place, size * work.factor);
            times.push_back({static_cast<double>(size), cost.processorSeconds});
            memories.push_back({static_cast<double>(size), cost.mebibytes});
            std::printf(" %.3f |", cost.processorSeconds);
            std::fflush(stdout);
        }
        std::printf(" %.0f | %.2f | %.2f |\n", memories.back().cost,
                    growthExponent(times, nothing.processorSeconds),
                    growthExponent(memories, nothing.mebibytes));
    }
}
