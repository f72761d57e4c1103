#include "psturns.h"

#include <algorithm>

#include "psbatches.h"

psTurnTaker* g_turnTaker = nullptr;
constinit psInitClocks g_initClocks;

int psTurns::callOnce() const {
    if (m_init) {
        m_init();
    }
    return m_call ? m_call() : 0;
}

psTurn psTurns::take(int callsPerSpan, int spans) const {
    const int batch = std::max(callsPerSpan, 1);
    int calls = batch * std::max(spans, 1);
    long long clocks = 0; // no budget: the number of calls alone counts
    if (m_init) {         // the statistic function resets after its calls, not before the first
        m_init();
    }
    g_batches.clear();
    psTurn turn;
    turn.result = m_stat(&calls, &clocks, batch);
    turn.calls = calls;
    // The statistic function stores whole clocks, a step of 0.1% for a call of a thousand.
    const double overhead = g_initClocks.last().perBodyExactly();
    const double perCall = static_cast<double>(g_batches.smallest()) / batch;
    turn.clocksPerCall = perCall > overhead ? perCall - overhead : perCall;
    return turn;
}
