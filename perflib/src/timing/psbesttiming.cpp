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

void psTool::collectLine(const char* label, const psString& value) {
    collect(psString("        ") + label + value + "\n");
}

// Other failures than of the accuracy have told their own story.
psTool::Step psTool::exitFailed(psResult r) {
    result = r;
    collect("    Auto method: exit\n");
    emitDetail();
    if (r == PS_ACCUR_FAIL) {
        dumpDetail();
    }
    return Step::exit;
}

void psTool::emitDetail() {
    if (!g_ostrm.accepts(PS_DETAIL)) {
        return;
    }
    g_ostrm << PS_DETAIL << m_detail << PS_END;
    m_detail = "";
}

// A failed measurement shows its history also to those who did not ask for details.
void psTool::dumpDetail() {
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
    collect("    Auto method: start\n");
    collectLine("minClocks  = ", clockStr(minClocks));
    emitDetail();
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
        collect("    Prior Measurement: \n");
        collectLine(psFormat("%s   = ", runLabel()).c_str(), psText(it.loops));
        emitDetail();
        const psResult r = startIterations(it.loops, it.minClocks);
        collectLine("numClocks  = ", psText(numClocks));
        collectLine("funcClocks = ", psText(funcClocks));
        collectLine("result     = ", psResultWord(r));
        emitDetail();
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
            exitFailed(r);
            return false;
        }
    }
}

psResult psTool::startIterations(int loops, long long minClocks) {
    numLoops = loops;
    double clocks = 0;
    runTimFunc(loops, &clocks, true);
    funcClocks = clocks / numLoops;
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
    collect("    Iteration Measurement: \n");
    collectLine("startLoops = ", psText(startLoops));
    collectLine("maxLoops   = ", psText(maxLoops));
    emitDetail();
    const psResult r = continueIterations(startLoops, maxLoops);
    collectLine("stopLoops  = ", psText(numLoops));
    collectLine("stopClocks = ", psText(numClocks));
    collectLine("accuracy   = ", psAccuracyText(accuracy));
    collectLine("funcClocks = ", psText(funcClocks));
    collectLine("result     = ", psResultWord(r));
    emitDetail();
    if (r == PS_STATUS_WARN) {
        return Step::avoid;
    }
    if (psIsFail(r)) {
        return exitFailed(r);
    }
    return judgeIteration(maxLoops);
}

psTool::Step psTool::judgeIteration(int maxLoops) {
    if (accuracy <= goodAccuracy) {
        return Step::stop;
    }
    collect("    Simple Measurements: \n");
    emitDetail();
    const psResult r = repeatTiming(numLoops, confirmingRuns);
    if (psIsFail(r)) {
        return exitFailed(r);
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
        funcClocks = clocks / numLoops;
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
    funcClocks = perCall(numClocks, numLoops, true);
    if (funcClocks <= 0) {
        return PS_ACCUR_FAIL;
    }
    accuracy = psRelativeSpread(funcClocks, funcClocks);
    return badStatusActive() ? PS_STATUS_WARN : PS_OK;
}

// Repeats a run n times and keeps the smallest. With the loop count unchanged the first element
// is the clocks of one call that is known already, the others are totals: the spread is then
// large, the smallest is that value, and the caller goes on to more loops. Meant so.
psResult psTool::repeatTiming(int loops, int n) {
    double elements[avoidingRuns] = {};
    const bool reuse = numLoops == loops;
    if (reuse) {
        elements[0] = funcClocks;
    }
    numLoops = loops;
    for (int i = reuse ? 1 : 0; i < n; i++) {
        runTimFunc(numLoops, &elements[i], false);
        collectLine(psFormat("%s   = ", runLabel()).c_str(), psText(loops));
        collectLine("numClocks  = ", psText(numClocks));
        collectLine("funcClocks = ", psText(elements[i]));
        emitDetail();
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
    collectLine("accuracy   = ", psAccuracyText(accuracy));
    collectLine("bestClocks = ", psText(funcClocks));
    collectLine("result     = ", psResultWord(r));
    emitDetail();
    return r;
}

void psTool::avoidBadStatus() {
    bool bad87 = false;
    bool badSSX = false;
    if (checkCtrlActive && psBadCtrlStatus(bad87, badSSX)) {
        psPrintCtrlStatus(bad87, badSSX);
    }
    g_ostrm << PS_WARN << "-- Attempting to avoid bad control status\n" << PS_END;
    collect("    Reduce loops to avoid bad ctrl status.\n");
    collect("    Simple Measurements: \n");
    emitDetail();
    psClearCtrlStatus();
    const psResult r = repeatTiming(numLoops, avoidingRuns);
    if (psIsFail(r)) {
        exitFailed(r);
        return;
    }
    if (r != PS_STATUS_WARN && accuracy <= 2 * accuracyLimit) {
        g_ostrm << PS_WARN << "-- Attempt is successful\n" << PS_END;
        return;
    }
    collect("    Cannot avoid bad ctrl status\n");
    emitDetail();
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
    collect("    Auto method: stop\n");
    emitDetail();
}
