// Reference decoder of the LZSS stream, which follows the format in order: a flag byte, then for
// each flag from the lowest bit on a literal (0) or a match (1); a match of two bytes 0 ends the
// group.
//
// A match is a 16-bit number, lowest byte first: its low 3 bits are the length - 3, the others the
// distance. Low bits of 7 add a third byte: its low bit adds 8192 to the distance, the others are
// the length - 4. If those are 127, a fourth byte is the length - 131.
#pragma once

#include <stdexcept>
#include <vector>

#include "ntkdefs.h"

namespace oracle {

// The data of a stream that ends between two tokens. Throws std::out_of_range for one that ends
// within a token, std::domain_error for a distance that leads nowhere.
inline std::vector<Ntk8u> lzssDecoded(const std::vector<Ntk8u>& stream) {
    std::vector<Ntk8u> data;
    std::size_t at = 0;
    while (at < stream.size()) {
        const int flags = stream[at++];
        for (int bit = 0; bit < 8 && at < stream.size(); ++bit) {
            if ((flags & 1 << bit) == 0) {
                data.push_back(stream[at++]);
                continue;
            }
            const unsigned pair = stream[at] + 256U * stream.at(at + 1);
            at += 2;
            if (pair == 0) {
                break;
            }
            std::size_t distance = pair / 8;
            std::size_t length = pair % 8 + 3;
            if (pair % 8 == 7) {
                const unsigned third = stream.at(at++);
                distance += third % 2 * 8192;
                length = 4 + third / 2;
                if (third / 2 == 127) {
                    length = 131U + stream.at(at++);
                }
            }
            if (distance == 0 || distance > data.size()) {
                throw std::domain_error("distance");
            }
            while (length-- > 0) {
                data.push_back(data.at(data.size() - distance));
            }
        }
    }
    return data;
}

} // namespace oracle
