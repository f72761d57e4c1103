#include "psmeasurement.h"

bool psMeasurement::isDisturbed() const {
    constexpr double quietSpread = 0.05;
    return isMeasured() && (times.spread > quietSpread || times.switches > 0);
}

psString psMeasurement::combination() const {
    psString text;
    for (const psNamedValue& parameter : parameters) {
        text << (text.empty() ? "" : " ") << parameter.name << "=" << psValueText(parameter.value);
    }
    return text;
}
