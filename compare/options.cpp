#include "options.h"

#include <sched.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <random>
#include <utility>

#include "commandline.h"
#include "keys.h"
#include "samefile.h"
#include "usage.h"
#include "words.h"

namespace compare {

namespace {

const char* const description =
    "Is the new build faster? Compares two builds of the measured library, call by call, in\n"
    "turns of a few milliseconds on one processor, so that the answer holds on a busy machine.\n";

const char* const usage = "Usage: ntkcompare [OPTION...] BASE NEW [-- KEY...]\n"
                          "       ntkcompare [OPTION...] --self [-- KEY...]\n";

const char* const footer =
    "BASE and NEW are directories with " NTK_DC_SONAME ", " NTK_S_SONAME " and\n" NTK_CORE_SONAME
    R"(; what is missing in one is taken from the own build. "own" or
"." is the own build. The KEYs behind -- are those of ntkperf (ntkperf -h): they
select functions (-fLZ4), set parameters (-dCodeLength=65536), read settings
(-inight) and limit the processor features (-TSSE42: up to SSE4.2). Input files
are opened in the working directory.

Examples:
  ntkcompare ref/lib own -- -fLZ4
      Is what was just built faster than the reference, in all that has LZ4 in
      its name?
  ntkcompare --json=night.json --budget=2h ref/lib tonight/lib
      Every night: all functions against a reference that is kept. The exit
      status is the gate, the JSON files of many nights are the history.
  ntkcompare own own --base-keys=-TSSE42 -- -f=ntksAdler32_8u
      Two kernels of one build: that of SSE4.2 and that of all features.
  ntkcompare own own --new-keys="-dVectorAlign=1" -- -f=ntksDecodeLZ4_8u
      Two placements of the buffers.
  ntkcompare --self
      How small a difference does this machine show now?

Verdicts: slower and faster are certain; same: the interval of the difference
lies within the tolerance; open: neither, so give it more --time.

Ctrl-C ends the run after the current turn, or after a second when a call does
not return: what was measured until then is judged and written, marked as
incomplete. A second one ends it at once.

Exit status: 0 nothing is slower by more than the tolerance; 1 something is, or
failed on the new side only; 2 nothing could be measured (usage, no such library,
all cases failed) or decided (ended before any case had an interval), or not all
could be written; 128 + N after signal N (130: Ctrl-C).
)";

// As CLI11 gets them.
struct Texts {
    std::vector<std::string> directories, baseKeys, newKeys;
    std::string precision = "0.5%", tolerance = "1%", time = "1", patience = "30", hurry = "1";
    std::optional<std::string> budget;
    std::optional<unsigned long long> seed;
};

void describe(CLI::App& app, Texts& texts, Options& options) {
    common::describeProgram(app, usage, footer);
    // Without extra arguments: the words behind it are BASE and NEW.
    const auto keys = [&](const char* name, std::vector<std::string>& to, const char* text) {
        app.add_option(name, to, text)->type_name("\"KEY...\"")->allow_extra_args(false);
    };
    const auto value = [&](const char* name, auto& to, const char* type, const char* text) {
        app.add_option(name, to, text)->type_name(type);
    };
    app.add_option("DIRECTORY", texts.directories)->group("");
    keys("--base-keys", texts.baseKeys, "Keys for BASE only, quoted as in a shell");
    keys("--new-keys", texts.newKeys, "Keys for NEW only");
    value("-p,--precision", texts.precision, "PERCENT",
          "End a case when its interval reaches this far to either side (0.5%)");
    value("--tolerance", texts.tolerance, "PERCENT", "Differences up to this do not matter (1%)");
    value("-t,--time", texts.time, "SECONDS", "End a case after this in its turns (1)");
    value("-b,--budget", texts.budget, "SECONDS",
          "End the whole run after this; also 90s, 10m, 2h (no limit)");
    value("--patience", texts.patience, "SECONDS",
          "Give up a call, and its case, after this without an answer (30)");
    value("--cpu", options.settings.cpu, "N", "Processor for both sides (the quietest)");
    value("--seed", texts.seed, "N", "Of the random order of turns (a random one; see the JSON)");
    value("--csv", options.csvFile, "FILE", "Write a line for each case");
    value("--json", options.jsonFile, "FILE", "Write all that was measured");
    value("--markdown", options.markdownFile, "FILE", "Write a summary for a review");
    app.add_flag("--self", options.isSelf,
                 "Compare the own build with itself, over a few functions if no KEY is given");
    app.add_flag("--all", options.showsAll,
                 "Show the rows of all cases, also where they are more than 60");
    app.add_flag("-q,--quiet", options.isQuiet, "Show no progress");
    app.add_option("--worker", options.worker)->group(""); // of the tests, as the next one
    app.add_option("--hurry", texts.hurry)->group("");
}

void setDirectories(const std::vector<std::string>& directories, Options& options) {
    if (options.isSelf && !directories.empty()) {
        throw UsageError("--self compares the own build with itself; leave out " +
                         directories.front());
    }
    if (options.isSelf) {
        options.directories = {"own", "own"};
        return;
    }
    if (directories.size() > 2) {
        throw UsageError(directories[2] + " is a third directory; name two, BASE and NEW, and "
                                          "put keys of ntkperf behind --");
    }
    if (directories.size() < 2) {
        throw UsageError(std::string(directories.empty() ? "BASE and NEW are" : "NEW is") +
                         " missing; name two directories with builds, or own for the own build");
    }
    const auto own = [](const std::string& name) { return name == "." ? "own" : name; };
    options.directories = {own(directories[0]), own(directories[1])};
}

void setKeys(const std::vector<std::string>& common, const std::vector<std::string>& texts,
             std::vector<std::string>& keys) {
    keys = common;
    for (const std::string& text : texts) {
        const std::vector<std::string> words = splitWords(text);
        keys.insert(keys.end(), words.begin(), words.end());
    }
    checkKeys(keys);
}

void setSettings(const Texts& texts, Settings& settings) {
    settings.precision = parsePercent(texts.precision, "--precision");
    settings.tolerance = parsePercent(texts.tolerance, "--tolerance");
    settings.secondsPerCase = parseSeconds(texts.time, "--time");
    settings.patienceSeconds = parseSeconds(texts.patience, "--patience");
    settings.hurrySeconds = parseSeconds(texts.hurry, "--hurry");
    settings.budgetSeconds = texts.budget ? parseSeconds(*texts.budget, "--budget") : 0;
    // Of 32 bits: every reader of JSON keeps it whole.
    settings.seed = texts.seed ? *texts.seed : std::random_device()();
}

void checkProcessor(const CLI::App& app, int cpu) {
    cpu_set_t allowed;
    if (app.count("--cpu") == 0 || sched_getaffinity(0, sizeof allowed, &allowed) != 0) {
        return;
    }
    if (cpu < 0 || cpu >= CPU_SETSIZE || !CPU_ISSET(static_cast<unsigned>(cpu), &allowed)) {
        throw UsageError("--cpu " + std::to_string(cpu) +
                         " is no processor that this process may use; taskset -cp $$ lists them");
    }
}

// Also names what a word was probably meant for.
UsageError unexpected(const CLI::ParseError& error) {
    const std::string what = error.what();
    const bool isWord = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
    return UsageError(what + (isWord ? "; keys of ntkperf stand behind --" : "") +
                      " (ntkcompare --help tells more)");
}

double parseNumber(const std::string& text, const std::string& whole, const std::string& option,
                   const char* example) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end || !std::isfinite(number) || !(number > 0)) {
        throw UsageError(option + " " + whole + " is no number above 0; give it as in " + option +
                         "=" + example);
    }
    return number;
}

