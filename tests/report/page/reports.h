#pragma once

#include <string>
#include <vector>

#include "model.h"

// Reports made up for tests of the page: figures by formula, the same on every machine.
namespace made {

// Some functions of four families over the files of the corpus, measured in several runs. In the
// last of five or more everything of LZ4 costs a fifth more.
report::Report plain(int runs = 3);

// Two builds, the second faster in one function and slower in another, and what ntkcompare says.
report::Report twoBuilds();

// Of a library whose functions have names of their own and count bytes.
report::Report foreign();

// Each result once, a run without its end and remarks.
report::Report faults();

// Texts that would do harm if they were taken for markup, and bytes that are no UTF-8.
report::Report hostile();
extern const std::string hostileFile;

report::Report rows(int count);

} // namespace made
