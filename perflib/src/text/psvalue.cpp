#include "psvalue.h"

psString psValueText(const psValue& value) {
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
