#pragma once

#include <string>

#include "comparison.h"
#include "numbers.h"
#include "columns.h"

// Numbers, values and columns as texts: those of common, and the parameters of two sides.
namespace compare {

using namespace common;
using common::parametersText; // else the one below would hide it

// "A=1 B=x -> y" where the sides differ; "none" for what a side does not have.
enum class ParameterForm {
    whole,
    table,  // of a file the name only
    values, // without the parameters' names, too
};
std::string parametersText(const Both<NamedValues>& parameters,
                           ParameterForm form = ParameterForm::whole);

} // namespace compare
