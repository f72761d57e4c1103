#include "runner.h"

#include <algorithm>
#include <csignal>
#include <limits>
#include <memory>

#include "facts.h"
#include "judge.h"
#include "listing.h"
#include "placement.h"
#include "progress.h"
#include "visit.h"

namespace compare {

namespace {

// A worker that died must not end the program that writes to it.
class IgnoredBrokenPipes {
public:
    IgnoredBrokenPipes() { sigaction(SIGPIPE, &m_ignore, &m_before); }
    ~IgnoredBrokenPipes() { sigaction(SIGPIPE, &m_before, nullptr); }
    IgnoredBrokenPipes(const IgnoredBrokenPipes&) = delete;
    IgnoredBrokenPipes& operator=(const IgnoredBrokenPipes&) = delete;

private:
    struct sigaction m_ignore = [] {
        struct sigaction action {};
        action.sa_handler = SIG_IGN;
        return action;
    }();
    struct sigaction m_before {};
};

// Every case draws for itself: how many rounds the others got changes nothing.
std::mt19937_64 randomFor(unsigned long long seed, int pass, size_t place) {
    std::seed_seq sequence{seed & 0xffffffffu, seed >> 32, static_cast<unsigned long long>(pass),
                           static_cast<unsigned long long>(place)};
    return std::mt19937_64(sequence);
}

class Run {
public:
    Run(const Plan& plan, const std::function<void(const Progress&)>& report,
        const std::function<bool()>& isInterrupted)
        : m_plan(plan), m_report(report), m_isInterrupted(isInterrupted) {}

    Comparison make() {
        describe();
        list();
        for (int pass = 1; !undecided().empty() && pass <= m_looks.last() && !isOver(); ++pass) {
            makePass(pass);
        }
        endUndecided();
        m_comparison.wallSeconds = secondsSoFar();
        return std::move(m_comparison);
    }

private:
    void describe() {
        m_comparison.settings = m_plan.settings;
        m_comparison.machine = processorName();
        m_comparison.started = localTime();
        m_comparison.cpu = chooseCpu(m_plan.settings.cpu);
    }

    void list() {
        Listing listing = listCases(m_plan, m_comparison.cpu);
        for (const Side side : sides) {
            m_comparison.sides[side] = {m_plan.directories[side], m_plan.keys[side],
                                        listing.hello[side].files, listing.hello[side].version};
        }
        m_comparison.cases = std::move(listing.cases);
        m_comparison.unpaired = std::move(listing.unpaired);
        m_comparison.remarks = std::move(listing.remarks);
        for (size_t place = 0; place < m_comparison.cases.size(); ++place) {
            m_journeys.push_back({m_comparison.cases[place], listing.places[place], false, {}});
        }
        planTime();
        m_listedSeconds = secondsNow();
    }

    // For the cases that are left.
    void planTime() {
        const int cases = static_cast<int>(undecided().size());
        m_looks = planLooks(std::max(cases, 1), m_plan.settings.alpha);
        m_secondsPerCase = m_plan.settings.secondsPerCase;
        if (m_plan.settings.budgetSeconds > 0) {
            m_secondsPerCase =
                std::min(m_secondsPerCase, m_plan.settings.budgetSeconds / std::max(cases, 1));
        }
    }

    void makePass(int pass) {
        m_comparison.passes = pass;
        m_untilSeconds += secondsOfPass(m_looks, m_secondsPerCase);
        const std::vector<size_t> places = undecided();
        std::unique_ptr<Pair> pair; // started anew behind a case that cost one
        size_t visited = 0;
        for (; visited < places.size() && !isOver(); ++visited) {
            tellProgress(pass, visited, places);
            if (!pair) {
                pair = std::make_unique<Pair>(m_plan, m_comparison.cpu);
            }
            if (!visit(*pair, m_journeys[places[visited]], visitPlan(pass, places[visited]))) {
                pair.reset();
            }
            m_workDone += secondsOfPass(m_looks, m_secondsPerCase);
        }
        if (pair) {
            pair->quit();
        }
        if (visited == places.size()) {
            endPass(pass);
        }
    }

