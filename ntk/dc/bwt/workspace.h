// The caller's buffer of the forward transform, cut into what the sorts need.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ntkdefs.h"

namespace ntk::bwt {

// Longest text. The inverse packs a row and a byte into 32 bits.
constexpr int maxTextLen = 1 << 24;

// Bytes behind the doubled text that sorts may read, so that whole words can be loaded anywhere.
constexpr std::size_t textPadding = 64;

constexpr std::size_t pairCount = 65536;

// A rotation to be sorted, with the part of it that is being compared.
struct Star {
    Ntk64u key;
    Ntk32u position; // where in the text the rotation begins
    Ntk32u index;    // its number among the stars, by position
};

// A stretch of stars in sorted order: first to end - 1.
struct Range {
    Ntk32u first;
    Ntk32u end;

    Ntk32u size() const { return end - first; }
};

// Gives out aligned pieces of a buffer, or, starting from null, finds out the size needed.
class Carver {
public:
    explicit Carver(Ntk8u* buffer) : m_next(reinterpret_cast<std::uintptr_t>(buffer)) {}

    template <class T> T* take(std::size_t count) {
        m_next = (m_next + alignment - 1) & ~(alignment - 1);
        T* const piece = reinterpret_cast<T*>(m_next);
        m_next += count * sizeof(T);
        return piece;
    }

    // End of what was taken; from null, the bytes taken. The buffer itself may lie anywhere, which
    // costs up to another alignment.
    std::size_t endFromNull() const { return m_next + alignment; }

private:
    static constexpr std::uintptr_t alignment = 64;

    std::uintptr_t m_next;
};

// All the pieces for a text of n bytes. At most every second rotation is a star.
struct Workspace {
    Workspace(Carver& c, std::size_t n)
        : text(c.take<Ntk8u>(2 * n + textPadding)), rows(c.take<Ntk32u>(n)),
          pairs(c.take<Ntk32u>(pairCount)), stars(c.take<Star>(n / 2 + 1)),
          positions(c.take<Ntk32u>(n / 2 + 1)), next(c.take<Ntk32u>(n / 2 + 1)),
          nextOfNext(c.take<Ntk32u>(n / 2 + 1)), ranks(c.take<Ntk32u>(n / 2 + 1)),
          ties(c.take<Range>(n / 4 + 1)), moreTies(c.take<Range>(n / 4 + 1)) {}

    Ntk8u* text;   // the text twice in a row
    Ntk32u* rows;  // positions of the sorted rotations
    Ntk32u* pairs; // one counter or index for each two-byte beginning
    Star* stars;
    Ntk32u* positions; // of the stars, ascending
    Ntk32u* next;      // what follows each star's compared part, see starsort.h
    Ntk32u* nextOfNext;
    Ntk32u* ranks;
    Range* ties;
    Range* moreTies;
};

} // namespace ntk::bwt
