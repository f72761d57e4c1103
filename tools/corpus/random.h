#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace corpus {

// Pseudo-random numbers that are the same on every machine, unlike the standard distributions: a
// counter whose value is scrambled by shifts and multiplications (SplitMix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    int below(int bound) { // from 0; bound is at least 1
        std::uint64_t z = m_state += 0x9E3779B97F4A7C15u;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return static_cast<int>(((z ^ (z >> 31)) >> 32) * static_cast<std::uint64_t>(bound) >> 32);
    }
    bool chance(int perMille) { return below(1000) < perMille; }

private:
    std::uint64_t m_state;
};

// Draws from 1 to limit by Zipf's law, in whole numbers: the chances are equal within an octave
// (1, 2..3, 4..7, ...), and each octave has tilt/1000 times the chance of the one before. A tilt of
// 1000 spreads the logarithm evenly, which is Zipf's exponent 1; a larger one prefers large
// numbers. The sums are good for limits up to 2^17 with tilts up to 1500.
class Zipf {
public:
    explicit Zipf(int limit, int tilt = 1000) : m_limit(limit) {
        std::int64_t weight = 1 << 16;
        for (int first = 1, sum = 0; first <= limit; first *= 2) {
            sum += std::max(1, static_cast<int>(weight * sizeOf(first) / first));
            m_sums.push_back(sum);
            weight = weight * tilt / 1000;
        }
    }

    int draw(Random& random) const {
        const int drawn = random.below(m_sums.back());
        const auto found = std::upper_bound(m_sums.begin(), m_sums.end(), drawn);
        const int first = 1 << (found - m_sums.begin());
        return first + random.below(sizeOf(first));
    }

private:
    int sizeOf(int first) const { return std::min(first, m_limit - first + 1); } // of its octave

    int m_limit;
    std::vector<int> m_sums; // of the chances of the octaves up to this one
};

} // namespace corpus
