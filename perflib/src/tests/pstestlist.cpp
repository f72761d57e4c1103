#include "pstestlist.h"

#include <chrono>

#include "pscacheiterator.h"
#include "pscond.h"
#include "psmissing.h"
#include "pssettings.h"
#include "psinterruption.h"
#include "psistream.h"
#include "psostream.h"
#include "psrecordwriter.h"
#include "psrunwatch.h"
#include "pstest.h"
#include "pstestformat.h"

constinit psString& psTestList::m_startFunc = g_settings.startFunc;
psTest* psTestList::m_pCurrentTest = nullptr;

psTestList::~psTestList() {
    for (psTest*& test : *this) {
        delete test;
        test = nullptr;
    }
}

void psTestList::sortFunc() {
    sort([](const psTest* a, const psTest* b) { return a && (!b || a->compareFunc(b) < 0); });
}

static bool isInformationTest(const psTest* test) {
    return test && test->functionName().startsWith("_");
}

void psTestList::startWithCpuTest() {
    auto front = begin(); // the first of the other tests
    while (front != end() && isInformationTest(*front)) {
        ++front;
    }
    for (auto i = front; i != end();) {
        const auto current = i++;
        if (isInformationTest(*current)) {
            moveBefore(front, current);
        }
    }
}

// The parameter that a person knows: a cache iterator stands for the one that it scales.
static const psParameter* knownParm(const psParameter* parm) {
    const auto* const cache = dynamic_cast<const psCacheIterator*>(parm);
    return cache ? cache->wrapped() : parm;
}

// Marks those of parms that the test uses; returns how many were marked newly.
static int markUsed(const psTest& test, const psList<psParameter*>& parms) {
    int marked = 0;
    for (const psParameter* registered : test.parms()) {
        for (psParameter* parm : parms) {
            if (parm == knownParm(registered) && !parm->isInUse()) {
                parm->setInUse(true);
                ++marked;
            }
        }
    }
    return marked;
}

// The test that comes when all are marked already is the last one to be started.
void psTestList::selectCommonParms(const psConditions& conditions, psList<psParameter*>& parms) {
    int unmarked = 0;
    for (psParameter* parm : parms) {
        parm->setInUse(false);
        ++unmarked;
    }
    bool done = false;
    for (auto i = begin(); i != end() && !done; ++i) {
        if (*i && (*i)->tobeRun(conditions)) {
            (*i)->startAndStop();
            done = unmarked == 0;
            unmarked -= markUsed(**i, parms);
            (*i)->forgetParms();
        }
    }
    for (auto i = parms.begin(); i != parms.end();) {
        i = (*i)->isInUse() ? std::next(i) : parms.erase(i);
    }
}

// Why no selected test has a section.
static psString noSectionText() {
    const psIniFile& ini = g_istrm.settings();
    if (ini.name().empty()) {
        return "-P key needs an ini-file, -i key names it";
    }
    if (!ini.isOpen()) {
        return "-P key can't read ini-file " + ini.name();
    }
    return "-P key finds no section of a selected test in ini-file " + ini.name();
}

// With "-P" by the settings file.
static bool isNamed(const psTest& test) {
    return !psTest::m_pressing || g_istrm.sectionExist(test.functionName());
}

// The settings file does not name it.
static bool isRefused(const psTest& test, psResult result) {
    return result == PS_UNDEFINED && test.result() == PS_OK;
}

psResult psTestList::runTest(psTest& test) {
    m_pCurrentTest = &test;
    if (g_runWatch) {
        g_runWatch->testBegins(test);
    }
    if (isNamed(test)) {
        psTellRecordWriters([&](psRecordWriter& writer) { writer.testBegins(test); });
    }
    const auto begin = std::chrono::steady_clock::now();
    const psResult result = test.run();
    const std::chrono::duration<double> span = std::chrono::steady_clock::now() - begin;
    const bool refused = isRefused(test, result);
    if (!refused) {
        psTellRecordWriters(
            [&](psRecordWriter& writer) { writer.testEnds(test, result, span.count()); });
    }
    if (g_runWatch) {
        g_runWatch->testEnds(result, refused);
    }
    m_pCurrentTest = nullptr;
    return result;
}

// Before the first test, so that nobody waits for the end to learn that this is another build.
void psTestList::tellMissing(const psConditions& conditions) const {
    psString names;
    for (psTest* const test : *this) {
        if (test && psIsMissingFunction(test->functionName()) && test->tobeRun(conditions)) {
            names += (names.empty() ? "" : ", ") + test->functionName();
        }
    }
    if (!names.empty()) {
        g_ostrm << PS_ERR << "-- " << psNoFunctionText(names)
                << ": the tests that call one of these fail, all others run\n"
                << PS_END_FLUSH;
    }
}

int psTestList::countToRun(const psConditions& conditions) const {
    bool isReached = m_startFunc.empty();
    int number = 0;
    for (psTest* const test : *this) {
        if (test && test->tobeRun(conditions)) {
            isReached = isReached || test->functionName().contains(m_startFunc);
            number += isReached && isNamed(*test) ? 1 : 0;
        }
    }
    return number;
}

bool psTestList::runTests(const psConditions& conditions) {
    clearCounts();
    tellMissing(conditions);
    bool anyAdmitted = false;
    bool anyRefused = false;
    bool anyRun = false;
    for (psTest* test : *this) {
        if (!test || !test->tobeRun(conditions)) {
            continue;
        }
        anyAdmitted = true;
        if (!m_startFunc.empty() && !test->functionName().contains(m_startFunc)) {
            continue;
        }
        m_startFunc = "";
        if (g_runWatch && g_runWatch->wasRun(*test, *this)) {
            anyRun = true;
            continue;
        }
        if (psInterruption::isWanted()) {
            break;
        }
        const psResult result = runTest(*test);
        const bool refused = isRefused(*test, result);
        if (!refused) {
            plus(result);
        }
        anyRefused |= refused;
        anyRun |= !refused;
    }
    if (!anyAdmitted) {
        g_ostrm << PS_ERR << "-- No test meets the conditions, -e key lists all tests\n" << PS_END;
    } else if (anyRefused && !anyRun) {
        g_ostrm << PS_ERR << "-- No test is run: " << noSectionText() << "\n" << PS_END;
    }
    return m_fails > 0;
}

long long psTestList::instantNow() {
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

double psTestList::secondsSinceStart() const {
    return static_cast<double>(instantNow() - m_startInstant) / 1e9;
}

void psTestList::clearCounts() {
    m_tests = m_notes = m_fails = 0;
    psTest::m_figures = {};
    for (int& count : m_counts) {
        count = 0;
    }
}

// 6 and 11 are neither notes nor fails: tests raise them where nothing more exact is known.
void psTestList::plus(psResult result) {
    ++m_tests;
    if (result >= 0 && result < psResultCount) {
        ++m_counts[result];
    }
    m_notes += result >= PS_ACCUR_WARN && result <= PS_FUNC_NOTE;
    m_fails += result >= PS_ACCUR_FAIL && result <= PS_EXCEPTION;
}
