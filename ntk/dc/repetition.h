// Matches that repeat their last few bytes, by words: a product with the right constant fills a
// word with as many copies of them as fit.
#pragma once

#include <cstring>

#include "ntkdefs.h"

namespace ntk {

// For distances below 8: the factor that repeats the bytes at the distance to fill a word, and the
// bytes of the whole periods that fit it, the step at which the word is written.
struct Repetition {
    Ntk64u factor;
    unsigned step;
};
inline constexpr Repetition repetitions[8] = {{0, 0},
                                              {0x0101010101010101, 8},
                                              {0x0001000100010001, 8},
                                              {0x0001000001000001, 6},
                                              {0x0000000100000001, 8},
                                              {0x0000010000000001, 5},
                                              {0x0001000000000001, 6},
                                              {0x0100000000000001, 7}};

// The word that repeats the `distance` bytes before `to`, 1 to 7. Reads 8 bytes from the first of
// them on.
inline Ntk64u repeatedWord(const Ntk8u* to, unsigned distance) {
    Ntk64u period;
    std::memcpy(&period, to - distance, sizeof period);
    period &= (Ntk64u{1} << 8 * distance) - 1;
    return period * repetitions[distance].factor;
}

} // namespace ntk
