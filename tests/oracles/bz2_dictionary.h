// Reference implementation of bzip2's dictionary: a byte is coded as its rank, the number of
// smaller byte values in use.
#pragma once

#include <algorithm>
#include <vector>

#include "ntkdefs.h"

namespace oracle {

inline std::vector<Ntk8u> reduced(const Ntk8u* inUse, std::vector<Ntk8u> bytes) {
    for (Ntk8u& byte : bytes) {
        byte =
            static_cast<Ntk8u>(std::count_if(inUse, inUse + byte, [](Ntk8u u) { return u != 0; }));
    }
    return bytes;
}

// Bytes that are no rank stay unchanged.
inline std::vector<Ntk8u> expanded(const Ntk8u* inUse, std::vector<Ntk8u> bytes) {
    std::vector<Ntk8u> values;
    for (int value = 0; value < 256; ++value) {
        if (inUse[value] != 0) {
            values.push_back(static_cast<Ntk8u>(value));
        }
    }
    for (Ntk8u& byte : bytes) {
        byte = byte < values.size() ? values[byte] : byte;
    }
    return bytes;
}

} // namespace oracle
