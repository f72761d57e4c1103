#include "psprogress.h"

#include <algorithm>
#include <cmath>

#include "pstest.h"
#include "pstestlist.h"

namespace {
constexpr double secondsBetween = 1;

long long rounded(double number, int step) {
    return std::llround(number / step) * step;
}
} // namespace

std::optional<double> psSecondsLeft(int done, int left, double secondsOfDone,
                                    double secondsOfCurrent) {
    if (done == 0) {
        return std::nullopt;
    }
    const double each = secondsOfDone / done;
    return std::max(0.0, each * left - std::min(secondsOfCurrent, each));
}

psString psAboutText(double seconds) {
    constexpr int minute = 60, hour = 60 * minute;
    if (seconds < 9.5) {
        return psText(std::max(1LL, rounded(seconds, 1))) + " s";
    }
    if (seconds < 57.5) {
        return psText(rounded(seconds, 5)) + " s";
    }
    const long long minutes = rounded(seconds, minute) / minute;
    if (minutes < hour / minute) {
        return psText(minutes) + " min";
    }
    const long long tens = rounded(seconds, 10 * minute) / minute;
    return psText(tens / minute) + " h" +
           (tens % minute ? " " + psText(tens % minute) + " min" : psString());
}

psString psProgressText(int number, int tests, const psString& function,
                        std::optional<double> secondsLeft) {
    return psText(number) + "/" + psText(tests) + " " + function +
           (secondsLeft ? ", about " + psAboutText(*secondsLeft) + " left" : psString());
}

void psProgress::begin(const psRunPlan& plan) {
    m_plan = plan;
}

void psProgress::testBegins(const psTest& test) {
    m_number = pTestList ? pTestList->tests() + 1 : 1; // those of earlier processes are counted
    m_function = test.functionName();
    m_testBegin = m_clock();
    show();
}

void psProgress::write(const psMeasurement&) {
    if (m_clock() - m_lastShown >= secondsBetween) {
        show();
    }
}

// One that faults, or in which a process ends after it was waited for, is no measure of the others;
// nor is one that has measured nothing.
void psProgress::testEnds(const psTest& test, psResult result, double seconds) {
    if (result != PS_EXCEPTION && test.hasMeasured()) {
        ++m_done;
        m_seconds += seconds;
    }
}

void psProgress::end(const psTestList&) {
    m_show({});
}

void psProgress::show() {
    m_lastShown = m_clock();
    m_show(psProgressText(
        m_number, m_plan.tests, m_function,
        psSecondsLeft(m_done, m_plan.tests - m_number + 1, m_seconds, m_lastShown - m_testBegin)));
}
