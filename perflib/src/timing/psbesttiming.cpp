// The iterative method, also used by auto: a short prior run finds a loop count that lasts long
// enough, then loop counts grow until two runs agree, then a few simple runs confirm.

#include "pstool.h"

#include "psctrlstatus.h"
#include "pstimingmath.h"

namespace {
constexpr double goodAccuracy = 0.01; // no confirming runs below this
constexpr int confirmingRuns = 3;
constexpr int avoidingRuns = 6;
} // namespace

void psTool::logLine(const char* label, const psString& value) {
    log(psString("        ") + label + value + "\n");
}

// Other failures than of the accuracy have told their own story.
psTool::Step psTool::failMeasurement(psResult r) {
    result = r;
    log("    Auto method: exit\n");
    flushLog();
    if (r == PS_ACCUR_FAIL) {
        flushLogOnFailure();
    }
    return Step::exit;
}

void psTool::flushLog() {
    if (!g_ostrm.accepts(PS_DETAIL)) {
        return;
    }
    g_ostrm << PS_DETAIL << m_detail << PS_END;
    m_detail = "";
}

// A failed measurement shows its history also to those who did not ask for details.
void psTool::flushLogOnFailure() {
    if (g_ostrm.outLevel() < PS_DETAIL) {
        g_ostrm << PS_ERR << m_detail << PS_END;
    }
    m_detail = "";
}

bool psTool::badStatusActive() const {
    bool bad87 = false;
    bool badSSX = false;
    return psBadCtrlStatus(bad87, badSSX) && checkCtrlActive;
}

void psTool::bestTiming(int minLoops, int maxLoops, long long minClocks) {
    checkCtrlActive = checkCtrlStatus;
    m_detail = "";
    if (countCalls && !funcStat && !funcCall) {
        countCalls = false;
    }
    log("    Auto method: start\n");
    logLine("minClocks  = ", clockStr(minClocks));
    flushLog();
    Iteration it{minLoops, maxLoops, minClocks};
    if (!priorMeasurement(it)) {
        return;
    }
    if (numLoops < it.maxLoops) {
        iterationMeasurement(it);
        if (psIsFail(result)) {
            return;
        }
    }
    finishBest();
}

// False when the measurement has failed and ended.
bool psTool::priorMeasurement(Iteration& it) {
    for (bool first = true;; first = false) {
        log("    Prior Measurement: \n");
        logLine(psFormat("%s   = ", runLabel()).c_str(), psText(it.loops));
        flushLog();
        const psResult r = startIterations(it.loops, it.minClocks);
        logLine("numClocks  = ", psText(numClocks));
        logLine("funcClocks = ", psText(funcClocks));
        logLine("result     = ", psResultWord(r));
        flushLog();
        if (r == PS_ACCUR_WARN && first) {
            const long long factor = psShortRunFactor(it.minClocks, numClocks);
            it.loops = psTimesLoops(it.loops, factor);
            it.maxLoops = psTimesLoops(it.maxLoops, factor);
        } else if (r == PS_ACCUR_FAIL && first) {
            it.loops = psTimesLoops(it.loops, 10);
            it.maxLoops = psTimesLoops(it.maxLoops, 10);
        } else {
            if (!psIsFail(r)) {
                return true;
            }
            failMeasurement(r);
            return false;
        }
    }
}

psResult psTool::startIterations(int loops, long long minClocks) {
    numLoops = loops;
    double clocks = 0;
    runTimFunc(loops, &clocks, true);
    funcClocks = clocksPerCall(Stored::sum);
    if (psIsFail(result)) {
        return result;
    }
    return psJudgePriorRun(funcClocks, numLoops, minClocks);
}

void psTool::iterationMeasurement(Iteration& it) {
    int startLoops = psTimesLoops(numLoops, 4);
    for (;;) {
        switch (oneIteration(startLoops, it.maxLoops)) {
        case Step::again: startLoops = psTimesLoops(numLoops, 4); break;
        case Step::avoid: avoidBadStatus(); return;
        default: return;
        }
    }
}

psTool::Step psTool::oneIteration(int startLoops, int maxLoops) {
    log("    Iteration Measurement: \n");
    logLine("startLoops = ", psText(startLoops));
    logLine("maxLoops   = ", psText(maxLoops));
    flushLog();
    const psResult r = continueIterations(startLoops, maxLoops);
    logLine("stopLoops  = ", psText(numLoops));
    logLine("stopClocks = ", psText(numClocks));
    logLine("accuracy   = ", psAccuracyText(accuracy));
    logLine("funcClocks = ", psText(funcClocks));
    logLine("result     = ", psResultWord(r));
    flushLog();
    if (r == PS_STATUS_WARN) {
        return Step::avoid;
    }
    if (psIsFail(r)) {
        return failMeasurement(r);
    }
    return judgeIteration(maxLoops);
}

