// ntkcompare: is the new build faster?
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "interruption.h"
#include "libraries.h"
#include "options.h"
#include "outputs.h"
#include "report.h"
#include "runner.h"
#include "terminal.h"
#include "usage.h"

namespace compare {

namespace {

using common::print;
using common::terminalWidth;
using common::whyNotWritable;
using common::writeFile;

constexpr int cannotMeasure = 2;
const std::string programName = "ntkcompare";

// Before anything is measured: hours may lie between it and the writing.
void checkFiles(const Options& options) {
    for (const std::string& file : {options.csvFile, options.jsonFile, options.markdownFile}) {
        if (const std::string why = whyNotWritable(file); !file.empty() && !why.empty()) {
            throw UsageError("cannot write " + file + ": " + why + "; name another file");
        }
    }
}

// With data that every machine has, so that --self runs in any folder.
std::vector<std::string> selfKeys(const std::string& dataFile) {
    return {"-f=ntksCRC32_8u",      "-f=ntksEncodeLZ4_8u",   "-f=ntksDecodeLZ4_8u",
            "-f=ntksEncodeLZO_8u",  "-f=ntksInflate_8u",     "-f=ntksMTFFwd_8u",
            "-f=ntksDecodeLZSS_8u", "-dCodeLength=16384",    "-dcomprLevel=6",
            "-dmethod=ST",          "-dCodeFile=" + dataFile};
}

Plan planOf(const Options& options) {
    const OwnBuild own = ownBuild();
    Plan plan;
    plan.worker = options.worker.empty() ? own.worker : options.worker;
    plan.ownLibraries = own.libraries;
    plan.directories = options.directories;
    plan.settings = options.settings;
    for (const Side side : {Side::base, Side::changed}) {
        const std::string& directory = options.directories[side];
        checkLibraries(directory == "own" ? plan.ownLibraries : directory);
        plan.keys[side] = options.keys[side];
        if (options.isSelf && plan.keys[side].empty()) {
            plan.keys[side] = selfKeys(own.someData);
        }
        plan.keys[side].insert(plan.keys[side].begin(), "-B"); // there is nobody to answer
    }
    if (access(plan.worker.c_str(), X_OK) != 0) {
        throw UsageError("cannot start " + plan.worker + ": " + std::strerror(errno) +
                         "; build or install it with ntkcompare");
    }
    return plan;
}

// The table first: a disk that is full must not take it away, too.
int report(const Options& options, const Comparison& comparison) {
    const Judgement judgement = judge(comparison);
    std::string text =
        tableText(comparison, judgement, {terminalWidth(STDOUT_FILENO), options.showsAll});
    if (options.isSelf) {
        text += "\n";
        text += selfText(comparison, judgement);
    }
    bool isWritten = print(programName, text);
    isWritten &= options.csvFile.empty() ||
                 writeFile(programName, options.csvFile, csvText(comparison, judgement));
    isWritten &= options.jsonFile.empty() ||
                 writeFile(programName, options.jsonFile, jsonText(comparison, judgement));
    isWritten &= options.markdownFile.empty() ||
                 writeFile(programName, options.markdownFile, markdownText(comparison, judgement));
    if (interruption() != 0) {
        return 128 + interruption();
    }
    return isWritten ? exitStatus(comparison, judgement) : cannotMeasure;
}

Comparison measure(const Options& options) {
    const auto wantsEnd = [] { return interruption() != 0; };
    Plan plan = planOf(options);
    plan.wantsEnd = wantsEnd;
    ProgressLine line(!options.isQuiet);
    watchForInterruption(line.lastWords("Ending after this turn; Ctrl-C again ends at once"));
    return run(
        plan,
        [&](const Progress& progress) {
            if (interruption() == 0) {
                line.show(progress.caseName, progress.share, progress.secondsLeft);
            }
        },
        wantsEnd);
}

int runProgram(const std::vector<std::string>& words) {
    const Options options = parseOptions(words);
    if (!options.information.empty()) {
        return print(programName, options.information) ? 0 : cannotMeasure;
    }
    checkFiles(options);
    return report(options, measure(options));
}

} // namespace

} // namespace compare

int main(int argc, char** argv) {
    try {
        return compare::runProgram({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ntkcompare: %s\n", error.what());
        const int signal = compare::interruption();
        return signal ? 128 + signal : compare::cannotMeasure;
    }
}
