#include "numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace common {

namespace {

std::string withDecimals(double number, int decimals) {
    char text[400]; // room for the largest double
    std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return text;
}

// More digits would promise what no interval holds.
int decimalsOfPercent(double percent) {
    return percent < 99.995 ? 2 : percent < 999.95 ? 1 : 0;
}

} // namespace

std::string percentText(double logRatio) {
    if (!std::isfinite(logRatio)) {
        return "?";
    }
    const double ratio = std::exp(logRatio);
    if (ratio >= 2) {
        return withDecimals(ratio, ratio < 9.995 ? 2 : 0) + "x";
    }
    const std::string size = widthText(std::fabs(std::expm1(logRatio)));
    return size == "0.00%" ? size : (logRatio < 0 ? "-" : "+") + size;
}

std::string widthText(double ratio) {
    if (!std::isfinite(ratio)) {
        return "?";
    }
    const double percent = 100 * ratio;
    return withDecimals(percent, decimalsOfPercent(percent)) + "%";
}

std::string settingText(double ratio) {
    char text[40];
    std::snprintf(text, sizeof text, "%g%%", 100 * ratio);
    return text;
}

std::string clocksText(double clocks) {
    if (!std::isfinite(clocks) || clocks <= 0) {
        return clocks == 0 ? "0" : "?";
    }
    // Rounded first: 9.9999 is 10.00, not 10.000.
    char rounded[40];
    std::snprintf(rounded, sizeof rounded, "%.3e", clocks);
    const int exponent = std::atoi(std::strchr(rounded, 'e') + 1);
    return withDecimals(clocks, std::clamp(3 - exponent, 0, 15));
}

std::string durationText(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0) {
        return "?";
    }
    if (seconds < 9.95) {
        const std::string text = withDecimals(seconds, 1);
        return (text.ends_with(".0") ? text.substr(0, text.size() - 2) : text) + " s";
    }
    const long long whole = std::llround(seconds);
    char text[60];
    if (whole < 60) {
        std::snprintf(text, sizeof text, "%lld s", whole);
    } else if (whole < 3600) {
        std::snprintf(text, sizeof text, "%lld min %02lld s", whole / 60, whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%lld h %02lld min", whole / 3600, whole % 3600 / 60);
    }
    return text;
}

std::string exactText(double number) {
    if (!std::isfinite(number)) {
        return "";
    }
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string countText(long long count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

} // namespace common
