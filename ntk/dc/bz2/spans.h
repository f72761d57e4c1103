// Source and destination of a call, common to the bzip2 stages.
#pragma once

#include <cstddef>

#include "../callerblock.h"
#include "ntkdefs.h"

namespace ntk::bz2 {

// What is left of a buffer that a call works through.
template <class T> struct Span {
    T* p;
    T* end;

    Span(T* begin, int length) : p(begin), end(begin + length) {}
    std::size_t left() const { return static_cast<std::size_t>(end - p); }
    bool empty() const { return p == end; }
};

// Sets the caller's pointer and length to what is left.
template <class T> void returnRest(const Span<T>& span, T** pointer, int* length) {
    *pointer = span.p;
    *length = static_cast<int>(span.left());
}

} // namespace ntk::bz2
