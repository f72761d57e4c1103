// Writes bits to bytes, most significant bit first.
#pragma once

#include "format.h"

namespace ntk::bz2huff {

// Fewer than 8 bits are pending while there is room for bytes, at most 32 when there is none.
class MsbWriter {
public:
    MsbWriter(Ntk64u pending, int pendingBits, Ntk8u* dst, int capacity)
        : m_bits(pending), m_count(pendingBits), m_out(dst), m_end(dst + capacity), m_start(dst) {}

    // Writes whole pending bytes while there is room; returns whether fewer than 8 bits are left.
    bool drain() {
        while (m_count >= 8 && m_out < m_end) {
            *m_out++ = static_cast<Ntk8u>(m_bits >> 56);
            m_bits <<= 8;
            m_count -= 8;
        }
        return m_count < 8;
    }

    // Writes up to 24 bits. False, with nothing written, if whole bytes are still waiting for room.
    bool put(Ntk32u bits, Ntk32u length) {
        if (!drain()) {
            return false;
        }
        append(bits, length);
        drain();
        return true;
    }

    std::ptrdiff_t room() const { return m_end - m_out; }
    // Without a check of the room: append up to 63 bits, pending ones included, then store, which
    // writes 8 bytes.
    void append(Ntk32u bits, Ntk32u length) {
        m_count += static_cast<int>(length);
        m_bits |= Ntk64u{bits} << (64 - m_count);
    }
    void store() {
        const Ntk64u bigEndian = __builtin_bswap64(m_bits);
        __builtin_memcpy(m_out, &bigEndian, sizeof bigEndian);
        m_out += m_count >> 3;
        m_bits <<= m_count & ~7;
        m_count &= 7;
    }

    // Stores the pending bits and the length written in the caller's arguments.
    void saveTo(Ntk32u* pCode, int* pCodeLenBits, int* pWritten) const {
        *pCode = static_cast<Ntk32u>(m_bits >> 32);
        *pCodeLenBits = m_count;
        *pWritten = static_cast<int>(m_out - m_start);
    }

private:
    Ntk64u m_bits; // the pending ones at the top, 0 below
    int m_count;
    Ntk8u* m_out;
    Ntk8u* m_end;
    Ntk8u* m_start;
};

} // namespace ntk::bz2huff
