#include "psmeasurement.h"

bool psMeasurement::isSpread() const {
    constexpr double quietSpread = 0.05;
    return isMeasured() && times.spread > quietSpread;
}

psString psMeasurement::combination() const {
    psString text;
    for (const psNamedValue& parameter : parameters) {
        text << (text.empty() ? "" : " ") << parameter.name << "=" << psValueText(parameter.value);
    }
    return text;
}
