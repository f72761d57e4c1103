// Reads bits from bytes, most significant bit first.
#pragma once

#include <algorithm>

#include "format.h"

namespace ntk::bz2huff {

class MsbReader {
public:
    MsbReader(Ntk64u pending, int pendingBits, const Ntk8u* src, int srcLen)
        : m_bits(pending), m_count(pendingBits), m_at(src), m_end(src + srcLen), m_start(src) {}

    // Refills to at least 56 bits, or to the end of the source.
    void refill() {
        if (remaining() >= 8) {
            refillFast();
            return;
        }
        while (m_count <= 56 && m_at < m_end) {
            m_bits |= Ntk64u{*m_at++} << (56 - m_count);
            m_count += 8;
        }
    }
    // The same if at least 8 bytes remain. Bits below the count may be set: they are the ones that
    // follow, and the next refill sets them again.
    void refillFast() {
        Ntk64u bigEndian;
        __builtin_memcpy(&bigEndian, m_at, sizeof bigEndian);
        m_bits |= __builtin_bswap64(bigEndian) >> m_count;
        m_at += (63 - m_count) >> 3;
        m_count |= 56;
    }

    std::ptrdiff_t remaining() const { return m_end - m_at; }
    Ntk64u bits() const { return m_bits; } // the next ones at the top, then 0 or those that follow
    int count() const { return m_count; }
    void skip(int bits) {
        m_bits <<= bits;
        m_count -= bits;
    }

    // The next bits (1 to 32) as a number. 0 at the end of the source; failed() is then true.
    Ntk32u take(int bits) {
        if (m_count < bits) {
            refill();
        }
        if (m_count < bits) {
            m_failed = true;
            return 0;
        }
        const auto value = static_cast<Ntk32u>(m_bits >> (64 - bits));
        skip(bits);
        return value;
    }
    bool failed() const { return m_failed; }

    // Returns unused whole bytes to the source, as far as they came from it.
    void unreadBytes() {
        const auto unused = std::min<std::ptrdiff_t>(m_count >> 3, m_at - m_start);
        m_at -= unused;
        m_count -= static_cast<int>(8 * unused);
    }
    // Stores the position and the bits left, at most 32, in the caller's arguments.
    void saveTo(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc, int* pSrcLen) const {
        *pCode = m_count == 0 ? 0 : static_cast<Ntk32u>(m_bits >> (64 - m_count) << (32 - m_count));
        *pCodeLenBits = m_count;
        *ppSrc += m_at - m_start;
        *pSrcLen -= static_cast<int>(m_at - m_start);
    }

private:
    Ntk64u m_bits;
    int m_count;
    const Ntk8u* m_at;
    const Ntk8u* m_end;
    const Ntk8u* m_start;
    bool m_failed = false;
};

} // namespace ntk::bz2huff
