#include "dynamiccodes.h"

#include <algorithm>
#include <functional>
#include <queue>
#include <utility>
#include <vector>

#include "fixedcodes.h"

namespace {

using Frequencies = std::vector<Ntk64u>;
using Lengths = std::vector<unsigned>;

constexpr std::size_t endSymbol = 256;

// Depths in Huffman's tree; unused symbols have none.
Lengths depthsOf(const Frequencies& frequencies) {
    using Node = std::pair<Ntk64u, std::size_t>;
    std::priority_queue<Node, std::vector<Node>, std::greater<>> nodes;
    for (std::size_t i = 0; i < frequencies.size(); ++i) {
        if (frequencies[i] > 0) {
            nodes.emplace(frequencies[i], i);
        }
    }
    Lengths depths(frequencies.size(), 0);
    if (nodes.size() == 1) {
        depths[nodes.top().second] = 1;
        return depths;
    }
    std::vector<std::size_t> parents(2 * frequencies.size(), 0);
    std::size_t next = frequencies.size();
    for (; nodes.size() > 1; ++next) {
        Ntk64u sum = 0;
        for (int child = 0; child < 2; ++child) {
            sum += nodes.top().first;
            parents[nodes.top().second] = next;
            nodes.pop();
        }
        nodes.emplace(sum, next);
    }
    for (std::size_t i = 0; i < frequencies.size(); ++i) {
        for (std::size_t at = i; frequencies[i] > 0 && at + 1 != next; at = parents[at]) {
            ++depths[i];
        }
    }
    return depths;
}

// Halves the frequencies until no code is too long: a little longer than the best codes.
Lengths lengthsOf(Frequencies frequencies, unsigned longest) {
    for (;;) {
        Lengths lengths = depthsOf(frequencies);
        if (*std::max_element(lengths.begin(), lengths.end()) <= longest) {
            return lengths;
        }
        for (Ntk64u& frequency : frequencies) {
            frequency = (frequency + 1) / 2;
        }
    }
}

// The symbols that describe the lengths, and the extra bits of those that stand for runs.
unsigned countRuns(const Lengths& lengths, Frequencies& symbols) {
    unsigned extraBits = 0;
    for (std::size_t i = 0; i < lengths.size();) {
        std::size_t run = 1;
        while (i + run < lengths.size() && lengths[i + run] == lengths[i]) {
            ++run;
        }
        if (lengths[i] == 0 && run >= 3) {
            run = std::min<std::size_t>(run, 138);
            ++symbols[run > 10 ? 18 : 17];
            extraBits += run > 10 ? 7 : 3;
        } else if (i > 0 && lengths[i] == lengths[i - 1] && run >= 3) {
            run = std::min<std::size_t>(run, 6);
            ++symbols[16];
            extraBits += 2;
        } else {
            run = 1;
            ++symbols[lengths[i]];
        }
        i += run;
    }
    return extraBits;
}

unsigned headerBitsOf(const Lengths& lit, const Lengths& dist) {
    Lengths both = lit;
    both.insert(both.end(), dist.begin(), dist.end());
    Frequencies symbols(19, 0);
    unsigned bits = 3 + 5 + 5 + 4 + countRuns(both, symbols);
    const Lengths lengths = lengthsOf(symbols, 7);
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        bits += static_cast<unsigned>(symbols[i]) * lengths[i];
    }
    return bits + 3 * 19; // at most: the last lengths of 0 may be left out
}

template <std::size_t count>
void assign(std::array<NtkHuffCode, count>& codes, const Lengths& lengths) {
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        codes[i].len = static_cast<Ntk16u>(lengths[i]);
    }
    FixedCodes::assign(codes.data(), static_cast<int>(count));
}

} // namespace

DynamicCodes dynamicCodes(const Ntk32u* litFreq, const Ntk32u* distFreq) {
    Frequencies lit(litFreq, litFreq + 286);
    lit[endSymbol] = 1;
    const Lengths litLengths = lengthsOf(std::move(lit), 15);
    const Lengths distLengths = lengthsOf(Frequencies(distFreq, distFreq + 30), 15);
    DynamicCodes codes{};
    assign(codes.lit, litLengths);
    assign(codes.dist, distLengths);
    codes.headerBits = headerBitsOf(litLengths, distLengths);
    codes.endBits = litLengths[endSymbol];
    return codes;
}
