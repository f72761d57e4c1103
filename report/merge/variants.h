#pragma once

#include <string>

#include "model.h"

// What tells the cases of a function apart beside file and length.
namespace report {

// "comprLevel=6", or the cell of the table's column "Variant".
std::string variantText(const Case& one);

// What a variant with a short name stands for: of "dict=E", or "E" of a table, that it has a
// dictionary. Empty: its name tells it, or it is not known.
std::string variantMeaning(const Case& one);

// Whether a call encodes only the second half of the data: so do the tests with a dictionary, which
// is the first half, and of which the variant without one differs by nothing else.
bool encodesSecondHalf(const Case& one);

} // namespace report
