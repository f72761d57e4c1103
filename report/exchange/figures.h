#pragma once

#include <optional>
#include <string>

#include "model.h"

// What the formats need beside the clocks of a case.
namespace report {

// A number that can stand in a file and in a mean: finite and above 0.
bool isFigure(double number);
// The shortest decimal number that reads back as the same one, never with an exponent.
std::string plainNumber(double number);

// "clocks/byte" where it is known how many bytes of uncompressed data a unit stands for, else
// "clocks/element" or what the unit is.
struct Cost {
    double clocks = 0;
    std::string unit;
};
Cost costOf(const Case& tried, double clocksPerUnit);

// Of the clock counter, as any run of the group tells; the runs of a group are of one machine.
std::optional<double> ticksMHz(const Report& report, const Group& group);
// Of uncompressed data.
std::optional<double> bytesPerSecond(const Case& tried, double clocksPerUnit,
                                     std::optional<double> mhz);

// Several runs, of known smallest and largest.
bool hasRange(const Case& tried);

const Measurement& measurementOf(const Report& report, const Sample& sample);

// "FUNCFAIL: status -5".
std::string resultText(const std::string& result, const std::string& words);

} // namespace report
