#include "chaincost.h"

#include <algorithm>
#include <cmath>

double ChainRound::deviation() const {
    return harnessClocks / (knownCoreClocks * additions.counterPerCoreClock()) - 1;
}

double ChainRound::disagreement() const {
    return multiplications.counterPerCoreClock() / additions.counterPerCoreClock() - 1;
}

bool ChainVerdict::isWithin(double limit) const {
    return std::abs(deviation) <= limit && std::abs(disagreement) <= limit;
}

ChainVerdict judgeChains(const std::vector<ChainRound>& rounds) {
    const auto sorted = [&](auto value) {
        std::vector<double> values;
        for (const ChainRound& round : rounds) {
            values.push_back(value(round));
        }
        std::sort(values.begin(), values.end());
        return values;
    };
    const auto middle = [](const std::vector<double>& values) {
        const std::size_t half = values.size() / 2;
        return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
    };
    const std::vector<double> ratios =
        sorted([](const ChainRound& round) { return round.additions.counterPerCoreClock(); });
    return {middle(ratios), ratios.front(), ratios.back(),
            middle(sorted([](const ChainRound& round) { return round.deviation(); })),
            middle(sorted([](const ChainRound& round) { return round.disagreement(); }))};
}
