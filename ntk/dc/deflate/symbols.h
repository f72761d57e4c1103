// Deflate's symbols for lengths and distances (RFC 1951, 3.2.5).
#pragma once

#include <array>

#include "ntkdefs.h"

namespace ntk::deflate {

inline constexpr int minMatch = 3;
inline constexpr int maxMatch = 258;
inline constexpr int maxDistance = 32768;
inline constexpr int firstLengthSymbol = 257;
inline constexpr int literalSymbols = 256;
inline constexpr int lengthSymbols = 29;
inline constexpr int distanceSymbols = 30;

inline constexpr std::array<Ntk8u, lengthSymbols> lengthExtraBits = {
    0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};

constexpr int distanceExtraBits(int symbol) {
    return symbol < 4 ? 0 : symbol / 2 - 1;
}

// By length - 3: the symbol minus 257. Length 258 has a symbol of its own.
inline constexpr auto lengthSymbolOf = [] {
    std::array<Ntk8u, maxMatch - minMatch + 1> symbols{};
    int length = 0;
    for (int symbol = 0; symbol < lengthSymbols - 1; ++symbol) {
        for (int i = 0; i < 1 << lengthExtraBits[symbol] && length < maxMatch - minMatch; ++i) {
            symbols[length++] = static_cast<Ntk8u>(symbol);
        }
    }
    symbols[maxMatch - minMatch] = lengthSymbols - 1;
    return symbols;
}();

// Slot of a distance in the table below: each distance up to 256 has its own, above that 128
// consecutive distances, which have the same symbol, share one. Computed without a branch, because
// near and far distances alternate unpredictably.
inline constexpr int ownSlots = 257;
inline constexpr int slotCount = ownSlots + (maxDistance >> 7);
constexpr unsigned slotOf(unsigned distance) {
    const unsigned far = (ownSlots - 1 - distance) >> 31;
    return ((distance - far) >> (far * 7)) + far * ownSlots;
}

// By slot of a distance. Distance 0, that of a literal, has a symbol after the last one.
inline constexpr auto distanceSymbolOf = [] {
    std::array<Ntk8u, slotCount> symbols{};
    symbols[0] = distanceSymbols;
    unsigned distance = 1;
    for (int symbol = 0; symbol < distanceSymbols; ++symbol) {
        for (int i = 0; i < 1 << distanceExtraBits(symbol); ++i) {
            symbols[slotOf(distance++)] = static_cast<Ntk8u>(symbol);
        }
    }
    return symbols;
}();

} // namespace ntk::deflate
