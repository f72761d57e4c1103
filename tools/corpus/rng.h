#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corpus {

// Pseudo-random numbers that are the same on every machine: a 64-bit counter whose value is
// scrambled by shifts and multiplications (SplitMix64). The standard distributions are left
// alone on purpose, because each standard library draws them in its own way.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t next();

    // A number from 0 to bound - 1; bound must not be 0.
    std::uint32_t below(std::uint32_t bound);

    // A number from first to last, both included.
    int between(int first, int last);

    // True in perMille of a thousand calls.
    bool chance(int perMille);

    // Bell-shaped noise around 0, within +-4 * spread: the sum of four even draws.
    int bell(int spread);

    template <typename T> const T& pick(const std::vector<T>& items) {
        return items[below(static_cast<std::uint32_t>(items.size()))];
    }

private:
    std::uint64_t m_state;
};

// Draws ranks 0 .. count-1 with a chance proportional to 1 / (rank + flatness) (Zipf's law as
// Mandelbrot shifted it): flatness 1 makes the first rank reign, a large one levels the list.
// Flatness 0 stands for "all alike".
class RankPicker {
public:
    RankPicker(std::size_t count, unsigned flatness);

    std::size_t pick(Random& random) const;

private:
    std::vector<std::uint32_t> m_cumulative;
};

} // namespace corpus
