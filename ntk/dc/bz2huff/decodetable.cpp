#include "decodetable.h"

#include <algorithm>

namespace ntk::bz2huff {

bool DecodeTable::countLengths(const Ntk8u* lengths, int alphabet, int* counts) {
    for (int s = 0; s < alphabet; s++) {
        counts[lengths[s]]++;
    }
    m_maxLength = *std::max_element(lengths, lengths + alphabet);
    Ntk32u patterns = 0; // of maxCodeBits bits that begin with a code
    for (int length = 1; length <= maxCodeBits; length++) {
        patterns += static_cast<Ntk32u>(counts[length]) << (maxCodeBits - length);
    }
    return patterns <= 1U << maxCodeBits;
}

bool DecodeTable::build(const Ntk8u* lengths, int alphabet) {
    int counts[maxCodeBits + 1] = {};
    if (!countLengths(lengths, alphabet, counts)) {
        return false;
    }
    int next[maxCodeBits + 1];
    int code = 0;
    int index = 0;
    m_limit[0] = 0;
    for (int length = 1; length <= maxCodeBits; length++) {
        next[length] = index;
        m_firstIndex[length] = index - code;
        code += counts[length];
        index += counts[length];
        m_limit[length] = static_cast<Ntk32u>(code) << (maxCodeBits - length);
        code <<= 1;
    }
    for (int s = 0; s < alphabet; s++) {
        m_symbols[next[lengths[s]]++] = static_cast<Ntk16u>(s);
    }
    m_endOfBlock = alphabet - 1;
    fillLookup();
    return true;
}

// Canonical codes cover the patterns from the lowest to the highest.
void DecodeTable::fillLookup() {
    Ntk16u* at = m_lookup;
    int index = 0;
    for (int length = 1; length <= std::min(lookupBits, m_maxLength); length++) {
        const Ntk16u* const end = m_lookup + (m_limit[length] >> (maxCodeBits - lookupBits));
        while (at < end) {
            const int symbol = m_symbols[index++];
            const auto entry =
                static_cast<Ntk16u>(symbol == m_endOfBlock ? 0 : symbol << 5 | length);
            at = std::fill_n(at, 1 << (lookupBits - length), entry);
        }
    }
    std::fill(at, m_lookup + (1 << lookupBits), Ntk16u{0});
}

DecodeTable::Found DecodeTable::find(Ntk64u bits) const {
    const auto pattern = static_cast<Ntk32u>(bits >> (64 - maxCodeBits));
    for (int length = 1; length <= m_maxLength; length++) {
        if (pattern < m_limit[length]) {
            const auto code = static_cast<int>(pattern >> (maxCodeBits - length));
            return {m_symbols[m_firstIndex[length] + code], length};
        }
    }
    return {0, 0};
}

} // namespace ntk::bz2huff
