// Reference implementation of move-to-front: a byte is coded as its position in a list of all byte
// values, at first ascending, and moved to the front of the list.
#pragma once

#include <algorithm>
#include <numeric>
#include <vector>

#include "ntkdefs.h"

namespace oracle {

class Mtf {
public:
    Mtf() : m_list(256) { std::iota(m_list.begin(), m_list.end(), Ntk8u{0}); }

    const std::vector<Ntk8u>& list() const { return m_list; }

    std::vector<Ntk8u> forward(const std::vector<Ntk8u>& bytes) {
        std::vector<Ntk8u> positions;
        for (const Ntk8u byte : bytes) {
            const auto at = std::find(m_list.begin(), m_list.end(), byte);
            positions.push_back(static_cast<Ntk8u>(at - m_list.begin()));
            std::rotate(m_list.begin(), at, at + 1);
        }
        return positions;
    }
    std::vector<Ntk8u> inverse(const std::vector<Ntk8u>& positions) {
        std::vector<Ntk8u> bytes;
        for (const Ntk8u position : positions) {
            const auto at = m_list.begin() + position;
            bytes.push_back(*at);
            std::rotate(m_list.begin(), at, at + 1);
        }
        return bytes;
    }

private:
    std::vector<Ntk8u> m_list;
};

} // namespace oracle
