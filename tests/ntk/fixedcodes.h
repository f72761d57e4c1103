// Deflate's fixed codes, assigned in order of length and symbol (RFC 1951, 3.2.2 and 3.2.6).
#pragma once

#include "ntkdc.h"

struct FixedCodes {
    NtkHuffCode lit[288];
    NtkHuffCode dist[30];

    constexpr FixedCodes() : lit(), dist() {
        for (int symbol = 0; symbol < 288; ++symbol) {
            lit[symbol].len = static_cast<Ntk16u>(symbol < 144   ? 8
                                                  : symbol < 256 ? 9
                                                  : symbol < 280 ? 7
                                                                 : 8);
        }
        for (NtkHuffCode& code : dist) {
            code.len = 5;
        }
        assign(lit, 288);
        assign(dist, 30);
    }

    static constexpr void assign(NtkHuffCode* codes, int count) {
        unsigned next = 0;
        for (unsigned len = 1; len <= 15; ++len, next <<= 1) {
            for (int symbol = 0; symbol < count; ++symbol) {
                if (codes[symbol].len == len) {
                    codes[symbol].code = reversed(next++, len);
                }
            }
        }
    }
    static constexpr Ntk16u reversed(unsigned code, unsigned len) {
        unsigned result = 0;
        for (; len > 0; --len, code >>= 1) {
            result = result << 1 | (code & 1);
        }
        return static_cast<Ntk16u>(result);
    }
};

inline constexpr FixedCodes fixedCodes;
