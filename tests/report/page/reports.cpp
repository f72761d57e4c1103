#include "reports.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "handmade.h"

using namespace report;

namespace made {

const std::string hostileFile = "<img src=x onerror=\"document.title='harmed'\">";

namespace {

struct Method {
    std::string function, family, variant;
    Case::Kind kind;
    double clocks, ratio; // per byte of the middle file, 0: it has no ratio
    bool readsFiles = true;
};

const std::vector<Method> methods = {
    {"ntksCRC32_8u", "Checksum", "", Case::Kind::other, 0.028, 0, false},
    {"ntksAdler32_8u", "Checksum", "", Case::Kind::other, 0.053, 0, false},
    {"ntksEncodeLZ4_8u", "LZ4", "", Case::Kind::encoder, 4.1, 1.79},
    {"ntksEncodeLZ4HC_8u", "LZ4", "dict=N", Case::Kind::encoder, 41, 2.35},
    {"ntksDecodeLZ4_8u", "LZ4", "", Case::Kind::decoder, 0.7, 1.79},
    {"ntksEncodeLZO_8u", "LZO", "method=ST", Case::Kind::encoder, 5.2, 1.82},
    {"ntksEncodeLZO_8u", "LZO", "method=ST1X", Case::Kind::encoder, 3.9, 1.7},
    {"ntksDecodeLZO_8u", "LZO", "method=ST", Case::Kind::decoder, 3.4, 1.82},
    {"ntksEncodeLZSS_8u", "LZSS", "", Case::Kind::encoder, 35, 2.1},
    {"ntksDecodeLZSS_8u", "LZSS", "", Case::Kind::decoder, 2, 2.1},
    {"ntksBWTFwd_8u", "BZ2", "", Case::Kind::encoder, 52, 0},
    {"ntksBWTInv_8u", "BZ2", "", Case::Kind::decoder, 9.4, 0},
};

const std::vector<CorpusFile> corpus = {
    {"bib", 111261, "0a1b2c3d"}, {"book1", 768771, "1a2b3c4d"}, {"geo", 102400, "2a3b4c5d"},
    {"obj1", 21504, "3a4b5c6d"}, {"paper1", 53161, "4a5b6c7d"}, {"pic", 513216, "5a6b7c8d"}};

// A number from -1 to 1 that looks drawn at random.
double noise(std::size_t seed) {
    return std::sin(static_cast<double>(seed) * 12.9898 + 1) *
           std::cos(static_cast<double>(seed) * 78.233);
}

Case caseOf(const Method& method, const std::string& file, double length, double ease) {
    Case made;
    made.function = method.function;
    made.types = "8u";
    made.unit = "e";
    made.family = method.family;
    made.kind = method.kind;
    made.file = file;
    made.length = length;
    made.parameters = {{"CodeLength", static_cast<long long>(length)}};
    if (!file.empty()) {
        made.parameters.push_back({"CodeFile", file});
    }
    if (!method.variant.empty()) {
        const std::size_t equals = method.variant.find('=');
        made.parameters.push_back(
            {method.variant.substr(0, equals), method.variant.substr(equals + 1)});
    }
    if (method.ratio > 0) {
        made.ratio = 1 + (method.ratio - 1) * ease * (1 + std::log2(length / 16384) / 20);
    }
    made.bytesPerUnit = 1;
    return made;
}

void addSamples(Case& made, double clocks, const std::vector<int>& runs, double steps = 0) {
    for (const int run : runs) {
        const auto seed = static_cast<std::size_t>(clocks * 1000) + static_cast<std::size_t>(run);
        const bool isJump = runs.size() >= 5 && run == runs.back();
        const double drift = 1 + 0.008 * noise(seed) + (isJump ? steps : 0);
        made.samples.push_back({run, 0, clocks * drift});
    }
    std::vector<double> sorted;
    for (const Sample& sample : made.samples) {
        sorted.push_back(sample.clocksPerUnit);
    }
    std::sort(sorted.begin(), sorted.end());
    made.smallest = sorted.front();
    made.median = sorted[sorted.size() / 2];
    made.largest = sorted.back();
    made.spread = (made.largest - made.smallest) / made.median;
}

std::vector<double> lengthsOf(double bytes) {
    std::vector<double> lengths;
    for (double length = 16384; length <= 262144; length *= 2) {
        lengths.push_back(std::min(length, bytes));
        if (length >= bytes) {
            break;
        }
    }
    return lengths;
}

void addMethod(Group& group, const Method& method, double factor = 1) {
    const double steps = method.family == "LZ4" ? 0.2 : 0;
    if (!method.readsFiles) {
        for (const double length : lengthsOf(262144)) {
            group.cases.push_back(caseOf(method, "", length, 1));
            addSamples(group.cases.back(), method.clocks * factor, group.runs, steps);
        }
        return;
    }
    for (std::size_t i = 0; i < corpus.size(); ++i) {
        const double ease = corpus[i].name == "pic" ? 3 : 1 + 0.3 * noise(i + 1);
        for (const double length : lengthsOf(static_cast<double>(corpus[i].bytes))) {
            const double clocks = method.clocks / ease * (1 + 0.1 * std::log2(length / 16384));
            group.cases.push_back(caseOf(method, corpus[i].name, length, ease));
            addSamples(group.cases.back(), clocks * factor, group.runs, steps);
        }
    }
}

Run runOf(int number, const std::string& version) {
    Run run;
    run.file = "run" + std::to_string(number + 1) + ".jsonl";
    run.isExact = true;
    run.facts.processor = "Some Processor @ 2.60GHz";
    run.facts.processors = 2;
    run.facts.ticksMHz = 2600;
    run.facts.system = "Linux";
    run.facts.computer = "vm";
    run.facts.started = "2026-11-" + std::to_string(10 + number) + "T03:36:15+00:00";
    run.facts.libraries = {{"ntkDC", version, "Nov 22 2026", {"libntkdc.so.12"}}};
    run.facts.keys = {"-B", "-TSSE42"};
    run.facts.corpus = corpus;
    return run;
}

Group groupOf(const std::string& label, std::vector<int> runs, const std::string& changed = "",
              double factor = 1) {
    Group group;
    group.label = label;
    group.runs = std::move(runs);
    for (const Method& method : methods) {
        addMethod(group, method, method.function == changed ? factor : 1);
    }
    return group;
}

Comparison comparison() {
    Comparison made;
    made.file = "compared.json";
    made.started = "2026-11-22T04:00:00+00:00";
    made.machine = "Some Processor @ 2.60GHz";
    made.base = "12.0.0";
    made.changed = "12.0.1";
    made.tolerance = 0.01;
    made.medianHalfWidth = 0.0042;
    made.ratio = 1.0031;
    made.low = 1.0012;
    made.high = 1.005;
    const std::string with = "CodeLength=65536 CodeFile=book1";
    made.cases = {comparedCase("ntksDecodeLZ4_8u", with, "slower", 1.0205, 0.0018),
                  comparedCase("ntksEncodeLZO_8u", with, "faster", 0.962, 0.004),
                  comparedCase("ntksCRC32_8u", with, "same", 1.0004, 0.0009),
                  comparedCase("ntksEncodeLZ4_8u", with, "open", 1.0022, 0.0074),
                  failedCase("ntksDecodeLZSS_8u", "the new side ended with SIGSEGV")};
    made.cases.front().isBeyondTolerance = true;
    return made;
}

void addResult(Report& report, const std::string& result, const std::string& message) {
    const std::string function = "ntksFails" + result + "_8u";
    Run& run = report.runs.front();
    run.tests.push_back({function, "Timfail", result, message, 0});
    Measurement measurement;
    measurement.function = function;
    measurement.result = result;
    measurement.parameters = {{"CodeLength", 65536LL}, {"CodeFile", std::string("book1")}};
    run.measurements.push_back(measurement);
    Case failed = caseOf({function, "Failing", "", Case::Kind::other, 1, 0}, "book1", 65536, 1);
    failed.result = result;
    if (result.ends_with("WRN")) {
        addSamples(failed, 2, {0});
    }
    report.groups.front().cases.push_back(failed);
}

} // namespace

Report plain(int runs) {
    Report report;
    std::vector<int> all;
    for (int run = 0; run < runs; ++run) {
        all.push_back(run);
        report.runs.push_back(runOf(run, "12.0.0"));
    }
    report.groups = {groupOf("", all)};
    return report;
}

Report twoBuilds() {
    Report report;
    for (int run = 0; run < 7; ++run) {
        report.runs.push_back(runOf(run, run < 3 ? "12.0.0" : "12.0.1"));
    }
    report.groups = {groupOf("12.0.0", {0, 1, 2}),
                     groupOf("12.0.1", {3, 4, 5}, "ntksDecodeLZ4_8u", 1.15),
                     groupOf("12.0.1 (-TSSE42)", {6}, "ntksDecodeLZ4_8u", 1.5)};
    report.groups.back().series = 1;
    std::erase_if(report.groups.back().cases,
                  [](const Case& one) { return one.function == "ntksEncodeLZ4_8u"; });
    report.comparisons = {comparison()};
    return report;
}

Report foreign() {
    Report made = plain(1);
    for (Case& one : made.groups.front().cases) {
        one.function.erase(0, std::string("ntks").size());
        one.family = one.function;
        one.unit = "byte";
        if (one.kind == Case::Kind::decoder) {
            one.bytesPerUnit.reset(); // not known by name
        }
    }
    return made;
}

Report faults() {
    Report report = plain(1);
    for (const auto& [result, message] : std::vector<std::pair<std::string, std::string>>{
             {"ACCURWRN", "wrong measure accuracy"},
             {"BADSTSWRN", "modified control status"},
             {"DATAWRN", "two lines of the table have the same parameters"},
             {"FUNCWRN", "ntksFailsFUNCWRN_8u returned a warning, 3"},
             {"WRN", ""},
             {"ACCURFAIL", "no clocks could be measured"},
             {"DATAFAIL", "Can't open file nosuch to read"},
             {"FUNCFAIL", "NTK FAIL. status = -4: A length is negative or too large"},
             {"EXCPTFAIL", "Signal: Aborted (SIGABRT). in ntkFunctionCalls\nlast on standard "
                           "error: free(): double free detected in tcache 2"},
             {"FAIL", "an internal problem"},
             {"UNDEFINED", "was not run"}}) {
        addResult(report, result, message);
    }
    report.runs.front().isComplete = false;
    report.runs.push_back(runOf(1, "12.0.0"));
    report.runs.back().facts.started = "Mon Nov  9 23:05:11 2026"; // as tables have it
    report.remarks = {"broken.csv: line 17 has 5 cells instead of 12, left out"};
    return report;
}

Report hostile() {
    Report report = plain(2);
    for (Case& one : report.groups.front().cases) {
        if (one.file == "geo") {
            one.file = hostileFile;
        }
    }
    Case& first = report.groups.front().cases.front();
    first.comment = "</script><script>document.title='harmed'</script><!--";
    first.parameters.push_back({"text", std::string("\xff\xfe no UTF-8, \"quoted\", \\")});
    report.runs.front().facts.computer = "<b>vm</b> & \"co\"";
    report.runs.front().tests = {{hostileFile, "<i>", "FUNCFAIL", "</td><script>x", 0}};
    report.remarks = {hostileFile};
    return report;
}

Report rows(int count) {
    Report report = plain(1);
    Group& group = report.groups.front();
    const Method& one = methods[2];
    for (int i = 0; static_cast<int>(group.cases.size()) < count; ++i) {
        Method other = one;
        other.function = "ntksEncodeNumber" + std::to_string(i / 100) + "_8u";
        other.family = "Family " + std::to_string(i / 2000);
        const int kibibytes = 1 + i % 100 / 5;
        group.cases.push_back(
            caseOf(other, corpus[static_cast<std::size_t>(i) % 5].name, 1024.0 * kibibytes, 1));
        addSamples(group.cases.back(), 1 + i % 977, group.runs);
    }
    return report;
}

} // namespace made
