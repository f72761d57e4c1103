// The effort that each level of the match search spends.
#pragma once

#include <array>

#include "matchfinder.h"

namespace ntk::deflate {

struct Effort {
    SearchLimits limits;
    int insertLength; // of longer matches only two positions are inserted; in a lazy search only if
                      // they repeat themselves
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
    {{9, 20}, maxMatch - 2, 4, 4},
    {{25, 32}, maxMatch - 2, 12, 5},
    {{92, 128}, maxMatch - 2, 16, 7},
    {{112, 128}, maxMatch - 2, 24, 12},
    {{256, maxMatch}, maxMatch, maxMatch, 64},
    {{1536, maxMatch}, maxMatch, maxMatch, 32},
}};

} // namespace ntk::deflate
