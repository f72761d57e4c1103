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

// Bytes of uncompressed data that a unit of a function's clocks stands for. Nothing: not known of
// this function, or only its ratio would tell.
std::optional<double> bytesPerUnit(const std::string& function, std::optional<double> ratio);

} // namespace report
