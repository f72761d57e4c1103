#pragma once

#include <string>

#include "model.h"

// What a case is called in other programs: it is their key to the history of a case, so it must
// differ for different cases and stay the same from report to report.
namespace report {

// "ntksDecodeLZ4_8u/CodeLength=16384 CodeFile=bib": the only slash that some readers split at is
// the first. Of several groups each has its label behind it, "... Group=12.0.1 (-TSSE42)". In
// values blanks, control characters and "%" are written as in addresses: "%20".
std::string caseName(const Group& group, const Case& tried);
std::string functionName(const Group& group, const std::string& function);

// "BenchmarkntksDecodeLZ4_8u/CodeLength=16384/CodeFile=bib", in which benchstat finds the
// parameters. Whatever ends a name or a part of it for its readers is escaped, and "-" before
// digits at the end: they take those for a number of processors.
std::string goName(const Case& tried);

// Without line breaks, other control characters and bytes that are no UTF-8, for formats of lines:
// benchstat refuses a whole file for one such byte.
std::string onOneLine(const std::string& text);

} // namespace report
