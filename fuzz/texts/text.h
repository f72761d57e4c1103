// Texts from an input.
#pragma once

#include "fuzz.h"
#include "psstring.h"

namespace fuzz {

inline psString textOf(const Bytes& bytes) {
    return psString(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
}

// The bytes up to the next zero or the end, as words of a process are.
inline psString takeWord(Input& in) {
    Bytes bytes;
    while (!in.empty()) {
        const auto byte = static_cast<Ntk8u>(in.byte());
        if (byte == 0) {
            break;
        }
        bytes.push_back(byte);
    }
    return textOf(bytes);
}

} // namespace fuzz
