// Table-driven CRC registers of 32 bits, eight bytes per step ("slicing by 8", M. Kounavis and
// F. Berry, 2005). Table k holds, for each byte, its contribution to the register after k more zero
// bytes, so that eight bytes are looked up side by side.
//
// The functions work on the raw register: complementing it before and after is up to the caller.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "ntkdefs.h"

namespace ntk {

static_assert(std::endian::native == std::endian::little);

using CrcTables = std::array<std::array<Ntk32u, 256>, 8>;

constexpr Ntk32u reflected(Ntk32u word) {
    Ntk32u r = 0;
    for (int i = 0; i < 32; ++i) {
        r = (r << 1) | ((word >> i) & 1U);
    }
    return r;
}

// Least significant bit first. Polynomials are always written most significant bit first.
template <Ntk32u polynomial> struct ReflectedCrc {
    static constexpr CrcTables tables = [] {
        CrcTables t{};
        for (Ntk32u byte = 0; byte < 256; ++byte) {
            Ntk32u crc = byte;
            for (int i = 0; i < 8; ++i) {
                crc = (crc >> 1) ^ ((crc & 1U) != 0 ? reflected(polynomial) : 0);
            }
            t[0][byte] = crc;
        }
        for (std::size_t k = 1; k < t.size(); ++k) {
            for (std::size_t byte = 0; byte < 256; ++byte) {
                const Ntk32u before = t[k - 1][byte];
                t[k][byte] = (before >> 8) ^ t[0][before & 0xff];
            }
        }
        return t;
    }();

    static Ntk32u update(Ntk32u crc, const Ntk8u* data, std::size_t length) {
        const CrcTables& t = tables;
        for (; length >= 8; data += 8, length -= 8) {
            Ntk32u low = 0;
            Ntk32u high = 0;
            std::memcpy(&low, data, 4);
            std::memcpy(&high, data + 4, 4);
            low ^= crc;
            crc = t[7][low & 0xff] ^ t[6][(low >> 8) & 0xff] ^ t[5][(low >> 16) & 0xff] ^
                  t[4][low >> 24] ^ t[3][high & 0xff] ^ t[2][(high >> 8) & 0xff] ^
                  t[1][(high >> 16) & 0xff] ^ t[0][high >> 24];
        }
        for (; length > 0; ++data, --length) {
            crc = (crc >> 8) ^ t[0][(crc ^ *data) & 0xff];
        }
        return crc;
    }
};

// Most significant bit first.
template <Ntk32u polynomial> struct ForwardCrc {
    static constexpr CrcTables tables = [] {
        CrcTables t{};
        for (Ntk32u byte = 0; byte < 256; ++byte) {
            Ntk32u crc = byte << 24;
            for (int i = 0; i < 8; ++i) {
                crc = (crc << 1) ^ ((crc >> 31) != 0 ? polynomial : 0);
            }
            t[0][byte] = crc;
        }
        for (std::size_t k = 1; k < t.size(); ++k) {
            for (std::size_t byte = 0; byte < 256; ++byte) {
                const Ntk32u before = t[k - 1][byte];
                t[k][byte] = (before << 8) ^ t[0][before >> 24];
            }
        }
        return t;
    }();

    static Ntk32u update(Ntk32u crc, const Ntk8u* data, std::size_t length) {
        const CrcTables& t = tables;
        for (; length >= 8; data += 8, length -= 8) {
            Ntk32u first = 0;
            Ntk32u second = 0;
            std::memcpy(&first, data, 4);
            std::memcpy(&second, data + 4, 4);
            first = __builtin_bswap32(first) ^ crc;
            second = __builtin_bswap32(second);
            crc = t[7][first >> 24] ^ t[6][(first >> 16) & 0xff] ^ t[5][(first >> 8) & 0xff] ^
                  t[4][first & 0xff] ^ t[3][second >> 24] ^ t[2][(second >> 16) & 0xff] ^
                  t[1][(second >> 8) & 0xff] ^ t[0][second & 0xff];
        }
        for (; length > 0; ++data, --length) {
            crc = (crc << 8) ^ t[0][(crc >> 24) ^ *data];
        }
        return crc;
    }
};

} // namespace ntk
