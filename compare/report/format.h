#pragma once

#include <string>
#include <vector>

#include "comparison.h"

// Numbers, values and columns as texts.
namespace compare {

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

std::string valueText(const Value& value);
// "A=1 B=x".
std::string parametersText(const NamedValues& parameters);
// "A=1 B=x -> y" where the sides differ; "none" for what a side does not have.
enum class ParameterForm {
    whole,
    table,  // of a file the name only
    values, // without the parameters' names, too
};
std::string parametersText(const Both<NamedValues>& parameters,
                           ParameterForm form = ParameterForm::whole);
std::string keysText(const std::vector<std::string>& keys);

// "1 case", "2 cases".
std::string countText(long long count, const std::string& noun);
// Joined by the separator, without the empty ones.
std::string joined(const std::vector<std::string>& parts, const std::string& separator);

// Columns on a terminal: characters, not bytes.
int columnsOf(const std::string& text);
// Without control characters, which a file name or a worker's last words may hold.
std::string printable(const std::string& text);
std::string padded(const std::string& text, int columns, bool toTheRight = false);
// At most so many columns; what is left out is the middle, "..." in its place.
std::string shortened(const std::string& text, int columns);
std::string cut(const std::string& text, int columns); // what is left out is the end
// Broken between words into lines of at most so many columns (0: of any), further ones indented.
std::string wrapped(const std::string& text, int columns, const std::string& indent);

} // namespace compare
