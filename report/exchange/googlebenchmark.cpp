// Google Benchmark's JSON, schema 1, as compare.py, github-action-benchmark ("googlecpp"), Bencher
// ("cpp_google") and Conbench read it. What they need decides:
//
// - A row a run: compare.py takes rows of one name for repetitions and tests their difference.
// - Every row has name, real_time, cpu_time and time_unit, and a time is the time of a call: they
//   print it without decimals. Clocks are of wall time, so both times are the same.
// - A table does not tell how many units a call has. A row of it is the time of a million units,
//   and its name says so: " Units=1000000".
// - Without the counter's frequency there is no time. The rows are left out, and the context says
//   how many.
// - A failure has no time, and a 0 in place of it would stand in a history as a record and make
//   compare.py's mean of all 0. So it is no row of its case, but one behind, named and typed as
//   Google Benchmark does with what it adds to the repetitions ("..._mean").
// - The context has caches, for Bencher, and whole megahertz, as Google Benchmark writes them.
#include <algorithm>
#include <cmath>
#include <set>

#include "cases.h"
#include "casename.h"
#include "exchange.h"
#include "figures.h"
#include "json.h"
#include "numbers.h"

namespace report {

namespace {

constexpr double unitsOfTable = 1e6;

class Rows {
public:
    explicit Rows(const Report& report) : m_report(report) {
        for (const Group& group : report.groups) {
            add(group);
        }
    }
    const std::vector<std::string>& texts() const { return m_rows; }
    int withoutTime() const { return m_withoutTime; }

private:
    void add(const Group& group) {
        std::set<std::string> failed;
        m_mhz = ticksMHz(m_report, group);
        for (const Case& tried : group.cases) {
            startCase(tried.function);
            addSamples(group, tried);
            if (isFailure(tried.result)) {
                addFailure(caseName(group, tried), resultText(tried.result, tried.comment));
                failed.insert(tried.function);
            }
        }
        addTests(group, failed);
    }

    // Tests that failed before there was a case to tell of.
    void addTests(const Group& group, std::set<std::string>& failed) {
        for (const int run : group.runs) {
            for (const TestResult& test : m_report.runs[run].tests) {
                if (isFailure(test.result) && failed.insert(test.function).second) {
                    startCase(test.function);
                    addFailure(functionName(group, test.function),
                               resultText(test.result, test.message));
                }
            }
        }
    }

    void startCase(const std::string& function) {
        if (function != m_function) {
            m_function = function;
            ++m_family;
            m_instance = -1;
        }
        ++m_instance;
    }

    void addSamples(const Group& group, const Case& tried) {
        const std::string name = caseName(group, tried);
        int repetition = 0;
        for (const Sample& sample : tried.samples) {
            if (m_mhz && isFigure(sample.clocksPerUnit)) {
                addSample(name, tried, sample, repetition++);
            } else if (!m_mhz) {
                ++m_withoutTime;
            }
        }
    }

    void addSample(const std::string& name, const Case& tried, const Sample& sample,
                   int repetition) {
        const Measurement& measurement = measurementOf(m_report, sample);
        const bool isCall = isFigure(measurement.unitsPerCall);
        const double units = isCall ? measurement.unitsPerCall : unitsOfTable;
        const double nanoseconds = sample.clocksPerUnit * units * 1000 / *m_mhz;
        Json row = head(isCall ? name : name + " Units=1000000", "iteration");
        row["repetitions"] = tried.samples.size();
        row["repetition_index"] = repetition;
        row["threads"] = 1;
        row["iterations"] = std::max(measurement.calls, 1LL);
        addTime(row, nanoseconds);
        addCounters(row, tried, sample);
        if (measurement.result != "OK") {
            row["label"] = resultText(measurement.result, measurement.comment);
        }
        m_rows.push_back(compact(row));
    }

    void addCounters(Json& row, const Case& tried, const Sample& sample) const {
        row["clocks_per_unit"] = sample.clocksPerUnit;
        if (tried.ratio && isFigure(*tried.ratio)) {
            row["ratio"] = *tried.ratio;
        }
        if (const auto speed = bytesPerSecond(tried, sample.clocksPerUnit, m_mhz)) {
            row["bytes_per_second"] = *speed;
        }
    }

    void addFailure(const std::string& name, const std::string& message) {
        Json row = head(name, "aggregate");
        row["name"] = name + "_failed";
        row["repetitions"] = 1;
        row["threads"] = 1;
        row["aggregate_name"] = "failed";
        row["aggregate_unit"] = "time";
        row["iterations"] = 0;
        addTime(row, 0);
        row["error_occurred"] = true;
        row["error_message"] = message;
        m_rows.push_back(compact(row));
    }

    Json head(const std::string& name, const std::string& type) const {
        return {{"name", name},
                {"family_index", m_family},
                {"per_family_instance_index", m_instance},
                {"run_name", name},
                {"run_type", type}};
    }

    static void addTime(Json& row, double nanoseconds) {
        row["real_time"] = nanoseconds;
        row["cpu_time"] = nanoseconds;
        row["time_unit"] = "ns";
    }

    const Report& m_report;
    std::optional<double> m_mhz;
    std::string m_function;
    int m_family = -1, m_instance = -1;
    int m_withoutTime = 0;
    std::vector<std::string> m_rows;
};

void addIfTold(Json& context, const std::string& key, const std::string& text) {
    if (!text.empty()) {
        context[key] = text;
    }
}

// Of the first run: a file of this format is of one machine.
void addMachine(Json& context, const Facts& facts) {
    // Tables have another form of it than this format.
    addIfTold(context, facts.started.find('T') == 10 ? "date" : "started", facts.started);
    addIfTold(context, "host_name", facts.computer);
    if (facts.processors > 0) {
        context["num_cpus"] = facts.processors;
    }
    if (isFigure(facts.ticksMHz)) {
        context["mhz_per_cpu"] = std::llround(facts.ticksMHz);
    }
    addIfTold(context, "processor", facts.processor);
    addIfTold(context, "system", facts.system);
    for (const LibraryFacts& library : facts.libraries) {
        addIfTold(context, library.name, library.version);
    }
}

std::string contextText(const Report& report, const Rows& rows) {
    Json context = {
        {"executable", "ntkperf"}, {"caches", Json::array()}, {"json_schema_version", 1}};
    addMachine(context, report.runs.empty() ? Facts{} : report.runs.front().facts);
    if (rows.withoutTime() > 0) {
        context["left_out"] = common::countText(rows.withoutTime(), "measurement") +
                              ": without the clock counter's frequency there is no "
                              "time";
    }
    return compact(context);
}

} // namespace

std::string googleBenchmarkProblem(const Report& report) {
    const int left = Rows(report).withoutTime();
    return left > 0 ? common::countText(left, "measurement") +
                          " left out of --json: without the frequency of the clock counter, which "
                          "the file does not tell, there is no time; give the records of -x"
                    : "";
}

std::string googleBenchmarkText(const Report& report) {
    const Rows rows(report);
    return "{\n\"context\": " + contextText(report, rows) + ",\n\"benchmarks\": [" +
           lines(rows.texts()) + "]\n}\n";
}

} // namespace report
