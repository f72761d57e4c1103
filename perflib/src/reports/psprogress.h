#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "psrecordwriter.h"

// How far a run is, for a person who waits for it.

// Of so many tests so many are done, in so many seconds; the next one has run for some seconds. The
// others will take as long as these on average. Empty: nothing is known yet.
std::optional<double> psSecondsLeft(int done, int left, double secondsOfDone,
                                    double secondsOfCurrent);
// "20 s", "3 min", "1 h 10 min": no finer than such a guess is worth.
psString psAboutText(double seconds);
// "12/38 ntksDeflateHuff_8u, about 20 s left"
psString psProgressText(int number, int tests, const psString& function,
                        std::optional<double> secondsLeft);

// Keeps a line on a terminal (psterminalline.h) up to date: when a test begins, and between two
// measurements of a long one, once a second at most.
class psProgress : public psRecordWriter {
public:
    using Clock = std::function<double()>;             // seconds since whenever
    using Show = std::function<void(const psString&)>; // empty text: nothing is to be seen any more
    psProgress(Clock clock, Show show) : m_clock(std::move(clock)), m_show(std::move(show)) {}

    void begin(const psRunPlan& plan) override;
    void write(const psMeasurement& record) override;
    void testBegins(const psTest& test) override;
    void testEnds(const psTest& test, psResult result, double seconds) override;
    void end(const psTestList& tests) override;

private:
    void show();

    Clock m_clock;
    Show m_show;
    psRunPlan m_plan;
    int m_number = 0; // of the present test, 1 is the first
    psString m_function;
    double m_testBegin = 0;
    double m_lastShown = 0;
    int m_done = 0; // tests that tell how long tests take, and how long they took
    double m_seconds = 0;
};
