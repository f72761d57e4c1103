#include "calibration.h"

#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>

#include "chainlength.h"

namespace {

using Clock = std::chrono::steady_clock;
using SetChain = long (*)(const char*, long);

constexpr double spanClocks = 200'000; // at least one call
constexpr int spansPerTurn = 3;        // the quickest counts

double since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double middle(std::vector<double> values) {
    const auto half = values.begin() + static_cast<long>(values.size() / 2);
    std::nth_element(values.begin(), half, values.end());
    return *half;
}

class Switched {
public:
    Switched(const psTurns& turns, const std::string& function)
        : m_turns(turns), m_function(function),
          m_set(reinterpret_cast<SetChain>(dlsym(RTLD_DEFAULT, "ntkSlowerSet"))) {
        if (!m_set || m_set(function.c_str(), 0) < 0) {
            throw std::runtime_error("the library loaded cannot slow " + function);
        }
        m_turns.callOnce();
        m_calls = std::max(1, static_cast<int>(spanClocks / m_turns.take(1, 20).clocksPerCall));
    }
    // Clocks of a call with so many links, over a turn.
    double turn(long links) const {
        m_set(m_function.c_str(), links);
        m_turns.callOnce();
        const double clocks = m_turns.take(m_calls, spansPerTurn).clocksPerCall;
        m_set(m_function.c_str(), 0);
        return clocks;
    }
    // Both, turn by turn.
    CallCost costOf(long links, double seconds) const {
        CallCost cost{HUGE_VAL, HUGE_VAL, static_cast<double>(links)};
        std::vector<double> clocks;
        const auto start = Clock::now();
        do {
            clocks.push_back(turn(0));
            cost.clocks = std::min(cost.clocks, clocks.back());
            cost.clocksWithChain = std::min(cost.clocksWithChain, turn(links));
        } while (since(start) < seconds);
        cost.usualClocks = middle(clocks);
        return cost;
    }
    // So many that a call takes visibly longer, half of its time at least.
    long linksThatShow() const {
        constexpr double glance = 0.02;
        for (long links = 100;; links *= 4) {
            const CallCost cost = costOf(links, glance);
            if (cost.clocksWithChain > 1.5 * cost.clocks) {
                return links;
            }
        }
    }
    // The medians of neighbouring turns: with the chain over without it, and clocks without. Which
    // comes first alternates.
    struct Ratio {
        double ratio, clocks;
    };
    Ratio ratioOf(long links, double seconds) const {
        std::vector<double> ratios, clocks;
        const auto start = Clock::now();
        while (since(start) < seconds || ratios.size() < 9) {
            const bool isBaseFirst = ratios.size() % 2 == 0;
            const double first = turn(isBaseFirst ? 0 : links);
            const double second = turn(isBaseFirst ? links : 0);
            ratios.push_back(isBaseFirst ? second / first : first / second);
            clocks.push_back(isBaseFirst ? first : second);
        }
        return {middle(ratios), middle(clocks)};
    }

private:
    const psTurns& m_turns;
    std::string m_function;
    SetChain m_set;
    int m_calls = 1;
};

} // namespace

nlohmann::ordered_json calibrate(const psTurns& turns, const std::string& function,
                                 const std::vector<double>& levels, double seconds) {
    const Switched call(turns, function);
    const CallCost cost = call.costOf(call.linksThatShow(), seconds);
    nlohmann::ordered_json found = {{"clocks", cost.clocks},
                                    {"clocks_per_link", cost.clocksPerLink()},
                                    {"levels", nlohmann::ordered_json::array()}};
    for (const double level : levels) {
        const long links = cost.linksFor(level);
        const double chainClocks = static_cast<double>(links) * cost.clocksPerLink();
        const auto [ratio, clocks] = call.ratioOf(links, seconds);
        found["levels"].push_back({{"added", level},
                                   {"links", links},
                                   {"chain_clocks", chainClocks},
                                   {"measured", ratio},
                                   {"expected", 1 + chainClocks / clocks}});
    }
    return found;
}
