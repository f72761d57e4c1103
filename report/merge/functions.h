#pragma once

#include <optional>
#include <string>

#include "model.h"

// What is known of a function by its name.
namespace report {

struct FunctionFacts {
    std::string family; // "LZ4"
    Case::Kind kind = Case::Kind::other;
};
FunctionFacts factsOf(const std::string& function);

// Bytes of uncompressed data that a unit of a case's clocks stands for. Nothing: not known of this
// function, or only its ratio would tell.
std::optional<double> bytesPerUnit(const Case& one);

// What goes into a call over what comes out of it, or the other way round for a decoder, of what a
// test tells as its ratio: with a dictionary that is all of the data over what became of their
// second half.
std::optional<double> ratioOfCall(const Case& one, std::optional<double> told);

} // namespace report
