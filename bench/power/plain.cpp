// bench_plain: what bench_compare_power needs to know of the cases, each prepared by the harness as
// for ntkperf. Not for people.
//
//   bench_plain --out FILE --calibrate [--levels L,...] -- KEY...
//       what calls and links of a chain take
//   bench_plain --out FILE -- KEY...
//       one side, as one measures it elsewhere
//
// It writes a line of JSON for each case.

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include <CLI/CLI.hpp>

#include "calibration.h"
#include "elsewhere.h"
#include "ps.h"
#include "psbase.h"
#include "psdenormals.h"

namespace {

using Json = nlohmann::ordered_json;

struct Arguments {
    std::string out;
    std::vector<double> levels = {};
    double seconds = 1;
    bool isCalibration = false;
};

Json valueOf(const psValue& value) {
    if (const auto* const text = std::get_if<psString>(&value)) {
        return text->c_str();
    }
    if (const auto* const number = std::get_if<double>(&value)) {
        return *number;
    }
    return std::get<long long>(value);
}

class CaseTaker : public psTurnTaker {
public:
    explicit CaseTaker(const Arguments& arguments) : m_arguments(arguments), m_out(arguments.out) {}

    bool wants(const psString& function, const psNamedValues& parameters) override {
        m_case = {{"function", function.c_str()}, {"parameters", Json::object()}};
        for (const psNamedValue& named : parameters) {
            m_case["parameters"][named.name.c_str()] = valueOf(named.value);
        }
        return true;
    }
    // The harness takes an exception for a failure of the test and goes on.
    psResult atPrepared(const psTurns& turns) override {
        try {
            measure(turns);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "bench_plain: %s\n", error.what());
            _exit(1);
        }
        return PS_OK;
    }
    void released() override {}

private:
    void measure(const psTurns& turns) {
        g_initClocks.keep();
        if (m_arguments.isCalibration) {
            m_case.update(
                calibrate(turns, m_case["function"], m_arguments.levels, m_arguments.seconds));
        } else {
            m_case.update(measureElsewhere(turns, m_arguments.seconds));
        }
        m_out << m_case.dump() << std::endl;
    }

    const Arguments& m_arguments;
    std::ofstream m_out;
    Json m_case;
};

} // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Measures prepared cases for bench_compare_power", "bench_plain");
    app.add_option("--out", arguments.out)->required();
    app.add_option("--seconds", arguments.seconds, "For each level, or each way to measure");
    app.add_option("--levels", arguments.levels)->delimiter(',');
    app.add_flag("--calibrate", arguments.isCalibration);
    app.prefix_command();
    CLI11_PARSE(app, argc, argv);

    std::vector<std::string> keys = app.remaining();
    std::vector<char*> words = {argv[0]};
    for (std::string& key : keys) {
        if (key != "--") {
            words.push_back(key.data());
        }
    }
    psFlushDenormals();
    CaseTaker taker(arguments);
    g_turnTaker = &taker;
    psSession().run(static_cast<int>(words.size()), words.data());
    return 0;
}
