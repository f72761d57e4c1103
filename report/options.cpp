#include "options.h"

#include <algorithm>
#include <utility>

#include "commandline.h"
#include "files.h"
#include "samefile.h"

namespace report {

namespace {

const char* const description = "What runs of ntkperf have found: on the terminal, as one page to "
                                "look at and to send, and for\n"
                                "the programs that keep track of benchmarks.\n";

const char* const usage = "Usage: ntkreport [OPTION...] FILE...\n";

const char* const footer =
    R"(Each FILE is one of these; its content tells which:
  records            ntkperf -x, out/ntkperf.jsonl of bench.sh: all digits. Best
  performance table  ntkperf -r or -R, out/ntkperf.csv: three digits
  comparison         ntkcompare --json
Runs of one machine, build and set of keys are put together; others are shown
side by side. A run that is there twice counts once.

Each option takes a file, which is replaced when all is ready, or - for the
standard output. Several may be given. Without one there is a summary for the
terminal, in colours unless NO_COLOR is set.

Examples:
  ntkreport out/ntkperf.jsonl
      What did the last run of bench.sh find? A line a function.
  ntkreport --html=report.html out/ntkperf.jsonl
      The same as a page: plots, tables, failures. One file, to be sent as it is.
  ntkreport --html=history.html nights/*.jsonl
      Many nights: how each function developed, and where it jumped.
  ntkreport --html=change.html --markdown=change.md change.json
      A comparison that ntkcompare --json=change.json has made, for a review.
  ntkreport --json=old.json old.jsonl
  ntkreport --json=new.json new.jsonl
      For compare.py benchmarks old.json new.json. For its U test nine passes or
      more: bench.sh --passes 9.
  ntkreport --benchstat=- out/ntkperf.jsonl | benchstat -
      Go's benchstat.
  ntkreport --csv=- nights/*.csv | column -s, -t | less -S
      All cases, merged over the runs, to sort and to search.

Exit status: 0 all was read and written; 1 something could not be read or
written, or was there twice, which standard error tells: the rest is reported;
2 usage.
)";

struct Description {
    Form form;
    const char* name;
    const char* text;
};
// In the order of Form.
constexpr Description forms[] = {
    {Form::html, "--html", "One page for people, with all it needs inside"},
    {Form::json, "--json", "Google Benchmark's format: compare.py, trackers (googlecpp)"},
    {Form::bmf, "--bmf", "Bencher's metric format"},
    {Form::smallerIsBetter, "--smaller-is-better",
     "Of github-action-benchmark: customSmallerIsBetter"},
    {Form::benchstat, "--benchstat", "Go's benchmark format, which benchstat reads"},
    {Form::markdown, "--markdown", "A table a function, for a review"},
    {Form::csv, "--csv", "A line for each case, merged over the runs"},
};

void describe(CLI::App& app, Options& options) {
    common::describeProgram(app, usage, footer);
    app.add_option("INPUT", options.inputs)->group("");
    for (const Description& form : forms) {
        app.add_option(form.name, options.outputs[static_cast<std::size_t>(form.form)], form.text)
            ->type_name("FILE")
            ->allow_extra_args(false);
    }
}

// CLI11's words for what is wrong, and what to do about it.
UsageError unexpected(const CLI::ParseError& error) {
    return UsageError(std::string(error.what()) + "; ntkreport -h lists the options");
}

std::vector<std::pair<std::string, std::string>> outputFiles(const Options& options) {
    std::vector<std::pair<std::string, std::string>> files;
    for (const Description& form : forms) {
        const std::string& file = options.output(form.form);
        files.emplace_back(form.name, file == standardOutput ? "" : file);
    }
    return files;
}

// --html= a.jsonl: CLI11 would take the next word for the name.
void checkWords(const std::vector<std::string>& words) {
    for (const Description& form : forms) {
        if (std::find(words.begin(), words.end(), std::string(form.name) + "=") != words.end()) {
            throw UsageError(std::string(form.name) + "= needs the name of a file, or -");
        }
    }
}

void checkNotRead(const std::vector<std::string>& inputs, const std::string& option,
                  const std::string& file) {
    for (const std::string& input : inputs) {
        if (!common::sameFile({{option, file}, {"the input", input}}).empty()) {
            throw UsageError(option + " would replace the input " + input + "; name another file");
        }
    }
}

// Before an output replaces what somebody has measured: --html a.jsonl b.jsonl.
void checkOutputs(const Options& options) {
    const auto isConsole = [](const std::string& file) { return file == standardOutput; };
    if (std::count_if(options.outputs.begin(), options.outputs.end(), isConsole) > 1) {
        throw UsageError("two outputs are - ; only one can go to the standard output");
    }
    const auto files = outputFiles(options);
    if (const std::string both = common::sameFile(files); !both.empty()) {
        throw UsageError(both);
    }
    for (const auto& [option, file] : files) {
        checkNotRead(options.inputs, option, file);
        if (!file.empty() && holdsMeasurements(file)) {
            throw UsageError(option + " would replace " + file +
                             ", which holds measurements; name another file");
        }
    }
}

} // namespace

bool Options::hasOutput() const {
    return std::any_of(outputs.begin(), outputs.end(),
                       [](const std::string& file) { return !file.empty(); });
}

Options parseOptions(std::vector<std::string> words) {
    checkWords(words);
    Options options;
    CLI::App app(description, "ntkreport");
    describe(app, options);
    try {
        options.information = common::parseWords(app, std::move(words));
    } catch (const CLI::ParseError& error) {
        throw unexpected(error);
    }
    if (!options.information.empty()) {
        return options;
    }
    for (const Description& form : forms) {
        if (app.count(form.name) > 0 && options.output(form.form).empty()) {
            throw UsageError(std::string(form.name) + " needs the name of a file, or -");
        }
    }
    checkOutputs(options);
    if (options.inputs.empty()) {
        throw UsageError("no file is named; give what ntkperf -x or -r, or ntkcompare --json has "
                         "written, as in: ntkreport out/ntkperf.jsonl");
    }
    return options;
}

} // namespace report
