#include "psbatches.h"

#include <algorithm>
#include <vector>

constinit psBatches g_batches;

void psBatches::thin() {
    for (size_t i = 0; i < capacity / 2; ++i) {
        m_clocks[i] = m_clocks[2 * i];
    }
    m_kept = capacity / 2;
    m_stride *= 2;
}

double psBatches::spread() const {
    std::vector<long long> sorted(m_clocks.begin(), m_clocks.begin() + m_kept);
    if (sorted.size() < 2) {
        return 0;
    }
    std::sort(sorted.begin(), sorted.end());
    const auto smallest = static_cast<double>(sorted.front());
    const auto middle = static_cast<double>(sorted[sorted.size() / 2]);
    return smallest > 0 ? (middle - smallest) / smallest : 0;
}
