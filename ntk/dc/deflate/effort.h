// What the levels of the match search spend.
#pragma once

#include <array>

#include "matchfinder.h"

namespace ntk::deflate {

struct Effort {
    SearchLimits limits;
    int insertLength; // of longer matches a greedy search inserts only the last positions
    int lazyLength;   // a shorter match waits for a better one at the next position; 0: none does
    int goodLength;   // while one this long waits, the next search has a quarter of the candidates
};

// By level less 1. Each level was seen to make a corpus of texts, programs, tables and pictures
// smaller than the level before, and to take longer.
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
