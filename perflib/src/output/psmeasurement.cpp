#include "psmeasurement.h"

psString psMeasurement::combination() const {
    psString text;
    for (const psNamedValue& parameter : parameters) {
        text << (text.empty() ? "" : " ") << parameter.name << "=" << psValueText(parameter.value);
    }
    return text;
}
