#pragma once

#include <string>

// Numbers as people and programs read them.
namespace common {

// Of the logarithm of a ratio: "+1.02%", "-0.50%", "0.00%", above +100% "41x". "?" when it is not
// finite.
std::string percentText(double logRatio);
// Of a width, as a ratio; near 0 that is its logarithm, too: "0.21%".
std::string widthText(double ratio);
// Of a setting, a ratio: "1%", "0.5%".
std::string settingText(double ratio);
// At least four significant digits, no exponent: "4.921", "0.07271", "12346".
std::string clocksText(double clocks);
// "0.4 s", "12 s", "3 min 20 s", "2 h 05 min".
std::string durationText(double seconds);
// The shortest text that reads back as the same number; empty when it is not finite.
std::string exactText(double number);
// "1 case", "2 cases".
std::string countText(long long count, const std::string& noun);

} // namespace common
