// The move-to-front list in vectors of 16: the first in a register, the others in memory.
#pragma once

#include <immintrin.h>

#include <cstring>

#include "ntkdefs.h"

namespace ntk::bz2 {

inline constexpr unsigned laneCount = 16;
inline constexpr unsigned listLength = 256;

// Loaded at laneCount - n - 1: all bits set in the lanes 0 to n.
alignas(16) inline constexpr Ntk8u lanesUpTo[2 * laneCount] = {
    0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff};

// Lives on the stack while a kernel runs: aligned, and the caller's block is read and written once.
class MtfList {
public:
    explicit MtfList(const Ntk8u list[listLength]) {
        std::memcpy(m_bytes, list, listLength);
        m_front = _mm_load_si128(at(0));
    }
    void store(Ntk8u list[listLength]) {
        _mm_store_si128(at(0), m_front);
        std::memcpy(list, m_bytes, listLength);
    }

    __m128i front() const { return m_front; }
    void setFront(__m128i front) { m_front = front; }
    Ntk8u frontByte() const { return lane0(m_front); }
    Ntk8u byteAt(unsigned position) const { return m_bytes[position]; } // beyond the front

    // Position of a byte that is not in the front; the last position if it is not in the list.
    unsigned findBehindFront(Ntk8u byte) const {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(byte));
        for (unsigned first = laneCount; first < listLength; first += laneCount) {
            const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_load_si128(at(first)), wanted));
            if (found != 0) {
                return first + static_cast<unsigned>(__builtin_ctz(static_cast<unsigned>(found)));
            }
        }
        return listLength - 1;
    }

    // Moves `byte` from `position` to the front of the list; those before it move back by one.
    void moveWithinFront(Ntk8u byte, unsigned position) {
        m_front = blend(m_front, shiftedIn(m_front, _mm_cvtsi32_si128(byte)), position);
    }
    void moveFromBehind(Ntk8u byte, unsigned position) {
        __m128i carry = _mm_srli_si128(m_front, laneCount - 1);
        m_front = shiftedIn(m_front, _mm_cvtsi32_si128(byte));
        unsigned first = laneCount;
        for (; first + laneCount <= position; first += laneCount) {
            const __m128i v = _mm_load_si128(at(first));
            _mm_store_si128(at(first), shiftedIn(v, carry));
            carry = _mm_srli_si128(v, laneCount - 1);
        }
        const __m128i v = _mm_load_si128(at(first));
        _mm_store_si128(at(first), blend(v, shiftedIn(v, carry), position % laneCount));
    }

    static Ntk8u lane0(__m128i v) { return static_cast<Ntk8u>(_mm_cvtsi128_si32(v)); }

private:
    const __m128i* at(unsigned position) const {
        return reinterpret_cast<const __m128i*>(m_bytes + position);
    }
    __m128i* at(unsigned position) { return reinterpret_cast<__m128i*>(m_bytes + position); }

    // carry: in lane 0, all others 0.
    static __m128i shiftedIn(__m128i v, __m128i carry) {
        return _mm_or_si128(_mm_slli_si128(v, 1), carry);
    }
    // The lanes 0 to last of `with`, the others of v.
    static __m128i blend(__m128i v, __m128i with, unsigned last) {
        const __m128i lanes =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(lanesUpTo + laneCount - 1 - last));
        return _mm_or_si128(_mm_and_si128(lanes, with), _mm_andnot_si128(lanes, v));
    }

    alignas(16) Ntk8u m_bytes[listLength];
    __m128i m_front;
};

} // namespace ntk::bz2
