#include "symbols.h"

#include "psmissing.h"

namespace compare {

std::string missingFunction(const std::string& function) {
    return psMissingFunctionText(function.c_str()).c_str();
}

} // namespace compare
