// Reference implementation of bzip2's run-length coding: runs of 1 to 3 equal bytes are kept; of a
// run of 4 to 255, four bytes are kept and a count byte follows, 0 to 251; longer runs are split.
#pragma once

#include <algorithm>
#include <vector>

#include "ntkdefs.h"

namespace oracle {

inline std::vector<Ntk8u> rleEncoded(const std::vector<Ntk8u>& bytes) {
    std::vector<Ntk8u> out;
    for (std::size_t i = 0, n = 0; i < bytes.size(); i += n) {
        for (n = 1; n < 255 && i + n < bytes.size() && bytes[i + n] == bytes[i]; ++n) {
        }
        out.insert(out.end(), std::min<std::size_t>(n, 4), bytes[i]);
        if (n >= 4) {
            out.push_back(static_cast<Ntk8u>(n - 4));
        }
    }
    return out;
}

// Takes a count of 252 to 255 like any other.
inline std::vector<Ntk8u> rleDecoded(const std::vector<Ntk8u>& bytes) {
    std::vector<Ntk8u> out;
    int equal = 0;
    for (const Ntk8u byte : bytes) {
        if (equal == 4) {
            out.insert(out.end(), byte, out.back());
            equal = 0;
        } else {
            equal = equal != 0 && out.back() == byte ? equal + 1 : 1;
            out.push_back(byte);
        }
    }
    return out;
}

} // namespace oracle
