// The data of a match search, and the caller's tables.
#pragma once

#include <cstring>

#include "../anyaddress.h"
#include "symbols.h"

namespace ntk::deflate {

using Position = AnyAddress<Ntk32s>;

// How far back the next two older positions of a chain are, so that no contents lead to newer ones;
// 16 bits are enough for every window. noLink leads out of it.
using Links = AnyAddress<Ntk32u>;
inline constexpr Ntk32u noLink = 65535;
static_assert(maxDistance < noLink);
constexpr Ntk32u linksOf(Ntk32u next, Ntk32u second) {
    return next | second << 16;
}
constexpr Ntk32u nextOlder(Ntk32u links) {
    return links & 0xFFFF;
}
constexpr Ntk32u secondOlder(Ntk32u links) {
    return links >> 16;
}

struct SearchSpace {
    const Ntk8u* source;
    int first;        // position of *source
    int end;          // position after the last byte
    int historyBegin; // position of the first byte that may be read
    int windowSize;
    Position* heads; // hashSize positions
    int hashSize;
    Links* links; // windowSize
};

inline Ntk32u load32(const Ntk8u* p) {
    Ntk32u value;
    std::memcpy(&value, p, sizeof value);
    return value;
}
inline Ntk64u load64(const Ntk8u* p) {
    Ntk64u value;
    std::memcpy(&value, p, sizeof value);
    return value;
}

} // namespace ntk::deflate
