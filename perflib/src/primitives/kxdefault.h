#pragma once

#include <initializer_list>

#include "kxfunc.h"
#include "psiterator.h"

// The scale factor of primitives that scale their integer results. A function that does not scale
// iterates over the single value 0, without a name.
class kxScaleIterator : public psIterator<int> {
public:
    // Whether the function's descriptor asks for a scale factor.
    static bool isScaled(const kxFunc& function);

    // Defines the parameter for this function: 0, 1, 2, -1 when it scales.
    void init(const psString& function) { initValues(function, {0, 1, 2, -1}); }
    // With these one to six values when it scales.
    template <class... Ints> void init(const psString& function, int value, Ints... more) {
        static_assert(sizeof...(more) <= 5);
        initValues(function, {value, more...});
    }
    bool isScaled() const { return m_scaled; }

    int colmIndex() const override; // the last parameter column

private:
    void initValues(const psString& function, std::initializer_list<int> values);
    bool m_scaled = false;
};
