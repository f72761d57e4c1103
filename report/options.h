#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace report {

// A command line that cannot be followed; what() says what is wrong and what to do.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class Form { html, json, bmf, smallerIsBetter, benchstat, markdown, csv };
constexpr std::size_t formCount = 7;

constexpr const char* standardOutput = "-";

struct Options {
    std::vector<std::string> inputs;
    std::array<std::string, formCount> outputs; // by Form; empty: not asked for
    std::string information;                    // to print instead of all else: help, version

    const std::string& output(Form form) const { return outputs[static_cast<std::size_t>(form)]; }
    bool hasOutput() const;
};

// Throws UsageError.
Options parseOptions(std::vector<std::string> words);

} // namespace report
