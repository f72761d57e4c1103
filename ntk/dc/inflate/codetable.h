// Lookup tables for the prefix codes of deflate.
//
// A table is indexed by the next bits of the stream, lowest first. Its root has 2^rootBits entries;
// a longer code leads from the root to a subtable, indexed by the bits after the root's. Every
// index is filled: a code of fewer bits occupies all indices that end in it.
//
// Entry, 32 bits:
//    0..5   bits that the symbol takes: its code (in a subtable, the part after the root's bits)
//           and its extra bits; in a link to a subtable, the root's bits
//    6, 7   in an exception: link, end of the block; neither: invalid
//    8..11  bits of the code alone; in a link, the bits of the subtable's index
//   12      set in an exception
//   13      set if there is no length: in literals and exceptions
//   14, 15  number of literals, 0 or 1
//   16..31  base of the distance, or index of the subtable's first entry; or a literal in both
//           bytes; or the length less 3 in the upper byte
#pragma once

#include <array>
#include <bit>
#include <cstddef>

#include "ntkdefs.h"

namespace ntk::inflate {

using Entry = Ntk32u;

inline constexpr Entry takenMask = 0x3f;
inline constexpr Entry linkFlag = 1U << 6;
inline constexpr Entry endOfBlockFlag = 1U << 7;
inline constexpr Entry oneLiteral = 1U << 14;
inline constexpr Entry noLengthFlag = 1U << 13;
inline constexpr Entry exceptionFlag = 1U << 12;
inline constexpr Entry exceptionBits = exceptionFlag | noLengthFlag;

constexpr unsigned takenBits(Entry e) {
    return e & 0x3f;
}
constexpr unsigned codeBits(Entry e) {
    return (e >> 8) & 0xf;
}
constexpr unsigned literalsIn(Entry e) {
    return (e >> 14) & 3;
}
constexpr unsigned valueOf(Entry e) {
    return e >> 16;
}
constexpr bool isException(Entry e) {
    return (e & exceptionFlag) != 0;
}
constexpr bool isLink(Entry e) {
    return (e & linkFlag) != 0;
}
constexpr bool isEndOfBlock(Entry e) {
    return (e & endOfBlockFlag) != 0;
}
constexpr bool isInvalid(Entry e) {
    return (e & (exceptionFlag | linkFlag | endOfBlockFlag)) == exceptionFlag;
}
constexpr unsigned lowMask(unsigned bits) {
    return (1U << bits) - 1;
}

// The extra bits of a length or distance, which follow its code in `bits`. Its flags are clear, so
// that the bits of its code need no mask of their own.
constexpr unsigned extraOf(Entry e, Ntk64u bits) {
    return static_cast<unsigned>((bits & ((Ntk64u{1} << takenBits(e)) - 1)) >> ((e >> 8) & 0x3f));
}

inline constexpr unsigned shortestMatch = 3;
constexpr unsigned lengthWithExtra(Entry e, Ntk64u bits) {
    return (e >> 24) + shortestMatch + extraOf(e, bits);
}
// Of anything but a length.
constexpr unsigned valueWithExtra(Entry e, Ntk64u bits) {
    return valueOf(e) + extraOf(e, bits);
}

// A table as its users see it.
struct CodeTable {
    const Entry* entries;
    unsigned rootMask; // lowMask of the root bits

    constexpr Entry at(Ntk64u bits) const { return entries[bits & rootMask]; }
    // The entry that a link leads to; `bits` begins after the root's bits.
    constexpr Entry follow(Entry link, Ntk64u bits) const {
        return entries[valueOf(link) + (bits & lowMask(codeBits(link)))];
    }
};

inline constexpr unsigned maxCodeBits = 15;
inline constexpr unsigned maxSymbols = 288;

// Entries that a table may need. A subtable of 2^k entries holds at least k + 1 symbols because its
// code is complete; so subtables have at most 2^k / (k + 1) entries per symbol, which grows with k,
// and k is at most maxCodeBits - rootBits.
constexpr std::size_t entriesNeeded(std::size_t symbols, unsigned rootBits) {
    const unsigned k = maxCodeBits - rootBits;
    return (std::size_t{1} << rootBits) + (symbols << k) / (k + 1);
}

// The canonical order of a code (RFC 1951, 3.2.2): symbols by length, then by value.
struct CanonicalOrder {
    std::array<unsigned, maxCodeBits + 1> counts{}; // symbols of each length
    std::array<Ntk16u, maxSymbols> symbols{};
    unsigned unused = 1U << maxCodeBits; // part of the code space of 2^maxCodeBits
    bool isOversubscribed = false;

    constexpr CanonicalOrder(const Ntk8u* lengths, unsigned numSymbols) {
        std::array<unsigned, maxCodeBits + 1> oddCounts{};
        for (unsigned s = 0; s + 1 < numSymbols; s += 2) {
            ++counts[lengths[s]];
            ++oddCounts[lengths[s + 1]];
        }
        if (numSymbols % 2 != 0) {
            ++counts[lengths[numSymbols - 1]];
        }
        for (unsigned length = 0; length <= maxCodeBits; ++length) {
            counts[length] += oddCounts[length];
        }
        std::array<unsigned, maxCodeBits + 2> next{};
        unsigned used = 0;
        for (unsigned length = 1; length <= maxCodeBits; ++length) {
            next[length + 1] = next[length] + counts[length];
            used += counts[length] << (maxCodeBits - length);
        }
        isOversubscribed = used > unused;
        unused -= used;
        for (unsigned s = 0; s < numSymbols; ++s) {
            if (lengths[s] != 0) {
                symbols[next[lengths[s]]++] = static_cast<Ntk16u>(s);
            }
        }
    }

