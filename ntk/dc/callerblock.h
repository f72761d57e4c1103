// States that lie in blocks of the caller's, and the check of a call's pointers.
#pragma once

#include <cstdint>

#include "ntkdefs.h"

namespace ntk {

constexpr bool anyNull(auto... pointers) {
    return (... || (pointers == nullptr));
}

// The caller's blocks have any alignment.
template <class State> constexpr std::size_t stateBytes() {
    return sizeof(State) + alignof(State) - 1;
}

template <class State> State& stateIn(Ntk8u* block) {
    constexpr std::uintptr_t mask = alignof(State) - 1;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    return *reinterpret_cast<State*>(block + (((address + mask) & ~mask) - address));
}

} // namespace ntk
