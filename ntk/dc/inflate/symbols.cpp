// The symbols of a block, one at a time: near the ends of source and destination, and wherever the
// fast loop cannot continue.

#include <algorithm>

#include "stream.h"

namespace ntk::inflate {

namespace {

constexpr unsigned literalMaxBits = 15 + 5; // code and extra bits
constexpr unsigned distanceMaxBits = 15 + 13;

// The next symbol, not taken yet.
struct Symbol {
    Entry entry;
    unsigned linkBits; // before the bits that the entry counts

    unsigned length(const BitReader& in) const {
        return lengthWithExtra(entry, in.bits >> linkBits);
    }
    unsigned value(const BitReader& in) const { return valueWithExtra(entry, in.bits >> linkBits); }
    void take(BitReader& in) const { in.drop(linkBits + takenBits(entry)); }
};

// False if the source ends before the symbol does. An entry that takes no more bits than are
// counted is right whatever the bits above them are.
bool findSymbol(BitReader& in, const CodeTable& table, unsigned maxBits, Symbol& symbol) {
    in.has(maxBits);
    symbol = {table.at(in.bits), 0};
    if (isLink(symbol.entry)) {
        symbol.linkBits = takenBits(symbol.entry);
        symbol.entry = table.follow(symbol.entry, in.bits >> symbol.linkBits);
    }
    return symbol.linkBits + takenBits(symbol.entry) <= in.count;
}

// Copies the pending match as far as there is room, byte by byte because it may overlap itself.
Outcome copyMatch(Stream& s) {
    Output& out = s.out;
    if (s.pendingDistance > out.contiguousHistoryBytes() + out.externalHistoryBytes) {
        return Outcome::malformed;
    }
    const auto fitting = static_cast<unsigned>(std::min<std::size_t>(s.pendingLength, out.room()));
    if (s.pendingDistance >= fitting && s.pendingDistance <= out.contiguousHistoryBytes()) {
        std::memcpy(out.next, out.next - s.pendingDistance, fitting);
        out.next += fitting;
        s.pendingLength -= fitting;
    }
    for (; s.pendingLength > 0; --s.pendingLength) {
        if (out.room() == 0) {
            return Outcome::destinationFull;
        }
        const std::size_t contiguousHistoryBytes = out.contiguousHistoryBytes();
        *out.next = s.pendingDistance <= contiguousHistoryBytes
                        ? *(out.next - s.pendingDistance)
                        : *(out.externalHistoryEnd - (s.pendingDistance - contiguousHistoryBytes));
        ++out.next;
    }
    s.pendingDistance = 0;
    return Outcome::goOn;
}

// Continues a match whose length is known.
Outcome finishMatch(Stream& s, const CodeTable& distances) {
    if (s.pendingDistance == 0) {
        Symbol symbol;
        if (!findSymbol(s.in, distances, distanceMaxBits, symbol)) {
            return Outcome::sourceUsedUp;
        }
        if (isInvalid(symbol.entry)) {
            return Outcome::malformed;
        }
        s.pendingDistance = symbol.value(s.in);
        symbol.take(s.in);
    }
    return copyMatch(s);
}

// Decodes a literal, the length of a match or the end of the block. A symbol that needs room is not
// taken if there is none.
Outcome decodeSymbol(Stream& s, const CodeTable& literals) {
    Symbol symbol;
    if (!findSymbol(s.in, literals, literalMaxBits, symbol)) {
        return Outcome::sourceUsedUp;
    }
    if (isInvalid(symbol.entry)) {
        return Outcome::malformed;
    }
    if (isEndOfBlock(symbol.entry)) {
        s.endBlock();
    } else if (s.out.room() == 0) {
        return Outcome::destinationFull;
    } else if (literalsIn(symbol.entry) != 0) {
        *s.out.next++ = static_cast<Ntk8u>(valueOf(symbol.entry));
    } else {
        s.pendingLength = symbol.length(s.in);
    }
    symbol.take(s.in);
    return Outcome::goOn;
}

} // namespace

Outcome decodeSymbols(Stream& s, const Codes& codes) {
    const int mode = s.mode;
    DecodeFast* const decodeFast = decodeFastKernel.get();
    Outcome outcome = Outcome::goOn;
    while (outcome == Outcome::goOn && s.mode == mode) {
        if (s.pendingLength == 0) {
            outcome = decodeFast(s, codes);
            if (outcome != Outcome::goOn || s.mode != mode) {
                break;
            }
        }
        outcome =
            s.pendingLength > 0 ? finishMatch(s, codes.distances) : decodeSymbol(s, codes.literals);
    }
    return outcome;
}

} // namespace ntk::inflate
