// The effort that each level of the match search spends.
#pragma once

#include <array>

#include "matchfinder.h"

namespace ntk::deflate {

struct Effort {
    SearchLimits limits;
    int insertLength; // a greedy search inserts only the last positions of longer matches
    int lazyLength; // a shorter match is deferred for a better one at the next position; 0: greedy
    int goodLength; // with a match this long deferred, the next search tries a quarter of the
                    // candidates
};

// By level minus 1. Measured: each level makes a corpus of texts, programs, tables and pictures
// smaller than the level before, and takes longer.
inline constexpr std::array<Effort, 9> efforts = {{
    {{2, 16}, 8, 0, 0},
    {{6, 16}, 32, 0, 0},
    {{16, 32}, maxMatch, 0, 0},
    {{16, 32}, maxMatch, 8, 4},
    {{24, 48}, maxMatch, 16, 8},
    {{48, 128}, maxMatch, 16, 8},
    {{96, 128}, maxMatch, 32, 16},
    {{256, maxMatch}, maxMatch, 128, 32},
    {{2048, maxMatch}, maxMatch, maxMatch, 64},
}};

} // namespace ntk::deflate
