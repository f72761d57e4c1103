#include "psvalue.h"

#include <cmath>

psString psValueText(const psValue& value) {
    const double* const number = std::get_if<double>(&value);
    if (number && !std::isfinite(*number)) {
        return "-";
    }
    return std::visit([](const auto& v) { return psText(v); }, value);
}

const psValue* psNamedValues::find(const psString& name) const {
    for (const psNamedValue& item : *this) {
        if (item.name == name) {
            return &item.value;
        }
    }
    return nullptr;
}
