// States in blocks that the caller provides, and the null check of a call's pointers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ntkdefs.h"

namespace ntk {

constexpr bool anyNull(auto... pointers) {
    return (... || (pointers == nullptr));
}

// Size of the block for a state. Blocks may have any alignment: the state is at the first suitable
// address.
template <class State> constexpr int stateBytes() {
    return static_cast<int>(sizeof(State) + alignof(State) - 1);
}

// The body of a GetSize function.
inline NtkStatus returnSize(int bytes, int* pSize) {
    if (pSize == nullptr) {
        return ntkStsNullPtr;
    }
    *pSize = bytes;
    return ntkStsNoErr;
}

template <class State> State& stateIn(Ntk8u* block) {
    constexpr std::uintptr_t mask = alignof(State) - 1;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    return *reinterpret_cast<State*>(block + (((address + mask) & ~mask) - address));
}
template <class State> const State& stateIn(const Ntk8u* block) {
    return stateIn<State>(const_cast<Ntk8u*>(block));
}

} // namespace ntk
