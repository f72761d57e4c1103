#include "pstool.h"

#include <algorithm>

#include "psbatches.h"
#include "psctrl87.h"
#include "psinfo.h"
#include "psinit.h"
#include "pspriority.h"
#include "pssettings.h"
#include "pstimingmath.h"
#include "pstrace.h"
#include "psturns.h"

namespace {
// The auto method: short enough for primitives of a second, long enough for a few clocks.
constexpr int autoMinLoops = 1;
constexpr int autoMaxLoops = 2048;
constexpr long long autoMinClocks = 10000;

// The older entry has no place for these in the signature of a loop function.
psOldFunc g_oldFunc = nullptr;
psTool* g_oldTool = nullptr;

psResult oldLoop(int numLoops, long long* clocks) {
    const psResult result = g_oldFunc(*g_oldTool, numLoops);
    *clocks = g_oldTool->numClocks * psCpuTicker::getClockFactor();
    return result;
}

void attention(const char* cannot, const char* instead) {
    g_ostrm << PS_ERR << " ATTENTION! The test cannot execute " << cannot << " timing.\n "
            << instead << " timing will be run instead.\n"
            << PS_END;
}

// A line of the timing log.
void detail(const char* label, const psString& value) {
    g_ostrm << PS_DETAIL << "        " << label << value << "\n" << PS_END;
}
} // namespace

PS_INIT_SECOND psTool g_tool;

std::span<const psTimingMethod> psTool::methods() {
    using Tool = psToolSettings;
    static constexpr psMethodSetting manual[] = {{"NumLoops", &Tool::loopNumLoops, 1}};
    static constexpr psMethodSetting statistic[] = {{"NumCalls", &Tool::statMinCalls, 1},
                                                    {"TotalCpuClocks", &Tool::statMaxClocks, 0}};
    static constexpr psMethodSetting iterative[] = {{"StartNumLoops", &Tool::bestMinLoops, 1},
                                                    {"StopNumLoops", &Tool::bestMaxLoops, 1},
                                                    {"MinCpuClocks", &Tool::bestMinClocks, 1}};
    static constexpr auto keepThem = [](psTool&) {};
    static constexpr psTimingMethod table[] = {
        {PS_AUTO,
         "Auto",
         {},
         keepThem,
         [](psTool& tool) { tool.setMethodAuto(); },
         &psTool::runAuto,
         true},
        {PS_MANUAL, "Manual", manual, keepThem,
         [](psTool& tool) { tool.setMethodLoop(tool.loopNumLoops); }, &psTool::runManual, false},
        {PS_STATISTIC, "Statistic", statistic, keepThem,
         [](psTool& tool) { tool.setMethodStat(tool.statMinCalls, tool.statMaxClocks); },
         &psTool::runStatistic, false},
        {PS_ITERATIVE, "Iterative", iterative,
         [](psTool& tool) {
             getAutoParameters(tool.bestMinLoops, tool.bestMaxLoops, tool.bestMinClocks);
         },
         [](psTool& tool) {
             tool.setMethodBest(tool.bestMinLoops, tool.bestMaxLoops, tool.bestMinClocks);
         },
         &psTool::runIterative, true},
    };
    return table;
}

const psTimingMethod* psTool::findMethod(int id) {
    for (const psTimingMethod& candidate : methods()) {
        if (candidate.id == id) {
            return &candidate;
        }
    }
    return nullptr;
}

psTimes psTool::times() const {
    const psTimingMethod* const used = findMethod(method);
    psTimes t;
    t.method = used ? used->name : "";
    t.clocksPerCall = funcClocks;
    t.calls = numLoops;
    t.batches = g_batches.count();
    t.spread = g_batches.spread();
    t.switches = m_switches;
    t.accuracy = accuracy;
    t.hasAccuracy = used && used->judgesAccuracy;
    t.remark = methodInfo;
    return t;
}

int psTool::numIntLoops = 1;
int psTool::tResolution = 4;
constinit int& psTool::m_numMilliseconds = g_settings.milliseconds;
constinit int& psTool::m_minNumLoops = g_settings.minCalls;
int psTool::m_extLoopIdx = 100000;
constinit int& psTool::m_numExtLoops = g_settings.extLoops;
int psTool::extLoop = 0;
int psTool::extLoopPoint = 0;
constinit int& psTool::m_priority = g_settings.priority;
psResult (*psTool::m_pCheckStatus)(int status) = nullptr;
constinit psString& psTool::path = g_settings.inDir;
constinit psString& psTool::path_tmp = g_settings.outDir;

void psTool::reset() {
    result = PS_UNDEFINED;
    accuracy = 1.0;
    funcClocks = 0;
    note = "";
    methodInfo = "";
    funcLoop = nullptr;
    funcStat = nullptr;
    funcCall = nullptr;
    initFunc = nullptr;
    g_batches.clear();
    startTime = time(nullptr);
    numClocks = 0;
    clocksInCalls = 0;
    numLoops = 0;
}

void psTool::setMethodLoop(int loops) {
    method = PS_MANUAL;
    loopNumLoops = std::max(loops, 1);
}

void psTool::setMethodStat(int minCalls, long long maxClocks) {
    method = PS_STATISTIC;
    statMinCalls = minCalls;
    statMaxClocks = maxClocks;
}

