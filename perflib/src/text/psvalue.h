#pragma once

#include <type_traits>
#include <variant>

#include "psstring.h"

// A value of a parameter or of a measurement with its own type, for whoever writes results: a
// table writes text(), another format the number.
using psValue = std::variant<long long, double, psString>;

psString psValueText(const psValue& value); // "%lld", "%.3g"; "-" for what is no number

struct psNamedValue {
    psString name;
    psValue value;
};

// In the order in which they were added; few, so that looking one up may walk.
class psNamedValues : public psList<psNamedValue> {
public:
    template <class T> void add(const psString& name, const T& value) {
        if constexpr (std::is_integral_v<T>) {
            append({name, psValue(static_cast<long long>(value))});
        } else if constexpr (std::is_floating_point_v<T>) {
            append({name, psValue(static_cast<double>(value))});
        } else {
            append({name, psValue(value)});
        }
    }
    const psValue* find(const psString& name) const; // null: none
};