// Before the files would be written to "-t" or "-".
void checkFileWords(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        for (const std::string option : {"--csv", "--json", "--markdown"}) {
            const bool isLast = i + 1 == words.size();
            if (words[i] == option + "=-" ||
                (words[i] == option && !isLast && words[i + 1] == "-")) {
                throw UsageError(option + " - : standard output is not supported; name a file");
            }
            if (words[i] == option && !isLast && words[i + 1].starts_with('-')) {
                throw UsageError(option + " needs a file name, but " + words[i + 1] +
                                 " follows; a name that begins so is given as in " + option +
                                 "=./" + words[i + 1]);
            }
        }
    }
}

// Else the second would replace the first.
void checkOneFileEach(const Options& options) {
    const std::string both = common::sameFile({{"--csv", options.csvFile},
                                               {"--json", options.jsonFile},
                                               {"--markdown", options.markdownFile}});
    if (!both.empty()) {
        throw UsageError(both);
    }
}

} // namespace

double parsePercent(const std::string& text, const std::string& option) {
    const std::string digits = text.ends_with('%') ? text.substr(0, text.size() - 1) : text;
    return parseNumber(digits, text, option, "0.5%") / 100;
}

double parseSeconds(const std::string& text, const std::string& option) {
    const char unit = text.empty() ? '\0' : text.back();
    const double seconds = unit == 's' ? 1 : unit == 'm' ? 60 : unit == 'h' ? 3600 : 0;
    const std::string digits = seconds > 0 ? text.substr(0, text.size() - 1) : text;
    return parseNumber(digits, text, option, "90, 90s, 10m or 2h") * (seconds > 0 ? seconds : 1);
}

Options parseOptions(std::vector<std::string> words) {
    // What stands behind -- is not ours: CLI11 would take it for directories.
    const auto dashes = std::find(words.begin(), words.end(), "--");
    std::vector<std::string> common(dashes == words.end() ? dashes : dashes + 1, words.end());
    words.erase(dashes, words.end());
    checkFileWords(words);

    Options options;
    Texts texts;
    CLI::App app(description, "ntkcompare");
    describe(app, texts, options);
    try {
        options.information = common::parseWords(app, std::move(words));
    } catch (const CLI::ParseError& error) {
        throw unexpected(error);
    }
    if (!options.information.empty()) {
        return options;
    }
    checkOneFileEach(options);
    setDirectories(texts.directories, options);
    setKeys(common, texts.baseKeys, options.keys.base);
    setKeys(common, texts.newKeys, options.keys.changed);
    setSettings(texts, options.settings);
    checkProcessor(app, options.settings.cpu);
    return options;
}

} // namespace compare
