// The caller's buffer of the forward transform, cut into what the sorts need.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ntkdefs.h"

namespace ntk::bwt {

// Longest text: the inverse packs a row and a byte into 32 bits.
constexpr int maxTextLen = 1 << 24;

// Bytes after the doubled text that sorts may read, so that whole words can be loaded anywhere.
constexpr std::size_t textPadding = 64;

constexpr std::size_t pairCount = 65536;

// A B*-rotation, with the part of it that is being compared.
struct BStar {
    Ntk64u key;
    Ntk32u position; // where in the text the rotation begins
    Ntk32u index;    // its number among the B*-rotations, by position
};

// Consecutive B*-rotations in sorted order: first to end - 1.
struct Range {
    Ntk32u first;
    Ntk32u end;

    Ntk32u size() const { return end - first; }
};

// Allocates aligned arrays from a buffer or, starting from null, computes the size needed.
class Arena {
public:
    explicit Arena(Ntk8u* buffer) : m_next(reinterpret_cast<std::uintptr_t>(buffer)) {}

    template <class T> T* allocate(std::size_t count) {
        m_next = (m_next + alignment - 1) & ~(alignment - 1);
        T* const piece = reinterpret_cast<T*>(m_next);
        m_next += count * sizeof(T);
        return piece;
    }

    // Starting from null: bytes needed for what was allocated, in a buffer of any alignment.
    std::size_t bytesNeeded() const { return m_next + alignment; }

private:
    static constexpr std::uintptr_t alignment = 64;

    std::uintptr_t m_next;
};

// All arrays for a text of n bytes. At most every second rotation is of type B*.
struct Workspace {
    Workspace(Arena& arena, std::size_t n)
        : text(arena.allocate<Ntk8u>(2 * n + textPadding)), rows(arena.allocate<Ntk32u>(n)),
          pairs(arena.allocate<Ntk32u>(pairCount)), bStars(arena.allocate<BStar>(n / 2 + 1)),
          positions(arena.allocate<Ntk32u>(n / 2 + 1)), next(arena.allocate<Ntk32u>(n / 2 + 1)),
          nextOfNext(arena.allocate<Ntk32u>(n / 2 + 1)), ranks(arena.allocate<Ntk32u>(n / 2 + 1)),
          groups(arena.allocate<Range>(n / 4 + 1)), nextGroups(arena.allocate<Range>(n / 4 + 1)) {}

    Ntk8u* text;   // the text twice in a row
    Ntk32u* rows;  // positions of the sorted rotations
    Ntk32u* pairs; // a counter or index for each two-byte prefix
    BStar* bStars;
    Ntk32u* positions; // of the B*-rotations, ascending
    Ntk32u* next;      // B*-rotation in which each one's B*-substring ends, see bstarsort.h
    Ntk32u* nextOfNext;
    Ntk32u* ranks;
    Range* groups;
    Range* nextGroups;
};

} // namespace ntk::bwt
