// The measured runs of the timing engine: who is called, between which clock readings, with what
// around it. Trace, priority and the floating-point watchers stay outside the timed interval.

#include "pstool.h"

#include "psbatches.h"
#include "psinterruption.h"
#include "pspriority.h"
#include "psreserve.h"
#include "pstrace.h"

namespace {
// The surroundings of the calls of a run that the test times itself. (A fault jumps over these
// destructors; the test then does their work.)
class CtrlWatch {
public:
    CtrlWatch() { psTool::ctrlStart(); }
    ~CtrlWatch() { psTool::ctrlStop(); }
    CtrlWatch(const CtrlWatch&) = delete;
    CtrlWatch& operator=(const CtrlWatch&) = delete;
};

class RaisedPriority {
public:
    explicit RaisedPriority(int priorityClass) { psSetPriority(priorityClass); }
    ~RaisedPriority() { psResetPriority(); }
    RaisedPriority(const RaisedPriority&) = delete;
    RaisedPriority& operator=(const RaisedPriority&) = delete;
};

long long spanClocks(unsigned long long start, unsigned long long stop) {
    return static_cast<long long>(stop - start) * psCpuTicker::getClockFactor();
}
} // namespace

psResult psTool::internalFail(int line) const {
    g_ostrm << PS_ERR << "PS internal fail: file perflib/src/pstool, line " << line << "\n"
            << PS_END_FLUSH;
    return PS_FAIL;
}

psTool::Stored psTool::storedBy(bool byTest) const {
    return byTest && !harnessCalls ? Stored::oneCall : Stored::sum;
}

double psTool::clocksPerCall(Stored stored) const {
    const int calls = stored == Stored::sum && numLoops ? numLoops : 1;
    return static_cast<double>(numClocks) / calls;
}

// Behind a run: what it spent in timed spans. A function of the test that does not tell its spans
// counts with the clocks that it stores, unless it failed: then they may still be the budget.
void psTool::countSpans() {
    if (g_batches.count() > 0) {
        clocksInCalls += g_batches.sum();
    } else if (!psIsFail(result)) {
        clocksInCalls += numClocks;
    }
}

// One run of the statistic method; leaves the clocks per call in funcClocks and the calls made in
// numLoops.
void psTool::runTimFuncStat(long long maxClocks, int calls) {
    psInterruption::check();
    long long clocks = maxClocks;
    g_batches.clear();
    if (harnessCalls) {
        if (!funcCall) {
            result = PS_UNDEFINED;
            return;
        }
        updateResult(timCall_Stat(&calls, &clocks, true));
    } else {
        const CtrlWatch watch;
        const RaisedPriority priority(m_priority);
        const psTraceScope trace("ntkFunctionCalls");
        updateResult(funcStat ? funcStat(&calls, &clocks, numIntLoops)
                              : timCall_Stat(&calls, &clocks, false));
    }
    numClocks = clocks;
    numLoops = calls;
    countSpans();
    funcClocks = clocksPerCall(storedBy(funcStat != nullptr));
}

// One measured run, repeated once when it gave no clocks. *clocks is the clock budget of a
// statistic run on entry and the total on return; funcClocks is left undivided.
void psTool::runTimFunc(int loops, double* clocks, bool loopMode) {
    const double budget = *clocks;
    for (int pass = 0; pass < 2; pass++) {
        psInterruption::check();
        numClocks = 0;
        g_batches.clear(); // the spans of the last run count: a prior run has spans of its own kind
        if (harnessCalls && !funcCall) {
            result = PS_UNDEFINED;
            return;
        }
        updateResult(harnessCalls ? harnessRun(loops, budget, loopMode)
                                  : watchedRun(loops, budget, loopMode));
        countSpans();
        if (numClocks >= 1 || psIsFail(result)) {
            break;
        }
    }
    *clocks = static_cast<double>(numClocks);
    numLoops = loops;
    funcClocks = static_cast<double>(numClocks);
}

psResult psTool::harnessRun(int& loops, double budget, bool loopMode) {
    const psTraceScope trace("ntkFunctionCalls");
    if (loopMode) {
        return timCall_Loop(loops, &numClocks, true);
    }
    numClocks = static_cast<long long>(budget);
    return timCall_Stat(&loops, &numClocks, true);
}

psResult psTool::watchedRun(int& loops, double budget, bool loopMode) {
    if (checkCtrlStatus && initFunc) {
        const psTraceScope trace("initFunc call");
        initFunc();
    }
    const CtrlWatch watch;
    const psTraceScope trace("ntkFunctionCalls");
    const RaisedPriority priority(m_priority);
    return callOnce(loops, budget, loopMode);
}

psResult psTool::callOnce(int& loops, double budget, bool loopMode) {
    if (!loopMode && funcStat) {
        numClocks = static_cast<long long>(budget);
        return funcStat(&loops, &numClocks, numIntLoops);
    }
    if (funcLoop) {
        return funcLoop(loops, &numClocks);
    }
    if (funcCall) {
        return timCall_Loop(loops, &numClocks, false);
    }
    return internalFail(nothingToCallLine);
}

psResult psTool::statusResult(int status) const {
    return m_pCheckStatus ? m_pCheckStatus(status) : PS_OK;
}

// The first call, untimed; returns its status.
int psTool::warmUp() const {
    if (initFunc) {
        initFunc();
    }
    return funcCall();
}

// The tool's own loop over a call function. Restoring the input is part of the timed interval:
// this measures "set and use".
psResult psTool::timCall_Loop(int loops, long long* clocks, bool reset) {
    if (!funcCall) {
        return internalFail(nothingToCallLine);
    }
    int kept = warmUp();
    if (m_pCheckStatus && kept < 0) {
        return m_pCheckStatus(kept);
    }
    const auto start = ntk_StartCpuClocks();
    for (int i = 0; i < loops; i++) {
        if (initFunc) {
            initFunc();
        }
        if (reset) {
            psRestoreBlocks();
        }
        const int status = funcCall();
        if (status != 0) {
            kept = status;
        }
        if (status < 0) {
            break;
        }
    }
    *clocks = spanClocks(start, ntk_StopCpuClocks());
    return statusResult(kept);
}

// The tool's own statistic loop. Deliberate: every timed call is followed by an untimed second one,
// on data that the first has already used, and a status of the second goes before one of the first.
psResult psTool::timCall_Stat(int* calls, long long* clocks, bool reset) {
    if (!funcCall) {
        return internalFail(nothingToCallLine);
    }
    int kept = warmUp();
    if (m_pCheckStatus && kept < 0) {
        return m_pCheckStatus(kept);
    }
    int count = 0;
    long long total = 0;
    int second = 0;
    while (second >= 0 && (count < *calls || total < *clocks)) {
        if (initFunc) {
            initFunc();
        }
        const auto start = ntk_StartCpuClocks();
        if (reset) {
            psRestoreBlocks();
        }
        const int first = funcCall();
        const long long span = spanClocks(start, ntk_StopCpuClocks());
        g_batches.add(span);
        total += span;
        second = funcCall();
        kept = second != 0 ? second : first;
        count++;
    }
    *calls = count;
    *clocks = total;
    return statusResult(kept);
}
