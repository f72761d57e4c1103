// The fills of kxVector, written once over the component type.
#include <cmath>

#include "kxelement.h"
#include "kxrandom.h"
#include "kxvector.h"

unsigned kxVector::m_seed = kxVector::defaultSeed;

namespace {

int componentsOf(kxType type) {
    return kxIsComplex(type) ? 2 : 1;
}

// Calls value(element, component), which gives a component's value, for all of len elements.
template <class T, class Value> void fill(void* data, int len, int components, Value&& value) {
    for (int element = 0; element < len; ++element) {
        for (int part = 0; part < components; ++part) {
            kxStore<T>(data, element * components + part, value(element, part));
        }
    }
}

// Integers around their ends; a 64-bit unsigned beyond the signed range ends at its type's end.
template <class T> T wrapped(double value) {
    if constexpr (std::is_integral_v<T>) {
        if (std::fabs(value) < 0x1p63) {
            return static_cast<T>(static_cast<long long>(value));
        }
    }
    return kxSaturate<T>(value);
}

// Every component low or high end of its type.
template <bool maximum> void fillEnds(kxType type, void* data, int len) {
    kxForComponent(type, [&](auto zero) {
        using T = decltype(zero);
        constexpr T end = maximum ? kxLimits<T>::max : kxLimits<T>::min;
        fill<T>(data, len, componentsOf(type), [](int, int) { return end; });
    });
}

enum class Limit { minimum, maximum, minimumMagnitude };

double limitOf(kxType type, Limit limit) {
    double value = 0.0;
    kxForComponent(type, [&](auto zero) {
        using T = decltype(zero);
        value = static_cast<double>(limit == Limit::minimum   ? kxLimits<T>::min
                                    : limit == Limit::maximum ? kxLimits<T>::max
                                                              : kxLimits<T>::minAbs);
    });
    return value;
}

} // namespace

void kxVector::setConst(double re, double im) {
    setDataConst(m_data, m_length, re, im);
}

void kxVector::setDataConst(void* data, int len, double re, double im) const {
    kxForComponent(m_type, [&](auto zero) {
        using T = decltype(zero);
        const T parts[2] = {kxSaturate<T>(re), kxSaturate<T>(im)};
        fill<T>(data, len, componentsOf(m_type), [&](int, int part) { return parts[part]; });
    });
}

void kxVector::setRandom() {
    setRandom(minValue(), maxValue());
}

void kxVector::setRandom(double low, double high) {
    setDataRandom(m_data, m_length, low, high);
}

void kxVector::setRandom(double low, double high, unsigned seed) {
    setDataRandom(m_data, m_length, low, high, seed);
}

void kxVector::setDataRandom(void* data, int len, double low, double high) const {
    setDataRandom(data, len, low, high, m_seed);
    m_seed = static_cast<unsigned>(kxRandom(m_seed).bits());
}

void kxVector::setDataRandom(void* data, int len, double low, double high, unsigned seed) const {
    kxForComponent(m_type, [&](auto zero) {
        using T = decltype(zero);
        const kxRange<T> range(low, high);
        kxRandom random(seed);
        fill<T>(data, len, componentsOf(m_type), [&](int, int) { return range.draw(random); });
    });
}

void kxVector::setSequence(double start, double step, double startIm, double stepIm) {
    setDataSequence(m_data, m_length, start, step, startIm, stepIm);
}

void kxVector::setDataSequence(void* data, int len, double start, double step, double startIm,
                               double stepIm) const {
    const double starts[2] = {start, startIm};
    const double steps[2] = {step, stepIm};
    kxForComponent(m_type, [&](auto zero) {
        using T = decltype(zero);
        fill<T>(data, len, componentsOf(m_type), [&](int element, int part) {
            return wrapped<T>(starts[part] + element * steps[part]);
        });
    });
}

void kxVector::setJaehne(double magnitude) {
    setVectorJaehne(m_data, m_length, magnitude);
}

bool kxVector::updateJaehneMagn(double& magnitude, double& offset) const {
    const double halfRange = (maxValue() - minValue()) * 0.5;
    magnitude = std::fmin(magnitude, halfRange);
    offset = minValue() < 0 ? 0.0 : (maxValue() + minValue()) * 0.5;
    return magnitude >= 0;
}

void kxVector::setVectorJaehne(void* data, int len, double magnitude) const {
    double offset;
    if (!updateJaehneMagn(magnitude, offset)) {
        return;
    }
    const double rate = 1.0 / len;
    kxForComponent(m_type, [&](auto zero) {
        using T = decltype(zero);
        fill<T>(data, len, componentsOf(m_type), [&](int element, int) {
            const double n = element;
            return kxSaturate<T>(offset +
                                 magnitude * std::sin(1.5707963267948966 * (n * n) * rate));
        });
    });
}

void kxVector::setMinValue() {
    fillEnds<false>(m_type, m_data, m_length);
}

void kxVector::setMaxValue() {
    fillEnds<true>(m_type, m_data, m_length);
}

void kxVector::setVector(SetMode mode, double a, double b) {
    setData(m_data, m_length, mode, a, b);
}

void kxVector::setData(void* data, int len, SetMode mode, double a, double b) const {
    switch (mode) {
    case SET_NONE: break;
    case SET_CONST: setDataConst(data, len, a, b); break;
    case SET_SEQUENCE: setDataSequence(data, len, a, b); break;
    case SET_JAEHNE: setVectorJaehne(data, len, a); break;
    case SET_MIN: fillEnds<false>(m_type, data, len); break;
    case SET_MAX: fillEnds<true>(m_type, data, len); break;
    case SET_RANDOM: {
        const bool defaultRange = a == 0.0 && b == 0.0;
        setDataRandom(data, len, defaultRange ? minValue() : a, defaultRange ? maxValue() : b);
        break;
    }
    }
}

void kxVector::setIndex(int i, SetMode mode, double a, double b) {
    setData(getPointerAt(i), 1, mode, a, b);
}

void kxVector::getElement(const void* element, double& re, double& im) const {
    re = im = 0.0;
    kxForComponent(m_type, [&](auto zero) {
        using T = decltype(zero);
        re = static_cast<double>(kxLoad<T>(element, 0));
        im = kxIsComplex(m_type) ? static_cast<double>(kxLoad<T>(element, 1)) : 0.0;
    });
}

void kxVector::getIndex(int i, double& re, double& im) const {
    getElement(getPointerAt(i), re, im);
}

double kxVector::getMinValue(kxType type) {
    return limitOf(type, Limit::minimum);
}

double kxVector::getMaxValue(kxType type) {
    return limitOf(type, Limit::maximum);
}

double kxVector::getMinAbsValue(kxType type) {
    return limitOf(type, Limit::minimumMagnitude);
}
