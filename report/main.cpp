// ntkreport: what runs have found, for people and for programs.
#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "columns.h"
#include "csv.h"
#include "exchange.h"
#include "files.h"
#include "markdown.h"
#include "merge.h"
#include "options.h"
#include "outputs.h"
#include "page.h"
#include "terminal.h"

namespace report {

namespace {

const std::string programName = "ntkreport";
constexpr int incomplete = 1;
constexpr int wrongUsage = 2;

void tell(const std::string& sentence) {
    std::fprintf(stderr, "ntkreport: %s\n", common::printable(sentence).c_str());
}

// In the order of Form.
constexpr std::string (*writers[formCount])(const Report&) = {
    pageText,      googleBenchmarkText, bencherText, smallerIsBetterText,
    benchstatText, markdownText,        csvText};

// Before the work.
bool canWriteAll(const Options& options) {
    bool canWrite = true;
    for (const std::string& file : options.outputs) {
        if (file.empty() || file == standardOutput) {
            continue;
        }
        if (const std::string why = common::whyNotWritable(file); !why.empty()) {
            tell("cannot write " + file + ": " + why + "; name another file");
            canWrite = false;
        }
    }
    return canWrite;
}

TerminalStyle terminalStyle() {
    const auto isSet = [](const char* name) {
        const char* const value = std::getenv(name);
        return value && *value;
    };
    const char* const terminal = std::getenv("TERM");
    TerminalStyle style;
    style.columns = common::terminalWidth(STDOUT_FILENO);
    style.hasColours =
        style.columns > 0 && !isSet("NO_COLOR") && !(terminal && std::string(terminal) == "dumb");
    std::setlocale(LC_CTYPE, "");
    style.hasBlocks = std::string(nl_langinfo(CODESET)) == "UTF-8";
    return style;
}

bool write(const Options& options, const Report& report) {
    if (!options.hasOutput()) {
        return common::print(programName, terminalText(report, terminalStyle()));
    }
    bool isWritten = true;
    if (!options.output(Form::json).empty()) {
        if (const std::string problem = googleBenchmarkProblem(report); !problem.empty()) {
            tell(problem);
            isWritten = false;
        }
    }
    for (std::size_t i = 0; i < formCount; ++i) {
        const std::string& file = options.outputs[i];
        if (file.empty()) {
            continue;
        }
        const std::string text = writers[i](report);
        isWritten &= file == standardOutput ? common::print(programName, text)
                                            : common::writeFile(programName, file, text);
    }
    return isWritten;
}

// Also into the report. True: there was none.
bool tellAll(const std::vector<std::string>& sentences, Report& report) {
    for (const std::string& sentence : sentences) {
        tell(sentence);
        report.remarks.push_back(sentence);
    }
    return sentences.empty();
}

int runProgram(const std::vector<std::string>& words) {
    const Options options = parseOptions(words);
    if (!options.information.empty()) {
        return common::print(programName, options.information) ? 0 : incomplete;
    }
    if (!canWriteAll(options)) {
        return incomplete;
    }
    Reading reading;
    for (const std::string& file : options.inputs) {
        readFile(file, reading);
    }
    Merged merged = report::merged(std::move(reading.runs), std::move(reading.comparisons));
    Report& report = merged.report;
    bool isWhole = tellAll(reading.problems, report);
    isWhole &= tellAll(merged.problems, report);
    tellAll(reading.notes, report);
    tellAll(merged.notes, report);
    if (report.runs.empty() && report.comparisons.empty()) {
        return incomplete; // there is nothing to write
    }
    return write(options, report) && isWhole ? 0 : incomplete;
}

} // namespace

} // namespace report

int main(int argc, char** argv) {
    try {
        return report::runProgram({argv + 1, argv + argc});
    } catch (const report::UsageError& error) {
        std::fprintf(stderr, "ntkreport: %s\n", error.what());
        return report::wrongUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ntkreport: %s\n", error.what());
        return report::incomplete;
    }
}
