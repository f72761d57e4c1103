#pragma once

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

#include <algorithm>
#include <limits>
#include <type_traits>

#include "kxtype.h"

// The inside of kxVector's fills and texts: code written once over the component type T (of real
// elements: the element itself; complex elements have two components) and chosen by the code.

// Calls action with a value of the component type of a valid type; false for another code.
template <class Action> bool kxForComponent(kxType type, Action&& action) {
    if (kxTypeBytes(type) == 0) {
        return false;
    }
    switch (kxRealType(type)) {
    case kx8u: action(std::uint8_t{}); break;
    case kx16u: action(std::uint16_t{}); break;
    case kx32u: action(std::uint32_t{}); break;
    case kx64u: action(std::uint64_t{}); break;
    case kx8s: action(std::int8_t{}); break;
    case kx16s: action(std::int16_t{}); break;
    case kx32s: action(std::int32_t{}); break;
    case kx64s: action(std::int64_t{}); break;
    case kx32f: action(float{}); break;
    case kx64f: action(double{}); break;
    default: return false;
    }
    return true;
}

// What the fills use as the ends of a component type. The floating ones leave room for a product
// with small factors and for a sum, so that no data raise overflow on their own.
template <class T> struct kxLimits {
    static constexpr T min = std::numeric_limits<T>::min();
    static constexpr T max = std::numeric_limits<T>::max();
    static constexpr T minAbs = 1; // smallest magnitude above 0
};
template <> struct kxLimits<float> {
    static constexpr float max = 1.0e30f;
    static constexpr float min = -max;
    static constexpr float minAbs = FLT_MIN;
};
template <> struct kxLimits<double> {
    static constexpr double max = 1.0e300;
    static constexpr double min = -max;
    static constexpr double minAbs = DBL_MIN;
};

// value as T, integers cut towards zero; beyond T's ends the end, for no number the integer 0.
template <class T> T kxSaturate(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        constexpr double end = std::numeric_limits<T>::max();
        return static_cast<T>(std::clamp(value, -end, end));
    } else {
        if (std::isnan(value)) {
            return 0;
        }
        // The largest 64-bit integers round up to a double that is out of range itself.
        if (value >= static_cast<double>(kxLimits<T>::max)) {
            return kxLimits<T>::max;
        }
        return value <= static_cast<double>(kxLimits<T>::min) ? kxLimits<T>::min
                                                              : static_cast<T>(value);
    }
}

// Components in memory that may be misaligned on purpose.
template <class T> T kxLoad(const void* data, int i) {
    T value;
    std::memcpy(&value, static_cast<const char*>(data) + static_cast<std::ptrdiff_t>(i) * sizeof(T),
                sizeof(T));
    return value;
}
template <class T> void kxStore(void* data, int i, T value) {
    std::memcpy(static_cast<char*>(data) + static_cast<std::ptrdiff_t>(i) * sizeof(T), &value,
                sizeof(T));
}
