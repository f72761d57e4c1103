// Runs with known figures.
#pragma once

#include <string>
#include <utility>

#include "model.h"

namespace report {

inline Measurement measured(const std::string& function, NamedValues parameters, double clocks,
                            NamedValues values = {}) {
    Measurement row;
    row.function = function;
    row.types = "8u";
    row.parameters = std::move(parameters);
    row.values = std::move(values);
    row.clocksPerUnit = clocks;
    row.unit = "e";
    return row;
}

inline Measurement failed(const std::string& function, NamedValues parameters,
                          const std::string& result, const std::string& comment) {
    Measurement row = measured(function, std::move(parameters), 0);
    row.clocksPerUnit.reset();
    row.result = result;
    row.comment = comment;
    return row;
}

inline Run runOf(const std::string& started, std::vector<Measurement> rows) {
    Run run;
    run.file = "run.jsonl";
    run.isExact = true;
    run.facts.processor = "A processor";
    run.facts.processors = 2;
    run.facts.computer = "desk";
    run.facts.started = started;
    run.facts.libraries = {{"ntkDC", "12.0.0", "Nov 22 2026", {"/lib/libntkdc.so.12"}}};
    run.measurements = std::move(rows);
    return run;
}

} // namespace report
