// The bits of a source, least significant bit of each byte first.
#pragma once

#include <bit>
#include <cstddef>
#include <cstring>

#include "ntkdefs.h"

namespace ntk::inflate {

static_assert(std::endian::native == std::endian::little, "words are loaded as they are");

inline Ntk64u load64(const Ntk8u* bytes) {
    Ntk64u word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// n: at most 63.
constexpr Ntk64u lowBits(Ntk64u bits, Ntk64u n) {
    return bits & ~(~Ntk64u{0} << n);
}

// Invariant: `bits` holds `count` bits that were taken from the source; the bits above them are
// either 0 or those that follow in the source at `next`.
struct BitReader {
    const Ntk8u* begin;
    const Ntk8u* next;
    const Ntk8u* end;
    Ntk64u bits;
    unsigned count;

    // Whether there are n bits, at most 56, after a refill from the source if needed.
    bool has(unsigned n) {
        if (count < n) {
            refill();
        }
        return count >= n;
    }

    Ntk64u take(unsigned n) {
        const Ntk64u taken = lowBits(bits, n);
        drop(n);
        return taken;
    }

    void drop(unsigned n) {
        bits >>= n;
        count -= n;
    }

    // Refills to 56 bits or more, or to the end of the source.
    void refill() {
        if (end - next >= 8) {
            refillWide();
        }
        while (count < 56 && next < end) {
            bits |= Ntk64u{*next++} << count;
            count += 8;
        }
    }

    // Refills to 56 to 63 bits. Reads 8 bytes of the source and takes those that fit.
    void refillWide() {
        bits |= load64(next) << count;
        next += 7;
        next -= count >> 3;
        count |= 56;
    }

    // Returns whole bytes to this call's source; keeps only bits that are counted.
    void unreadBytes() {
        const auto taken = static_cast<std::size_t>(next - begin);
        const std::size_t bytes = count / 8 < taken ? count / 8 : taken;
        next -= bytes;
        count -= static_cast<unsigned>(8 * bytes);
        bits = lowBits(bits, count);
    }
};

} // namespace ntk::inflate
