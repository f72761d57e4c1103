// Elements of the caller's arrays, which need no alignment.
#pragma once

#include "ntkdefs.h"

namespace ntk {

// An element at an address of any alignment. On this processor its loads and stores are the
// instructions that an aligned element has, too.
template <class T> struct [[gnu::packed, gnu::may_alias]] AnyAddress {
    T value;
};

template <class T> const AnyAddress<T>* atAnyAddress(const T* p) {
    return reinterpret_cast<const AnyAddress<T>*>(p);
}
template <class T> AnyAddress<T>* atAnyAddress(T* p) {
    return reinterpret_cast<AnyAddress<T>*>(p);
}

} // namespace ntk
