// Tokens of the LZSS stream. encode.cpp specifies the format.
#pragma once

#include <cstring>

#include "ntkdefs.h"

namespace ntk::lzss {

inline constexpr Ntk32u tokensPerGroup = 8;
inline constexpr Ntk32u maxTokenBytes = 4;
inline constexpr Ntk32u maxGroupBytes = 1 + tokensPerGroup * maxTokenBytes;

// Matches of two bytes.
inline constexpr Ntk32u minMatch = 3;
inline constexpr Ntk32u longCode = 7; // instead of a length: a third byte follows
inline constexpr Ntk32u maxShortMatch = minMatch + longCode - 1;
inline constexpr Ntk32u maxShortDistance = 8191;

// Matches of three bytes, and of four.
inline constexpr Ntk32u minLongMatch = 4;
inline constexpr Ntk32u longestCode = 127; // instead of a length: a fourth byte follows
inline constexpr Ntk32u minLongestMatch = minLongMatch + longestCode;
inline constexpr Ntk32u maxMatch = minLongestMatch + 255;
inline constexpr Ntk32u maxDistance = 16383;

struct Match {
    Ntk32u length;
    Ntk32u distance;
};

constexpr bool isShort(Match m) {
    return m.length <= maxShortMatch && m.distance <= maxShortDistance;
}

// Bytes of the match's token. There is no token for a length of 3 at more than maxShortDistance.
constexpr Ntk32u tokenBytes(Match m) {
    return isShort(m) ? 2 : m.length < minLongestMatch ? 3 : 4;
}

// Bytes of a match's token, as far as its first bytes, of which at least 2 are known, determine it.
constexpr Ntk32u tokenBytes(const Ntk8u* token, Ntk32u known) {
    if ((token[0] & 7) != longCode) {
        return 2;
    }
    return known < 3 || token[2] >> 1 != longestCode ? 3 : 4;
}

// Writes maxTokenBytes; returns the length of the token.
inline Ntk32u writeToken(Match m, Ntk8u* dst) {
    const Ntk32u code = isShort(m) ? m.length - minMatch : longCode;
    const Ntk32u low = (m.distance & maxShortDistance) << 3 | code;
    const bool isLongest = m.length >= minLongestMatch;
    dst[0] = static_cast<Ntk8u>(low);
    dst[1] = static_cast<Ntk8u>(low >> 8);
    dst[2] = static_cast<Ntk8u>(m.distance >> 13 |
                                (isLongest ? longestCode : m.length - minLongMatch) << 1);
    dst[3] = static_cast<Ntk8u>(m.length - minLongestMatch);
    return tokenBytes(m);
}

// Reads a complete token. A distance of 0 is invalid.
inline Match readToken(const Ntk8u* token) {
    const Ntk32u low = token[0] | token[1] << 8;
    const Ntk32u code = low & 7;
    if (code != longCode) {
        return {minMatch + code, low >> 3};
    }
    const Ntk32u length = token[2] >> 1;
    return {minLongMatch + length + (length == longestCode ? token[3] : 0),
            low >> 3 | (token[2] & 1U) << 13};
}

// Whether the token is the one that ends a group early.
constexpr bool endsGroup(const Ntk8u* token) {
    return token[0] == 0 && token[1] == 0;
}

// Unaligned loads and stores.
template <class Word> Word load(const Ntk8u* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}
inline void copy8(Ntk8u* to, const Ntk8u* from) {
    std::memcpy(to, from, 8);
}

} // namespace ntk::lzss
