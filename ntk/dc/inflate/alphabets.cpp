#include "alphabets.h"

namespace ntk::inflate {

namespace {

// Bases and extra bits of the length symbols 257 to 284 and of the distance symbols 0 to 29: after
// the first 2 * group symbols, each further `group` symbols have one more extra bit.
template <std::size_t N>
constexpr void fillRanges(std::array<Entry, N>& symbols, unsigned first, unsigned last,
                          unsigned group, unsigned base, unsigned baseShift) {
    for (unsigned s = first; s <= last; ++s) {
        const unsigned index = s - first;
        const unsigned extraBits = index < 2 * group ? 0 : index / group - 1;
        symbols[s] = (base << baseShift) | extraBits;
        base += 1U << extraBits;
    }
}

constexpr std::array<Entry, 288> makeLiteralSymbols() {
    std::array<Entry, 288> symbols{};
    for (unsigned s = 0; s < endOfBlock; ++s) {
        symbols[s] = (s << 24) | (s << 16) | noLengthFlag | oneLiteral;
    }
    symbols[endOfBlock] = exceptionBits | endOfBlockFlag;
    fillRanges(symbols, 257, 284, 4, 0, 24);
    symbols[285] = (258U - shortestMatch) << 24;
    symbols[286] = symbols[287] = exceptionBits;
    return symbols;
}

constexpr std::array<Entry, 32> makeDistanceSymbols() {
    std::array<Entry, 32> symbols{};
    fillRanges(symbols, 0, 29, 2, 1, 16);
    symbols[30] = symbols[31] = exceptionBits;
    return symbols;
}

constexpr std::array<Entry, numLengthCodes> makeCodeLengthSymbols() {
    std::array<Entry, numLengthCodes> symbols{};
    for (unsigned s = 0; s <= maxCodeBits; ++s) {
        symbols[s] = s << 16;
    }
    symbols[16] = (3U << 16) | 2;  // the previous length, 3 to 6 times
    symbols[17] = (3U << 16) | 3;  // 0, 3 to 10 times
    symbols[18] = (11U << 16) | 7; // 0, 11 to 138 times
    return symbols;
}

constexpr unsigned fixedLiteralBits = 9;
constexpr unsigned fixedDistanceBits = 5;

constexpr std::array<Entry, 1U << fixedLiteralBits> makeFixedLiterals() {
    std::array<Ntk8u, 288> lengths{};
    for (unsigned s = 0; s < lengths.size(); ++s) {
        lengths[s] = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
    }
    std::array<Entry, 1U << fixedLiteralBits> table{};
    buildTable(lengths.data(), 288, Incomplete::isRefused, makeLiteralSymbols().data(),
               fixedLiteralBits, table.data());
    return table;
}

constexpr std::array<Entry, 1U << fixedDistanceBits> makeFixedDistances() {
    std::array<Ntk8u, 32> lengths{};
    lengths.fill(fixedDistanceBits);
    std::array<Entry, 1U << fixedDistanceBits> table{};
    buildTable(lengths.data(), 32, Incomplete::isRefused, makeDistanceSymbols().data(),
               fixedDistanceBits, table.data());
    return table;
}

constexpr std::array<Entry, 1U << fixedLiteralBits> fixedLiterals = makeFixedLiterals();
constexpr std::array<Entry, 1U << fixedDistanceBits> fixedDistances = makeFixedDistances();

constexpr Pairs<fixedPairBits> makeFixedPairs() {
    Pairs<fixedPairBits> pairs{};
    fillPairs({fixedLiterals.data(), lowMask(fixedLiteralBits)},
              {fixedDistances.data(), lowMask(fixedDistanceBits)}, fixedPairBits, pairs.data());
    return pairs;
}
alignas(64) constexpr Pairs<fixedPairBits> fixedPairs = makeFixedPairs();

} // namespace

constexpr std::array<Entry, 288> literalSymbols = makeLiteralSymbols();
constexpr std::array<Entry, 32> distanceSymbols = makeDistanceSymbols();
constexpr std::array<Entry, numLengthCodes> codeLengthSymbols = makeCodeLengthSymbols();

constexpr CodeTable fixedLiteralTable = {fixedLiterals.data(), lowMask(fixedLiteralBits)};
constexpr CodeTable fixedDistanceTable = {fixedDistances.data(), lowMask(fixedDistanceBits)};
constexpr PairTable fixedPairTable = {fixedPairs.data(), fixedPairBits};

} // namespace ntk::inflate
