// Reference implementation of bzip2's coding of zeroes: a run of n is written as n in bijective
// base 2, least significant digit first, with the symbol 0 for the digit 1 and 1 for the digit 2;
// any other byte b is the symbol b + 1.
#pragma once

#include <algorithm>
#include <vector>

#include "ntkdefs.h"

namespace oracle {

// By division; the library goes by bits.
inline std::vector<Ntk16u> z1z2Encoded(const std::vector<Ntk8u>& positions) {
    std::vector<Ntk16u> out;
    for (std::size_t i = 0, n = 0; i < positions.size(); i += std::max<std::size_t>(n, 1)) {
        for (n = 0; i + n < positions.size() && positions[i + n] == 0; ++n) {
        }
        for (std::size_t left = n; left > 0;) {
            const std::size_t digit = left % 2 == 1 ? 1 : 2;
            out.push_back(static_cast<Ntk16u>(digit - 1));
            left = (left - digit) / 2;
        }
        if (n == 0) {
            out.push_back(static_cast<Ntk16u>(positions[i] + 1));
        }
    }
    return out;
}

} // namespace oracle
