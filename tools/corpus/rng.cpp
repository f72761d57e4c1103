#include "rng.h"

#include <algorithm>

namespace corpus {

std::uint64_t Random::next() {
    m_state += 0x9E3779B97F4A7C15u;
    std::uint64_t z = m_state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

std::uint32_t Random::below(std::uint32_t bound) {
    return static_cast<std::uint32_t>(((next() >> 32) * bound) >> 32);
}

int Random::between(int first, int last) {
    return first + static_cast<int>(below(static_cast<std::uint32_t>(last - first + 1)));
}

bool Random::chance(int perMille) {
    return static_cast<int>(below(1000)) < perMille;
}

int Random::bell(int spread) {
    int sum = 0;
    for (int i = 0; i < 4; ++i) {
        sum += between(-spread, spread);
    }
    return sum;
}

RankPicker::RankPicker(std::size_t count, unsigned flatness) {
    // Large enough to tell the last ranks of a long list apart; the sum stays far below 2^32.
    constexpr std::uint32_t kUnit = 1u << 20;
    std::uint32_t sum = 0;
    m_cumulative.reserve(count);
    for (std::size_t rank = 0; rank < count; ++rank) {
        sum += flatness == 0 ? 1 : kUnit / static_cast<std::uint32_t>(rank + flatness);
        m_cumulative.push_back(sum);
    }
}

std::size_t RankPicker::pick(Random& random) const {
    const std::uint32_t draw = random.below(m_cumulative.back());
    const auto found = std::upper_bound(m_cumulative.begin(), m_cumulative.end(), draw);
    return static_cast<std::size_t>(found - m_cumulative.begin());
}

} // namespace corpus
