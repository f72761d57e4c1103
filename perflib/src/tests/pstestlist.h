#pragma once

#include <ctime>

#include "pslist.h"
#include "psparameter.h"
#include "psresult.h"

class psConditions;
class psTest;

// Every registered test, in registration order until it is sorted, and the counts of the last
// run. Owns its tests.
class psTestList : public psList<psTest*> {
public:
    psTestList() = default;
    psTestList(const psTestList&) = delete;
    psTestList& operator=(const psTestList&) = delete;
    ~psTestList() override; // deletes every test, in list order

    // By function name; tests of the same name keep their order. A null entry never sorts before
    // another.
    void sortFunc();
    // Moves the harness's own information tests (names beginning with "_") to the front.
    void startWithCpuTest();
    // Keeps in parms only those that some selected test uses.
    void selectCommonParms(const psConditions& conditions, psList<psParameter*>& parms);
    // How many runTests() will run.
    int countToRun(const psConditions& conditions) const;
    // True when any test failed. Counts anew.
    bool runTests(const psConditions& conditions);
    void plus(psResult result); // counts one finished test

    int tests() const { return m_tests; }
    int notes() const { return m_notes; } // results 2 to 5
    int fails() const { return m_fails; } // results 7 to 10; 6 and 11 are in neither
    int count(psResult result) const { return m_counts[result]; } // result in 0..11
    using psList<psTest*>::count;

    void setStartTime(time_t t) { m_startTime = t; }
    void setEndTime(time_t t) { m_endTime = t; }
    time_t startTime() const { return m_startTime; }
    time_t endTime() const { return m_endTime; }

    // The same moment on the steady clock, in nanoseconds, which nobody sets. All processes of a
    // run count from the first one's.
    void setStartInstant(long long nanoseconds) { m_startInstant = nanoseconds; }
    long long startInstant() const { return m_startInstant; }
    static long long instantNow();
    double secondsSinceStart() const;

    static psString& m_startFunc;  // "-F"; emptied when that function is reached
    static psTest* m_pCurrentTest; // null between tests

private:
    static psResult runTest(psTest& test);
    void clearCounts();
    void tellMissing(const psConditions& conditions) const;

    int m_tests = 0;
    int m_counts[psResultCount] = {};
    int m_notes = 0;
    int m_fails = 0;
    time_t m_startTime = 0;
    time_t m_endTime = 0;
    long long m_startInstant = instantNow();
};
