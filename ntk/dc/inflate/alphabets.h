// The three alphabets of deflate (RFC 1951, 3.2.5 and 3.2.7) and the fixed codes (3.2.6).
#pragma once

#include <array>

#include "codetable.h"
#include "pairs.h"

namespace ntk::inflate {

inline constexpr unsigned endOfBlock = 256;
inline constexpr unsigned maxLiteralCodes = 286; // in a dynamic block
inline constexpr unsigned maxDistanceCodes = 30;
inline constexpr unsigned numLengthCodes = 19;

inline constexpr unsigned literalRootBits = 11;
inline constexpr unsigned distanceRootBits = 8;
inline constexpr unsigned lengthCodeRootBits = 7; // the longest code length

// Entries without the bits of a code, see TableBuilder.
extern const std::array<Entry, 288> literalSymbols; // and lengths
extern const std::array<Entry, 32> distanceSymbols;
// Of code lengths: values 0 to 15 are lengths; the three repetitions differ in their extra bits.
extern const std::array<Entry, numLengthCodes> codeLengthSymbols;

extern const CodeTable fixedLiteralTable;
extern const CodeTable fixedDistanceTable;
extern const PairTable fixedPairTable;

} // namespace ntk::inflate
