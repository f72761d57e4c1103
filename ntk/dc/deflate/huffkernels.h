// The loops of Huffman coding, and the tables that they look codes up in. Method: see huff.cpp.
#pragma once

#include <array>
#include <cstring>

#include "../anyaddress.h"
#include "../dispatch.h"
#include "ntkdcdeflate.h"
#include "symbols.h"

namespace ntk::deflate {

inline constexpr Ntk32u maxCodeBits = 15;

// A code and the extra bits that are the same whenever it is used: the bits themselves, and from
// countShift on their count.
using CodeBits = Ntk32u;
inline constexpr int countShift = 24;
inline constexpr Ntk32u valueMask = (1U << countShift) - 1;
// The count of a symbol without a code: recognisable in a sum of two.
inline constexpr Ntk32u noCode = 0x80;

struct HuffTables {
    // Literals, then lengths with their extra bits.
    std::array<CodeBits, literalSymbols + maxMatch - minMatch + 1> literalsAndLengths;
    // The first is that of a literal, without bits. The symbols' begin at firstDistance; what
    // distances above the largest one lead to has no code.
    std::array<CodeBits, 64> distances;
    static constexpr unsigned firstDistance = 32;

    HuffTables(const AnyAddress<NtkHuffCode>* litCodes, const AnyAddress<NtkHuffCode>* distCodes);
};

// Bits on their way to the destination; before an entry fewer than 8.
class BitWriter {
public:
    BitWriter(Ntk8u* dst, Ntk64u bits, unsigned count) : m_dst(dst), m_bits(bits), m_count(count) {}

    [[gnu::always_inline]] void put(Ntk64u value, unsigned count) {
        m_bits |= value << m_count;
        m_count += count;
    }
    // Stores 8 bytes and keeps the complete ones.
    [[gnu::always_inline]] void storeAhead() {
        std::memcpy(m_dst, &m_bits, sizeof m_bits);
        drop(m_count >> 3);
    }
    void storeComplete() {
        for (; m_count >= 8; drop(1)) {
            *m_dst = static_cast<Ntk8u>(m_bits);
        }
    }
    const Ntk8u* end() const { return m_dst; }
    Ntk32u bits() const { return static_cast<Ntk32u>(m_bits); }
    int count() const { return static_cast<int>(m_count); }

private:
    [[gnu::always_inline]] void drop(unsigned bytes) {
        m_dst += bytes;
        m_bits >>= 8 * bytes;
        m_count -= 8 * bytes;
    }

    Ntk8u* m_dst;
    Ntk64u m_bits;
    unsigned m_count;
};

// The bits of an entry, of a distance of up to 65535; hasCode is false if a symbol has no code.
struct EntryBits {
    Ntk64u value;
    unsigned count;
    bool hasCode;
};

[[gnu::always_inline]] inline EntryBits entryBits(const HuffTables& tables, unsigned literal,
                                                  unsigned dist) {
    const unsigned isMatch = (dist + 0xFFFF) >> 16;
    const CodeBits first = tables.literalsAndLengths[isMatch * literalSymbols + literal];
    // The symbol of a distance, and its extra bits, by the position of its highest bit.
    const unsigned back = dist - isMatch;
    const auto extraBits = static_cast<unsigned>(30 - __builtin_clz(back | 2));
    const unsigned symbol = 2 * extraBits + (back >> extraBits);
    const CodeBits second = tables.distances[isMatch * HuffTables::firstDistance + symbol];
    const Ntk64u extra = back & ((1U << extraBits) - 1);
    const unsigned firstCount = first >> countShift;
    const unsigned secondCount = second >> countShift;
    constexpr unsigned shiftMask = 63; // what a shift of 64 bits takes of its count
    const Ntk64u distBits = (second & valueMask) | extra << (secondCount & shiftMask);
    return {(first & valueMask) | distBits << (firstCount & shiftMask),
            firstCount + secondCount + extraBits, ((first | second) >> 31) == 0};
}

// Bits that fit behind those which wait for their byte to be complete.
inline constexpr unsigned mostBitsAtOnce = 56;

// Every entry adds at least one bit: before the last of these, a store of 8 bytes stays within what
// they will fill.
inline constexpr int entriesPerStore = 64;

struct HuffEntries {
    const Ntk8u* lit;
    const AnyAddress<Ntk16u>* dist;
    int count;
};

// Encodes entries while at least entriesPerStore follow and all have codes, and returns how many.
// What it leaves may be more than it must: the caller encodes the rest.
using PutEntries = int(BitWriter&, const HuffTables&, const HuffEntries&);

extern constinit Choice<PutEntries> putEntriesKernel;

int putEntriesAvx512(BitWriter& result, const HuffTables& tables, const HuffEntries& entries);

} // namespace ntk::deflate