    void endPass(int pass) {
        m_wholePasses = pass;
        // Now it is known how many cases there are to be judged together.
        if (pass == 1) {
            planTime();
        }
        m_comparison.looks = m_looks.passes;
        if (std::find(m_looks.passes.begin(), m_looks.passes.end(), pass) != m_looks.passes.end()) {
            look();
        }
    }

    VisitPlan visitPlan(int pass, size_t place) const {
        return {pass, m_untilSeconds, m_clockRate.perSecond(),
                randomFor(m_plan.settings.seed, pass, place), [this] { return isOver(); }};
    }

    void look() {
        for (const size_t place : undecided()) {
            Journey& journey = m_journeys[place];
            const Effect effect = effectOf(journey.measured, m_looks);
            if (isDone(effect, m_plan.settings, casesToJudge())) {
                journey.decide(Stop::precise);
                // A call that is long beside a pass's share has used more than its share.
            } else if (journey.measured.seconds >= m_secondsPerCase) {
                journey.decide(Stop::time);
            }
        }
    }

    int casesToJudge() const {
        return static_cast<int>(std::count_if(
            m_comparison.cases.begin(), m_comparison.cases.end(),
            [](const Case& one) { return one.failures.empty() && one.stop != Stop::passedOver; }));
    }

    void endUndecided() {
        if (undecided().empty()) {
            return;
        }
        for (const size_t place : undecided()) {
            m_journeys[place].decide(m_wasInterrupted ? Stop::interrupted
                                     : m_isOverBudget ? Stop::budget
                                                      : Stop::time);
        }
        m_comparison.isComplete =
            !m_wasInterrupted && !(m_isOverBudget && m_wholePasses < m_looks.passes.front());
    }

    // Whether no further turn is wanted.
    bool isOver() const {
        m_wasInterrupted = m_wasInterrupted || m_isInterrupted();
        m_isOverBudget = m_isOverBudget || budgetLeft() <= 0;
        return m_wasInterrupted || m_isOverBudget;
    }

    double budgetLeft() const {
        return m_plan.settings.budgetSeconds > 0 ? m_plan.settings.budgetSeconds - secondsSoFar()
                                                 : std::numeric_limits<double>::infinity();
    }

    double secondsSoFar() const { return secondsNow() - m_startSeconds; }

    std::vector<size_t> undecided() const {
        std::vector<size_t> places;
        for (size_t place = 0; place < m_journeys.size(); ++place) {
            if (!m_journeys[place].isDecided) {
                places.push_back(place);
            }
        }
        return places;
    }

    void tellProgress(int pass, size_t visited, const std::vector<size_t>& places) const {
        const double left = workLeft(m_looks, pass, static_cast<int>(visited),
                                     static_cast<int>(places.size()), m_secondsPerCase);
        m_report(progressOf(caseName(m_journeys[places[visited]].measured), {m_workDone, left},
                            secondsNow() - m_listedSeconds, budgetLeft()));
    }

    const Plan& m_plan;
    const std::function<void(const Progress&)>& m_report;
    const std::function<bool()>& m_isInterrupted;
    Comparison m_comparison;
    std::vector<Journey> m_journeys; // of the cases, in their order
    Looks m_looks;
    double m_secondsPerCase = 0;
    double m_untilSeconds = 0; // what a case may have used when its visit ends
    double m_workDone = 0;
    int m_wholePasses = 0;
    const double m_startSeconds = secondsNow();
    double m_listedSeconds = 0; // when the cases were known
    const ClockRate m_clockRate;
    mutable bool m_wasInterrupted = false;
    mutable bool m_isOverBudget = false;
};

} // namespace

Comparison run(const Plan& plan, const std::function<void(const Progress&)>& report,
               const std::function<bool()>& isInterrupted) {
    const IgnoredBrokenPipes ignored;
    return Run(plan, report, isInterrupted).make();
}

} // namespace compare
