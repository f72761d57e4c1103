#include "blockreader.h"

namespace ntk::lz4 {

bool BlockReader::extend(std::size_t& length) {
    constexpr std::size_t longest = 15;
    if (length < longest) {
        return true;
    }
    Ntk8u more = 255;
    while (more == 255) {
        if (left() == 0) {
            return false;
        }
        more = m_block[m_position++];
        length += more;
    }
    return true;
}

bool BlockReader::next(Sequence& sequence) {
    constexpr std::size_t minMatch = 4;
    if (left() == 0) {
        return false;
    }
    const Ntk8u token = m_block[m_position++];
    sequence.literalLength = token >> 4;
    if (!extend(sequence.literalLength) || left() < sequence.literalLength) {
        return false;
    }
    sequence.literals = m_block + m_position;
    m_position += sequence.literalLength;
    sequence.offset = 0;
    sequence.matchLength = 0;
    if (left() == 0) {
        return true;
    }
    if (left() < 2) {
        return false;
    }
    sequence.offset = m_block[m_position] | static_cast<std::size_t>(m_block[m_position + 1]) << 8;
    m_position += 2;
    std::size_t length = token & 15;
    if (sequence.offset == 0 || !extend(length)) {
        return false;
    }
    sequence.matchLength = length + minMatch;
    return true;
}

} // namespace ntk::lz4
