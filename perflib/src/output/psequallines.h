#pragma once

#include <cstdint>
#include <vector>

#include "psstring.h"

// Watches lines for two that begin with equal cells. Of a line it keeps a hash of 96 bits and the
// number, 16 bytes: a test may have a million combinations, and that one pair of them is taken for
// equal by mistake is as likely as 1 to 10^17.
class psEqualLines {
public:
    struct Pair {
        int first, second; // line numbers; 0 when there is no pair
    };

    void clear() { m_lines = {}; }
    bool empty() const { return m_lines.empty(); }
    void add(int number, const psString* cells, int count); // numbers ascend
    // The pair that comes first when every line is compared with all later ones in order.
    Pair firstPair() const;

private:
    struct Line {
        std::uint64_t hash;
        std::uint32_t moreHash;
        int number;
        bool equals(const Line& o) const { return hash == o.hash && moreHash == o.moreHash; }
    };
    std::vector<Line> m_lines;
};
