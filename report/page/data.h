#pragma once

#include <optional>
#include <string>

#include "model.h"

namespace report {

// What the page's scripts read, as JSON that may stand inside a script element: no text of the
// report can end the element or begin a comment. Lists of cases are tables: "columns" names what
// each of the "rows" holds.
std::string pageData(const Report& report);

// What tells a case from others of its function beside file and length: "comprLevel=6", or the cell
// of the table's column "Variant".
std::string variantText(const Case& measured);

// The ratio as far as it says how small the method makes its data. With a dictionary it is the
// whole length over the compressed size of the part behind the dictionary: nothing that methods
// could be compared by.
std::optional<double> plainRatio(const Case& measured);

} // namespace report
