#pragma once

#include <string>

#include "reading.h"

namespace report {

// Reads a file whose content tells what it is: records or a performance table of ntkperf, or a
// comparison of ntkcompare. Of a file that cannot be read there is a problem.
void readFile(const std::string& file, Reading& into);

// Whether it begins as such a file: not to be replaced by a report.
bool holdsMeasurements(const std::string& file);

} // namespace report
