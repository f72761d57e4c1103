#include "visit.h"

#include <algorithm>

namespace compare {

namespace {

// The clocks of a call are known well enough after one enlarged turn, those of a very short one
// after two.
constexpr int mostSizingTurns = 3;

int worseStatus(int left, int right) {
    return std::min(left, right) < 0 ? std::min(left, right) : std::max(left, right);
}

class Visit {
public:
    Visit(Pair& pair, Journey& journey, const VisitPlan& plan)
        : m_pair(pair), m_journey(journey), m_measured(journey.measured), m_plan(plan),
          m_random(plan.random) {}

    bool make() {
        const Side first = firstToPrepare();
        atBoth([&](Side side) { m_pair[side].goTo(m_journey.place[side], m_measured.function); },
               first);
        if (isGoingOn()) {
            prepare(first);
        }
        if (m_isPrepared.base && m_isPrepared.changed && isGoingOn()) {
            takeTurns();
            if (!m_start.rounds.empty()) {
                m_measured.starts.push_back(m_start);
            }
        }
        if (!m_isLost) {
            atBoth([&](Side side) { release(side); });
        }
        if (hasFailed()) {
            m_journey.decide(Stop::failed);
        }
        if (m_isLeft && m_plan.pass == 1) {
            m_measured.starts.clear(); // without an outcome nobody knows the units of a call
        }
        return !m_isLost;
    }

private:
    // Does the step on both sides, on the second one also when it fails on the first one: what
    // fails on both is no fault of one of them.
    template <class Step> void atBoth(const Step& step, Side first = Side::base) {
        for (const Side side : {first, other(first)}) {
            if (!m_isLeft) {
                attempt([&] { step(side); });
            }
        }
    }

    template <class Step> void attempt(const Step& step) {
        try {
            step();
        } catch (const WorkerLost& lost) {
            m_measured.failures.push_back(lost.failure);
            m_isLost = true;
        } catch (const WorkerLeft&) {
            m_isLeft = m_isLost = true;
        }
    }

    bool isGoingOn() const { return !hasFailed() && !m_isLeft; }
    bool hasFailed() const { return !m_measured.failures.empty(); }

    void fail(Side side, const std::string& what) {
        m_measured.failures.push_back({side, what, m_pair[side].lastWords()});
    }

    // By turns, so that neither side is always the one whose data the caches still hold.
    Side firstToPrepare() const { return m_plan.pass % 2 ? Side::base : Side::changed; }

    void prepare(Side first) {
        Both<std::optional<PassedOver>> passed;
        atBoth(
            [&](Side side) {
                passed[side] = m_pair[side].prepare();
                m_isPrepared[side] = !passed[side];
            },
            first);
        if (m_isLeft) {
            return;
        }
        if (passed.base && passed.changed) {
            m_measured.passedOver =
                passed[passed.base->why.empty() ? Side::changed : Side::base]->why;
            m_journey.decide(Stop::passedOver);
            return;
        }
        for (const Side side : sides) {
            if (passed[side]) {
                fail(side, "does not measure this" +
                               (passed[side]->why.empty() ? "" : ": " + passed[side]->why));
            }
        }
    }

    // The clocks of a call.
    double takeTurn(Side side, const TurnSize& size, Turn* turn = nullptr) {
        const double before = secondsNow();
        const Taken taken = m_pair[side].takeTurn(size);
        m_measured.seconds += secondsNow() - before;
        if (!taken.failed.empty()) {
            fail(side, taken.failed);
        } else if (taken.status < 0) {
            fail(side, "returned status " + std::to_string(taken.status));
        }
        if (turn) {
            *turn = taken.turn;
        }
        return taken.turn.clocks;
    }

    void takeTurns() {
        if (!m_journey.size) {
            chooseSize();
        }
        m_start.pass = m_plan.pass;
        while (isGoingOn() && (m_start.rounds.empty() || isTimeLeft()) && m_isWanted) {
            takeRound();
        }
    }

    bool isTimeLeft() const { return m_measured.seconds < m_plan.untilSeconds; }

    // The turns of this do not count. The other side gets one, too, so that it starts no colder.
    void chooseSize() {
        Both<double> clocksPerCall;
        atBoth([&](Side side) { clocksPerCall[side] = takeTurn(side, TurnSize{}); });
        if (isGoingOn()) {
            attempt([&] { m_journey.size = findSize(clocksPerCall.base); });
        }
    }

    TurnSize findSize(double clocksPerCall) {
        TurnSize size;
        TurnSize larger = turnSizeFor(clocksPerCall, m_plan.clocksPerSecond);
        for (int turn = 0; turn < mostSizingTurns && !hasFailed() && tellsMore(larger, size);
             ++turn) {
            size = larger;
            larger = turnSizeFor(takeTurn(Side::base, size), m_plan.clocksPerSecond);
        }
        return larger;
    }

    // A round that is cut short does not count.
    void takeRound() {
        Round round;
        round.baseFirst = m_random() >> 63;
        const Side first = round.baseFirst ? Side::base : Side::changed;
        bool isWhole = true;
        atBoth(
            [&](Side side) {
                if (!m_isWanted) {
                    isWhole = false;
                    return;
                }
                takeTurn(side, *m_journey.size, &round.turns[side]);
                m_hasTurned[side] = true;
                m_isWanted = !m_plan.isOver();
            },
            first);
        if (isWhole && isGoingOn()) {
            m_start.rounds.push_back(round);
        }
    }

    void release(Side side) {
        if (!m_isPrepared[side]) {
            return;
        }
        const Outcome outcome = m_pair[side].release();
        if (!m_hasTurned[side]) { // nothing was called: the test tells of what was there before
            return;
        }
        const int statusBefore = m_measured.outcome[side].status;
        m_measured.outcome[side] = outcome;
        m_measured.outcome[side].status = worseStatus(outcome.status, statusBefore);
    }

    Pair& m_pair;
    Journey& m_journey;
    Case& m_measured;
    const VisitPlan& m_plan;
    std::mt19937_64 m_random;
    Start m_start;
    Both<bool> m_isPrepared;
    Both<bool> m_hasTurned;
    bool m_isLost = false;
    bool m_isLeft = false;  // the lost one, because the user wants the end
    bool m_isWanted = true; // another turn
};

} // namespace

bool visit(Pair& pair, Journey& journey, const VisitPlan& plan) {
    return Visit(pair, journey, plan).make();
}

} // namespace compare
