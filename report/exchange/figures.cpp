#include "figures.h"

#include <array>
#include <charconv>
#include <cmath>

namespace report {

namespace {

std::string unitName(const std::string& unit) {
    if (unit == "e") {
        return "element";
    }
    return unit.empty() ? "unit" : unit;
}

} // namespace

bool isFigure(double number) {
    return std::isfinite(number) && number > 0;
}

std::string plainNumber(double number) {
    std::array<char, 512> digits{}; // the smallest double has 325 behind the point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::fixed);
    return {digits.data(), end.ptr};
}

Cost costOf(const Case& tried, double clocksPerUnit) {
    if (tried.bytesPerUnit && isFigure(*tried.bytesPerUnit)) {
        return {clocksPerUnit / *tried.bytesPerUnit, "clocks/byte"};
    }
    return {clocksPerUnit, "clocks/" + unitName(tried.unit)};
}

std::optional<double> ticksMHz(const Report& report, const Group& group) {
    for (const int run : group.runs) {
        const double mhz = report.runs[static_cast<std::size_t>(run)].facts.ticksMHz;
        if (isFigure(mhz)) {
            return mhz;
        }
    }
    return {};
}

std::optional<double> bytesPerSecond(const Case& tried, double clocksPerUnit,
                                     std::optional<double> mhz) {
    if (!mhz || !tried.bytesPerUnit) {
        return {};
    }
    const double speed = *mhz * 1e6 * *tried.bytesPerUnit / clocksPerUnit;
    return isFigure(speed) ? std::optional(speed) : std::nullopt;
}

bool hasRange(const Case& tried) {
    return tried.samples.size() > 1 && isFigure(tried.smallest) && isFigure(tried.largest);
}

const Measurement& measurementOf(const Report& report, const Sample& sample) {
    return report.runs[static_cast<std::size_t>(sample.run)]
        .measurements[static_cast<std::size_t>(sample.measurement)];
}

std::string resultText(const std::string& result, const std::string& words) {
    return words.empty() ? result : result + ": " + words;
}

} // namespace report
