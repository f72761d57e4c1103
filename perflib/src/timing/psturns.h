#pragma once

#include "pstool.h"
#include "psvalue.h"

// Turns instead of measurements: somebody outside the engine decides when a prepared combination is
// called and for how long, so that two processes can be compared that take turns on one processor.

// A turn: an untimed call, then spans of timed calls by the test's own statistic function.
struct psTurn {
    double clocksPerCall = 0; // of the quickest span, in full precision, without the init body
    long long calls = 0;      // timed ones
    psResult result = PS_UNDEFINED;
};

// The functions of a test at a prepared combination.
class psTurns {
public:
    psTurns(psStatFunc stat, psCallFunc call, psCallFunc init)
        : m_stat(stat), m_call(call), m_init(init) {}

    // One call, untimed, its input restored before; the library's status.
    int callOnce() const;
    // The timed part: so many spans of so many calls each, at least one of both. The clock is read
    // at the ends of a span alone: with many calls in it the reading costs and resolves nothing.
    psTurn take(int callsPerSpan, int spans) const;

private:
    psStatFunc m_stat;
    psCallFunc m_call;
    psCallFunc m_init; // null: none
};

// Takes turns in place of the methods of psTool, for all tests with a statistic function.
class psTurnTaker {
public:
    virtual ~psTurnTaker() = default;
    // For each combination, before it is prepared. False: it is passed over, unprepared.
    virtual bool wants(const psString& function, const psNamedValues& parameters) = 0;
    // At a prepared combination, once. The result goes into log and tables as that of a
    // measurement.
    virtual psResult atPrepared(const psTurns& turns) = 0;
    // When the data of a wanted combination are released, also when it could not be prepared.
    // A fault or an exception ends the test without it.
    virtual void released() = 0;
};

extern psTurnTaker* g_turnTaker; // null, the usual case: the methods measure

// What init bodies took, measured together. Whole numbers: floating-point arithmetic beside the
// measured calls would leave flags that the calls are blamed for.
struct psBodyClocks {
    long long clocks = 0;
    int bodies = 1;
    long long perBody() const { return clocks / bodies; }
    double perBodyExactly() const { return static_cast<double>(clocks) / bodies; }
};

// The clocks of an init body, which a statistic function measures and subtracts. While turns are
// taken it is measured once for a combination: with each turn it would cost more than the turn,
// and its error would differ from turn to turn.
class psInitClocks {
public:
    // measure(): a psBodyClocks. Asked unless a value is kept.
    template <class Measure> psBodyClocks of(Measure measure) {
        if (!m_isKept || !m_isKnown) {
            m_clocks = measure();
            m_isKnown = true;
        }
        return m_clocks;
    }
    void keep() { m_isKept = true, m_isKnown = false; } // from the next one on
    void keepNone() { m_isKept = false; }
    bool isKept() const { return m_isKept; }
    psBodyClocks last() const { return m_clocks; } // none yet: no clocks

private:
    bool m_isKept = false;
    bool m_isKnown = false;
    psBodyClocks m_clocks;
};

extern psInitClocks g_initClocks; // as g_batches: the timing functions have no object to ask
