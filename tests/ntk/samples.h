// Data of several kinds, the same in every run.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "ntkdefs.h"

using Bytes = std::vector<Ntk8u>;

inline Bytes randomBytes(std::size_t size, unsigned seed = 1) {
    std::mt19937 generator(seed);
    Bytes bytes(size);
    for (Ntk8u& b : bytes) {
        b = static_cast<Ntk8u>(generator() >> 24);
    }
    return bytes;
}

// Words of a small vocabulary in random order.
inline Bytes textBytes(std::size_t size, unsigned seed = 1) {
    static const char* const words[] = {"the ",   "measure ", "of ",    "a ",       "processor ",
                                        "clock ", "and ",     "cache ", "branch ",  "in order\n",
                                        "load ",  "store ",   "which ", "retires ", "late, "};
    std::mt19937 generator(seed);
    std::string text;
    while (text.size() < size) {
        text += words[generator() % std::size(words)];
    }
    return Bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
}

struct Sample {
    std::string name;
    Bytes bytes;
};

// Every kind of data, at the lengths where the LZ4 format or the method of an encoder changes.
inline std::vector<Sample> samples() {
    std::vector<Sample> all = {{"empty", {}}};
    for (const std::size_t size : {1, 4, 5, 12, 13, 64, 600, 65536, 65547, 150000}) {
        const std::string at = " of " + std::to_string(size);
        all.push_back({"run" + at, Bytes(size, 'r')});
        all.push_back({"random" + at, randomBytes(size)});
        all.push_back({"text" + at, textBytes(size)});
    }
    return all;
}
