#include "words.h"

#include <cstring>
#include <utility>

namespace ntk::bwt {

namespace {

// Divides the length by p as long as the text is a power of its first len / p bytes.
int dividedBy(int p, const Ntk8u* text, int len) {
    while (len % p == 0) {
        const int part = len / p;
        if (std::memcmp(text, text + part, static_cast<std::size_t>(len - part)) != 0) {
            break;
        }
        len = part;
    }
    return len;
}

} // namespace

// A text that is a power of words of two lengths is also a power of a word whose length is their
// greatest common divisor, so each prime factor of n can be tried by itself.
int primitiveRootLen(const Ntk8u* text, int n) {
    int len = n;
    int rest = n;
    for (int p = 2; p * p <= rest; ++p) {
        if (rest % p == 0) {
            len = dividedBy(p, text, len);
            while (rest % p == 0) {
                rest /= p;
            }
        }
    }
    return rest > 1 ? dividedBy(rest, text, len) : len;
}

int leastRotation(const Ntk8u* doubledText, int n) {
    int least = 0;
    int candidate = 1;
    int same = 0; // bytes in which the two agree
    while (candidate < n) {
        const Ntk8u a = doubledText[least + same];
        const Ntk8u b = doubledText[candidate + same];
        if (a == b) {
            ++same;
            continue;
        }
        if (a > b) {
            // The candidate is less, and with it every start from least to least + same is ruled
            // out.
            const int ruledOutTo = least + same;
            least = candidate;
            candidate = ruledOutTo > least ? ruledOutTo + 1 : least + 1;
        } else {
            candidate += same + 1;
        }
        same = 0;
    }
    return least;
}

} // namespace ntk::bwt
