// Reference implementation of the Burrows-Wheeler transform: a plain sort of all cyclic rotations.
#pragma once

#include <algorithm>
#include <numeric>
#include <vector>

#include "ntkdefs.h"

namespace oracle {

inline std::vector<Ntk8u> rotated(std::vector<Ntk8u> text, std::ptrdiff_t start) {
    std::rotate(text.begin(), text.begin() + start, text.end());
    return text;
}

// Where the rotations begin, in sorted order; equal ones in the order of the text.
inline std::vector<std::ptrdiff_t> sortedRotations(const std::vector<Ntk8u>& text) {
    std::vector<Ntk8u> twice = text;
    twice.insert(twice.end(), text.begin(), text.end());
    std::vector<std::ptrdiff_t> starts(text.size());
    std::iota(starts.begin(), starts.end(), 0);
    const auto begin = twice.cbegin();
    const auto n = static_cast<std::ptrdiff_t>(text.size());
    std::stable_sort(starts.begin(), starts.end(), [=](std::ptrdiff_t a, std::ptrdiff_t b) {
        return std::lexicographical_compare(begin + a, begin + a + n, begin + b, begin + b + n);
    });
    return starts;
}

struct Bwt {
    std::vector<Ntk8u> bytes; // the last byte of each rotation
    int row;                  // of the unrotated text

    bool operator==(const Bwt&) const = default;
};

inline Bwt bwt(const std::vector<Ntk8u>& text) {
    Bwt transform{{}, 0};
    for (const std::ptrdiff_t start : sortedRotations(text)) {
        if (start == 0) {
            transform.row = static_cast<int>(transform.bytes.size());
        }
        transform.bytes.push_back(start == 0 ? text.back()
                                             : text[static_cast<std::size_t>(start - 1)]);
    }
    return transform;
}

} // namespace oracle
