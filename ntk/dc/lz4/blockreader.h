// Iterates over the sequences of an LZ4 block without decoding them.
#pragma once

#include <cstddef>

#include "ntkdefs.h"

namespace ntk::lz4 {

struct Sequence {
    const Ntk8u* literals;
    std::size_t literalLength;
    std::size_t offset;      // distance back to the match
    std::size_t matchLength; // 0 in the last sequence of a block, which has no match
};

class BlockReader {
public:
    BlockReader(const Ntk8u* block, std::size_t length) : m_block(block), m_length(length) {}

    // Reads the next sequence. False at the end of the block, and for a sequence that exceeds the
    // block or has an offset of 0.
    bool next(Sequence& sequence);

    // Bytes of the block read so far.
    std::size_t position() const { return m_position; }

private:
    // Reads the bytes that extend a length of 15 in the token.
    bool extend(std::size_t& length);

    std::size_t left() const { return m_length - m_position; }

    const Ntk8u* m_block;
    std::size_t m_length;
    std::size_t m_position = 0;
};

} // namespace ntk::lz4
