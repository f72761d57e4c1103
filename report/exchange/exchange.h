#pragma once

#include <string>

#include "model.h"

// Results as files that other programs read: the trackers and comparers of benchmarks. Every
// writer names a case alike (casename.h), never writes NaN or Infinity, and leaves out what the
// report does not know rather than to invent it.
namespace report {

// Google Benchmark, schema 1: a row a run and case, of failures too.
std::string googleBenchmarkText(const Report& report);
// What it cannot tell of the report, a sentence; empty: nothing.
std::string googleBenchmarkProblem(const Report& report);
// Bencher Metric Format: clocks per unit, with the smallest and the largest of the runs.
std::string bencherText(const Report& report);
// github-action-benchmark's customSmallerIsBetter: the median of the runs.
std::string smallerIsBetterText(const Report& report);
// Go's benchmark format, which benchstat reads: a line a run and case.
std::string benchstatText(const Report& report);

} // namespace report