    constexpr unsigned longest() const {
        unsigned length = maxCodeBits;
        while (length > 0 && counts[length] == 0) {
            --length;
        }
        return length;
    }
};

// The lowest `length` bits of `code`, at most 16, in the reverse order. Without a loop, so that it
// takes the same few steps for each of the symbols of a table.
constexpr unsigned reversed(unsigned code, unsigned length) {
    code = (code & 0x5555) << 1 | (code >> 1 & 0x5555);
    code = (code & 0x3333) << 2 | (code >> 2 & 0x3333);
    code = (code & 0x0f0f) << 4 | (code >> 4 & 0x0f0f);
    code = (code & 0x00ff) << 8 | (code >> 8 & 0x00ff);
    return code >> (16 - length);
}

// Fills a table, symbol by symbol in canonical order.
class TableBuilder {
public:
    // symbolEntries: for each symbol its value and flags, with the number of its extra bits as
    // takenBits.
    constexpr TableBuilder(const CanonicalOrder& order, const Entry* symbolEntries, Entry* table,
                           unsigned rootBits)
        : m_order(order), m_symbolEntries(symbolEntries), m_table(table), m_rootBits(rootBits) {}

    constexpr void build() {
        fillRoot();
        fillSubtables();
    }

private:
    constexpr Entry takeSymbol(unsigned bits) {
        return m_symbolEntries[m_order.symbols[m_position++]] + (bits << 8) + bits;
    }

    // Its first bit lowest, as in the stream.
    constexpr unsigned takeCode(unsigned bits) { return reversed(m_code++, bits); }

    // Doubles the table for each length, which replicates all shorter codes, and enters the codes
    // of that length.
    constexpr void fillRoot() {
        for (unsigned length = 1; length <= m_rootBits; ++length) {
            const unsigned half = 1U << (length - 1);
            if (m_position > 0) {
                for (unsigned i = 0; i < half; ++i) {
                    m_table[half + i] = m_table[i];
                }
            }
            for (unsigned n = m_order.counts[length]; n > 0; --n) {
                m_table[takeCode(length)] = takeSymbol(length);
            }
            m_code <<= 1;
        }
    }

    constexpr void fillSubtables() {
        unsigned start = 1U << m_rootBits; // of the subtable being filled
        unsigned size = 0;
        unsigned prefix = ~0U;
        for (unsigned length = m_rootBits + 1; length <= maxCodeBits; ++length) {
            for (unsigned n = m_order.counts[length]; n > 0; --n) {
                const unsigned code = takeCode(length);
                if ((code & lowMask(m_rootBits)) != prefix) {
                    prefix = code & lowMask(m_rootBits);
                    start += size;
                    const unsigned indexBits = subtableBits(length, n);
                    size = 1U << indexBits;
                    m_table[prefix] =
                        (start << 16) | exceptionBits | linkFlag | (indexBits << 8) | m_rootBits;
                }
                const Entry entry = takeSymbol(length - m_rootBits);
                const unsigned step = 1U << (length - m_rootBits);
                for (unsigned i = code >> m_rootBits; i < size; i += step) {
                    m_table[start + i] = entry;
                }
            }
            m_code <<= 1;
        }
    }

    // Index bits of the subtable whose first code has this length, with `left` codes of this length
    // still to be entered: up to the length at which the remaining codes fill it.
    constexpr unsigned subtableBits(unsigned length, unsigned left) const {
        unsigned bits = length - m_rootBits;
        for (unsigned filled = left; filled < (1U << bits) && length < maxCodeBits; ++bits) {
            filled = 2 * filled + m_order.counts[++length];
        }
        return bits;
    }

    const CanonicalOrder& m_order;
    const Entry* m_symbolEntries;
    Entry* m_table;
    unsigned m_rootBits;
    unsigned m_position = 0; // in the canonical order
    unsigned m_code = 0;     // of the next symbol, its first bit highest
};

enum class Incomplete { isRefused, mayBeOneBit };

// Builds a table of entriesNeeded(numSymbols, maxRootBits) entries for the code with these lengths
// (0 to 15). Returns its root bits, 0 if there is no such code.
//
// An incomplete code is accepted only if `incomplete` allows it, and only with no symbol or with
// one of 1 bit; an unused bit pattern then has an invalid entry of 1 bit.
constexpr unsigned buildTable(const Ntk8u* lengths, unsigned numSymbols, Incomplete incomplete,
                              const Entry* symbolEntries, unsigned maxRootBits, Entry* table) {
    const CanonicalOrder order(lengths, numSymbols);
    if (order.isOversubscribed) {
        return 0;
    }
    const unsigned longest = order.longest();
    if (order.unused > 0) {
        if (incomplete == Incomplete::isRefused || longest > 1) {
            return 0;
        }
        constexpr Entry invalid = exceptionBits | (1U << 8) | 1U;
        table[0] = longest == 0 ? invalid : symbolEntries[order.symbols[0]] + (1U << 8) + 1U;
        table[1] = invalid;
        return 1;
    }
    const unsigned rootBits = longest < maxRootBits ? longest : maxRootBits;
    TableBuilder(order, symbolEntries, table, rootBits).build();
    return rootBits;
}

} // namespace ntk::inflate