void psTool::setMethodBest(int minLoops, int maxLoops, long long minClocks) {
    method = PS_ITERATIVE;
    bestMinLoops = std::max(minLoops, 1);
    bestMaxLoops = std::max(psTimesLoops(minLoops, 8), maxLoops);
    bestMinClocks = minClocks;
}

bool psTool::getMethodLoop(int& loops) const {
    if (method != PS_MANUAL) {
        return false;
    }
    loops = loopNumLoops;
    return true;
}

bool psTool::getMethodStat(int& minCalls, long long& maxClocks) const {
    if (method != PS_STATISTIC) {
        return false;
    }
    minCalls = statMinCalls;
    maxClocks = statMaxClocks;
    return true;
}

bool psTool::getMethodBest(int& minLoops, int& maxLoops, long long& minClocks) const {
    if (method != PS_ITERATIVE) {
        return false;
    }
    minLoops = bestMinLoops;
    maxLoops = bestMaxLoops;
    minClocks = bestMinClocks;
    return true;
}

void psTool::getAutoParameters(int& minLoops, int& maxLoops, long long& minClocks) {
    minLoops = autoMinLoops;
    maxLoops = autoMaxLoops;
    minClocks = autoMinClocks;
}

void psTool::setLoopFactor(int f) {
    const psLoopRange range = psLoopRangeOfFactor(f);
    factorMinLoops = range.minLoops;
    factorMaxLoops = range.maxLoops;
}

void psTool::ctrlStart() {
    ps87::instance().start();
    psSSX::instance().start();
}

void psTool::ctrlStop() {
    ps87::instance().stop();
    psSSX::instance().stop();
}

void psTool::updateResult(psResult r) {
    if (r <= result) {
        return;
    }
    result = r;
    note = psResultWord(r);
}

psString psTool::getAccuracyStr(double a) {
    return psAccuracyText(a);
}

psResult psTool::timing(psLoopFunc loop, psStatFunc stat, psCallFunc call, psCallFunc init) {
    reset();
    if (!loop && !stat && !call) {
        g_ostrm << PS_ERR
                << " Internal test problem: The test cannot execute standard timing.\n"
                   " No one of funcLoop, funcStat or funcCall is registered in the test.\n"
                << PS_END;
        return result = PS_FAIL;
    }
    funcLoop = loop;
    funcStat = stat;
    funcCall = call;
    initFunc = init;
    if (g_turnTaker && stat) {
        return result = g_turnTaker->atPrepared(psTurns(stat, call, init));
    }
    const long switchesBefore = psInvoluntarySwitches();
    if (const psTimingMethod* const chosen = findMethod(method)) {
        (this->*chosen->run)();
    } else {
        updateResult(internalFail(unknownMethodLine));
    }
    m_switches = static_cast<int>(psInvoluntarySwitches() - switchesBefore);
    return result;
}

psResult psTool::timing(psOldFunc old) {
    g_oldFunc = old;
    g_oldTool = this;
    return timing(oldLoop, nullptr, nullptr, nullptr);
}

void psTool::runAuto() {
    const psTraceScope trace("autoTiming");
    autoLoopTiming();
}

void psTool::runIterative() {
    const psTraceScope trace("iterativeTiming");
    bestTiming(bestMinLoops, bestMaxLoops, bestMinClocks);
}

psResult psTool::autoLoopTiming() {
    bestTiming(factorMinLoops ? factorMinLoops : autoMinLoops,
               factorMaxLoops ? factorMaxLoops : autoMaxLoops, autoMinClocks);
    return result;
}

void psTool::runManual() {
    if (funcLoop || funcCall) {
        const psTraceScope trace("customLoopTiming");
        customLoopTiming();
        return;
    }
    attention("Manual loop", "Statistic");
    setMethodStat(loopNumLoops, 0);
    timing(nullptr, funcStat, nullptr, initFunc);
}

void psTool::runStatistic() {
    if (funcStat || funcCall) {
        const psTraceScope trace("statisticTiming");
        statisticTiming();
        return;
    }
    attention("Statistic", "Manual loop");
    setMethodLoop(statMinCalls);
    timing(funcLoop, nullptr, nullptr, initFunc);
}

void psTool::customLoopTiming() {
    g_ostrm << PS_DETAIL << "    Manual method: \n" << PS_END;
    detail("numLoops   = ", psText(loopNumLoops));
    double clocks = 0;
    runTimFunc(loopNumLoops, &clocks, true);
    funcClocks = clocksPerCall(storedBy(funcLoop != nullptr));
    accuracy = 0;
    methodInfo += "nLps=" + psText(numLoops);
    detail("funcClocks = ", psText(funcClocks));
    detail("result     = ", psResultWord(result));
}

void psTool::statisticTiming() {
    g_ostrm << PS_DETAIL << "    Statistical method:\n" << PS_END;
    detail("minCalls   = ", psText(statMinCalls));
    detail("maxClocks  = ", clockStr(statMaxClocks));
    runTimFuncStat(statMaxClocks, statMinCalls);
    accuracy = 0;
    methodInfo += "nCalls=" + psText(numLoops);
    detail("numCalls   = ", psText(numLoops));
    detail("funcClocks = ", psText(funcClocks));
    detail("result     = ", psResultWord(result));
}
