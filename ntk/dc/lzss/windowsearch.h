// The encoder's window and the search in it.
#pragma once

#include "tokens.h"

namespace ntk::lzss {

// A buffer of four windows. When it is full its last window moves to the start, and all positions
// are reduced accordingly: they fit 16 bits whatever the length of the data. 0 is no position.
//
// Positions are inserted once they have been passed and four bytes from them on are known. The same
// data and the same sequence of calls to find() and advance() give the same matches, however the
// data were split, provided that advance() is called only if lookahead() is at least maxMatch + 1
// or no more data are to come.
class MatchFinder {
public:
    void reset();

    // Bytes after the current position.
    Ntk32u lookahead() const { return m_end - m_pos; }
    const Ntk8u* current() const { return m_bytes + m_pos; }

    // Takes count bytes, or as many of them as there is room for; returns how many: at least one if
    // lookahead() is at most maxMatch.
    Ntk32u fill(const Ntk8u* bytes, Ntk32u count);

    // The match that saves most at the current position plus `ahead` (0 or 1, below lookahead());
    // length 0 for none.
    Match find(Ntk32u ahead);

    void advance(Ntk32u bytes) { m_pos += bytes; }

private:
    static constexpr Ntk32u window = maxDistance + 1;
    static constexpr Ntk32u size = 65536;
    static constexpr int hashBits4 = 15;
    static constexpr int hashBits3 = 13;

    void insertUpTo(Ntk32u position);
    void slide();
    Ntk16u& head4(Ntk32u position);
    Ntk16u& head3(Ntk32u position);

    Ntk32u m_pos;
    Ntk32u m_end;
    Ntk32u m_nextToInsert; // the first position not yet in the tables
    Ntk8u m_bytes[size + 8];
    Ntk16u m_head4[1 << hashBits4]; // latest position by the hash of four bytes
    Ntk16u m_head3[1 << hashBits3]; // latest position by the hash of three bytes
    Ntk16u m_chain[window];         // for each position, the previous one with its hash of four
};

// Bits that a match saves compared with literals.
constexpr int savedBits(Match m) {
    return m.length == 0 ? 0
                         : static_cast<int>(9 * m.length) - 1 - 8 * static_cast<int>(tokenBytes(m));
}

} // namespace ntk::lzss
