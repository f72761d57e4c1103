#pragma once

#include <string>

#include "model.h"

namespace report {

// What the page's scripts read, as JSON that may stand inside a script element: no text of the
// report can end the element or begin a comment. Lists of cases are tables: "columns" names what
// each of the "rows" holds.
std::string pageData(const Report& report);

} // namespace report