psTool::Step psTool::judgeIteration(int maxLoops) {
    if (accuracy <= goodAccuracy) {
        return Step::stop;
    }
    log("    Simple Measurements: \n");
    flushLog();
    const psResult r = repeatTiming(numLoops, confirmingRuns);
    if (psIsFail(r)) {
        return failMeasurement(r);
    }
    if (r != PS_ACCUR_WARN || numLoops >= maxLoops) {
        return Step::stop;
    }
    return Step::again;
}

psResult psTool::continueIterations(int startLoops, int maxLoops) {
    return funcStat ? statRun() : doubleLoops(startLoops, maxLoops);
}

// Doubles the loops until two runs in a row agree or the ceiling is reached.
psResult psTool::doubleLoops(int startLoops, int maxLoops) {
    double previous = funcClocks;
    numLoops = startLoops < maxLoops ? startLoops : maxLoops;
    for (;;) {
        double clocks = 0;
        runTimFunc(numLoops, &clocks, false);
        if (psIsFail(result)) {
            return result;
        }
        funcClocks = clocksPerCall(Stored::sum);
        if (funcClocks <= 0) {
            return PS_ACCUR_FAIL;
        }
        accuracy = psRelativeSpread(funcClocks, previous);
        if (badStatusActive()) {
            funcClocks = previous;
            numLoops /= 2;
            return PS_STATUS_WARN;
        }
        if (accuracy <= accuracyLimit) {
            return PS_OK;
        }
        previous = funcClocks;
        if (numLoops > maxLoops / 2) {
            return PS_ACCUR_WARN;
        }
        numLoops *= 2;
    }
}

// A test with a statistic function is measured by one run of it.
psResult psTool::statRun() {
    double clocks = psStatBudgetClocks(psCpuTicker::getFreq(), m_numMilliseconds);
    numIntLoops = psInnerLoops(tResolution, funcClocks);
    runTimFunc(m_minNumLoops, &clocks, false);
    if (psIsFail(result)) {
        return result;
    }
    funcClocks = clocksPerCall(storedBy(true));
    if (funcClocks <= 0) {
        return PS_ACCUR_FAIL;
    }
    accuracy = psRelativeSpread(funcClocks, funcClocks);
    return badStatusActive() ? PS_STATUS_WARN : PS_OK;
}

// Repeats a run n times and keeps the smallest. Deliberate: with the loop count unchanged the first
// element is the clocks of one call that is known already, the others are totals. The spread is
// then large, the smallest is that value, and the caller goes on to more loops.
psResult psTool::repeatTiming(int loops, int n) {
    double elements[avoidingRuns] = {};
    const bool reuse = numLoops == loops;
    if (reuse) {
        elements[0] = funcClocks;
    }
    numLoops = loops;
    for (int i = reuse ? 1 : 0; i < n; i++) {
        runTimFunc(numLoops, &elements[i], false);
        logLine(psFormat("%s   = ", runLabel()).c_str(), psText(loops));
        logLine("numClocks  = ", psText(numClocks));
        logLine("funcClocks = ", psText(elements[i]));
        flushLog();
        if (psIsFail(result)) {
            return result;
        }
    }
    accuracy = psMeanSpread(elements, n);
    funcClocks = psSmallest(elements, n);
    psResult r = accuracy > accuracyLimit ? PS_ACCUR_WARN : PS_OK;
    if (badStatusActive()) {
        r = PS_STATUS_WARN;
    }
    logLine("accuracy   = ", psAccuracyText(accuracy));
    logLine("bestClocks = ", psText(funcClocks));
    logLine("result     = ", psResultWord(r));
    flushLog();
    return r;
}

void psTool::avoidBadStatus() {
    bool bad87 = false;
    bool badSSX = false;
    if (checkCtrlActive && psBadCtrlStatus(bad87, badSSX)) {
        psPrintCtrlStatus(bad87, badSSX);
    }
    g_ostrm << PS_WARN << "-- Attempting to avoid bad control status\n" << PS_END;
    log("    Reduce loops to avoid bad ctrl status.\n");
    log("    Simple Measurements: \n");
    flushLog();
    psClearCtrlStatus();
    const psResult r = repeatTiming(numLoops, avoidingRuns);
    if (psIsFail(r)) {
        failMeasurement(r);
        return;
    }
    if (r != PS_STATUS_WARN && accuracy <= 2 * accuracyLimit) {
        g_ostrm << PS_WARN << "-- Attempt is successful\n" << PS_END;
        return;
    }
    log("    Cannot avoid bad ctrl status\n");
    flushLog();
    g_ostrm << PS_WARN << "-- Attempt fails: "
            << (r == PS_STATUS_WARN ? "Bad control status repeats.\n"
                                    : "Accuracy is unsatisfactory.\n")
            << PS_END;
}

void psTool::finishBest() {
    methodInfo += (countCalls ? "nCalls=" : "nLps=") + psText(numLoops);
    if (accuracy > accuracyLimit) {
        methodInfo += " acc=" + psAccuracyText(accuracy);
        if (result < PS_ACCUR_WARN) { // the note said "successfully" until now
            result = PS_ACCUR_WARN;
            note = "actual accuracy = " + psAccuracyText(accuracy);
        }
    }
    log("    Auto method: stop\n");
    flushLog();
}
