#include "codelengths.h"

#include <algorithm>

namespace ntk::bz2huff {

namespace {

constexpr int symbolBits = 9;
constexpr Ntk32u symbolMask = (1U << symbolBits) - 1;

// Frequency in the high bits and symbol in the low ones, so that sorting orders by frequency.
using Leaf = Ntk32u;

// The tree is built in one array: nodes are created in the order of their weights, so the two
// lightest of all are always at the front of the unused leaves or of the unused nodes. weights[n]
// becomes the index of n's parent once n has one; the last node is the root. (Moffat and
// Katajainen, In-place calculation of minimum-redundancy codes, 1995.)
void buildTree(Ntk32u* weights, int leaves) {
    int leaf = 0;
    int node = 0;
    for (int made = 0; made < leaves - 1; made++) {
        const auto takeLightest = [&] {
            if (leaf >= leaves || (node < made && weights[node] < weights[leaf])) {
                const Ntk32u weight = weights[node];
                weights[node++] = static_cast<Ntk32u>(made);
                return weight;
            }
            return weights[leaf++];
        };
        const Ntk32u first = takeLightest();
        weights[made] = first + takeLightest();
    }
}

// Replaces the parents of the inner nodes by the depth of each leaf, the lightest leaf first.
void depthsOfLeaves(Ntk32u* parents, int leaves) {
    int inner = leaves - 2; // the root
    parents[inner] = 0;
    for (int n = inner - 1; n >= 0; n--) {
        parents[n] = parents[parents[n]] + 1;
    }
    int out = leaves - 1;
    int places = 1; // on this level
    for (Ntk32u depth = 0; places > 0; depth++) {
        int innerHere = 0;
        while (inner >= 0 && parents[inner] == depth) {
            innerHere++;
            inner--;
        }
        for (; places > innerHere; places--) {
            parents[out--] = depth;
        }
        places = 2 * innerHere;
    }
}

// Computes the lengths for the frequencies of the leaves; returns the longest one.
int lengthsFor(const Leaf* sorted, int alphabet, Ntk8u* lengths) {
    Ntk32u depths[maxAlphabet];
    for (int i = 0; i < alphabet; i++) {
        depths[i] = sorted[i] >> symbolBits;
    }
    buildTree(depths, alphabet);
    depthsOfLeaves(depths, alphabet);
    for (int i = 0; i < alphabet; i++) {
        lengths[sorted[i] & symbolMask] = static_cast<Ntk8u>(depths[i]);
    }
    return static_cast<int>(depths[0]);
}

} // namespace

void makeCodeLengths(const int* frequencies, int alphabet, Ntk8u* lengths) {
    if (alphabet == 1) {
        lengths[0] = 1;
        return;
    }
    Leaf leaves[maxAlphabet];
    for (int s = 0; s < alphabet; s++) {
        const auto frequency = static_cast<Ntk32u>(std::max(frequencies[s], 1));
        leaves[s] = frequency << symbolBits | static_cast<Ntk32u>(s);
    }
    std::sort(leaves, leaves + alphabet);
    // Halving makes the frequencies more alike until no code is too long. Their order is kept.
    while (lengthsFor(leaves, alphabet, lengths) > maxEncodedCodeBits) {
        for (int i = 0; i < alphabet; i++) {
            const Leaf halved = (leaves[i] >> symbolBits) / 2 + 1;
            leaves[i] = halved << symbolBits | (leaves[i] & symbolMask);
        }
    }
}

void makeCodes(const Ntk8u* lengths, int alphabet, Code* codes) {
    Ntk32u next = 0;
    for (Ntk32u length = 1; length <= maxEncodedCodeBits; length++) {
        for (int s = 0; s < alphabet; s++) {
            if (lengths[s] == length) {
                codes[s] = {next++, length};
            }
        }
        next <<= 1;
    }
}

} // namespace ntk::bz2huff
