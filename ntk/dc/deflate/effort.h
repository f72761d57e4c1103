// The effort that each level of the match search spends.
#pragma once

#include <array>

#include "matchfinder.h"

namespace ntk::deflate {

struct Effort {
    SearchLimits limits;
    int insertLength; // a greedy search inserts two positions of longer matches
    int lazyLength; // a shorter match is deferred for a better one at the next position; 0: greedy
    int goodLength; // with a match this long deferred, the next search tries a quarter of the
                    // candidates
};

// By level minus 1. Measured: no stream is longer than zlib's at the same level; each level makes a
// corpus of texts, programs, tables and pictures smaller than the level before, and takes longer.
inline constexpr std::array<Effort, 9> efforts = {{
    {{2, 16}, 0, 0, 0},
    {{4, 16}, 4, 0, 0},
    {{8, 24}, 16, 0, 0},
    {{9, 20}, maxMatch, 4, 4},
    {{24, 32}, maxMatch, 16, 5},
    {{92, 128}, maxMatch, 16, 7},
    {{96, 128}, maxMatch, 24, 12},
    {{256, maxMatch}, maxMatch, maxMatch, 64},
    {{1536, maxMatch}, maxMatch, maxMatch, 32},
}};

} // namespace ntk::deflate
