#pragma once

#include <cmath>
#include <cstdint>

#include <algorithm>
#include <type_traits>

#include "kxelement.h"

// The generator behind random fills: SplitMix64, a counter stepped by an odd constant and mixed by
// two multiply-and-shift rounds. Every seed starts another stream, and a draw costs few clocks.
class kxRandom {
public:
    explicit kxRandom(unsigned seed) : m_state(seed) {}

    std::uint64_t bits() {
        std::uint64_t z = m_state += 0x9e3779b97f4a7c15ULL;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    double unit() { return static_cast<double>(bits() >> 11) * 0x1p-53; } // in [0, 1)

private:
    std::uint64_t m_state;
};

// Values of T from [low, high], both included for integers (for which the whole numbers between
// count, or low cut towards zero where there is none).
template <class T> class kxRange {
public:
    kxRange(double low, double high) {
        if (low > high) {
            std::swap(low, high);
        }
        if constexpr (std::is_floating_point_v<T>) {
            m_low = kxSaturate<T>(low);
            m_high = kxSaturate<T>(high);
        } else {
            m_low = kxSaturate<T>(std::ceil(low));
            m_high = kxSaturate<T>(std::floor(high));
            if (m_low > m_high) {
                m_low = m_high = kxSaturate<T>(low);
            }
        }
    }

    T draw(kxRandom& random) const {
        if constexpr (std::is_floating_point_v<T>) {
            // Weighted ends rather than a scaled difference, which could overflow.
            const double part = random.unit();
            const double value = m_low * (1.0 - part) + m_high * part;
            return std::clamp(static_cast<T>(value), m_low, m_high);
        } else {
            // Modulo 2^64 throughout: the width is exact also for signed ends far apart, and 0
            // when every pattern of 64 bits is wanted.
            // NOLINTNEXTLINE(bugprone-signed-char-misuse): with its sign
            const auto first = static_cast<std::uint64_t>(m_low);
            const std::uint64_t width = static_cast<std::uint64_t>(m_high) - first + 1;
            const std::uint64_t bits = random.bits();
            return static_cast<T>(width == 0 ? bits : first + scaled(bits, width));
        }
    }

private:
    __extension__ using uint128 = unsigned __int128;
    // bits as a fraction of 2^64, times width: cheaper than a remainder.
    static std::uint64_t scaled(std::uint64_t bits, std::uint64_t width) {
        return static_cast<std::uint64_t>(static_cast<uint128>(bits) * width >> 64);
    }

    T m_low, m_high;
};
