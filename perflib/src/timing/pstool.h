#pragma once

#include <ctime>
#include <span>
#include <variant>

#include "pscputick_gcc.h"
#include "psmeasurement.h"
#include "psresult.h"

// The timing engine: how many clocks does one call of a primitive cost? A test hands over up to
// four functions of its own; the tool picks a method, drives them, guards the floating-point words
// around each run and judges the accuracy.
//
// The functions of a test:
// - loop: calls the primitive numLoops times and stores in *clocks what its method takes: Manual
//   takes the clocks of one call (such as the smallest), Auto and Iterative the sum of the calls.
//   One that serves both because it stands beside a stat function stores those of one call: with
//   a stat function the runs of a loop only find out how long a call lasts, from one loop on.
// - stat: on entry *nCalls is the minimum number of timed calls and *clocks the clock budget; goes
//   on, numIntLoops calls at a time, until both are reached; stores the calls made and the clocks
//   of one call, in every method.
// - call: one untimed call; returns the library's status.
// - init: restores the input before a call; may be absent.
// The tool's own loops over call store the sum. psTool::clocksPerCall is where this is acted on.
using psLoopFunc = psResult (*)(int numLoops, long long* clocks);
using psStatFunc = psResult (*)(int* nCalls, long long* clocks, int numIntLoops);
using psCallFunc = int (*)();
class psTool;
// The older kind of test: drives the tool itself and leaves its clocks in tool.numClocks.
using psOldFunc = psResult (*)(psTool& tool, int loops);

enum psMethod : int { PS_AUTO = 0, PS_MANUAL = 1, PS_STATISTIC = 2, PS_ITERATIVE = 3 };

// What the session sets once and every test copies before it runs. Clocks are time-stamp-counter
// clocks; nothing is converted to seconds.
struct psToolSettings {
    psResult result = PS_UNDEFINED; // worst result of the current measurement
    double funcClocks = 0;          // clocks per call, the answer
    int numLoops = 0;               // loops (or calls) of the last run
    double accuracyLimit = 0.05;    // largest relative spread that counts as accurate
    int method = PS_AUTO;           // psMethod; anything else is an internal fail
    int loopNumLoops = 10;
    int bestMinLoops = 1;
    int bestMaxLoops = 2048;
    bool countCalls = false;   // runs are labelled "numCalls" instead of "numLoops"
    bool harnessCalls = false; // the tool loops over call, all test vectors reset before each
    long long bestMinClocks = 100;
    int statMinCalls = 12;
    long long statMaxClocks = 10000;
    // init runs before every measured run, and flags that the calls leave behind are a problem to
    // be avoided rather than only told.
    bool checkCtrlStatus = false;
};

// A setting of a timing method and the smallest value that makes sense.
struct psMethodSetting {
    const char* name;
    std::variant<int psToolSettings::*, long long psToolSettings::*> value;
    int lowest;
};

// One timing method: what the user calls it, what can be set, who runs it. The questions, the
// settings file, the log and the results know the methods from psTool::methods() alone.
struct psTimingMethod {
    psMethod id;
    const char* name;
    std::span<const psMethodSetting> settings; // in the order of the questions
    void (*setDefaults)(psTool&);              // for a tool that is set to another method
    void (*choose)(psTool&);                   // sets a tool to it, with the settings it holds
    void (psTool::*run)();
    bool judgesAccuracy; // compares runs, and so has an accuracy to tell
};

class psTool : public psToolSettings {
public:
    psTool() { reset(); }
    psTool(const psTool&) = default;
    psTool& operator=(const psTool&) = default;
    virtual ~psTool() = default;

    void reset(); // forgets the last measurement; the settings stay
    void copySettings(const psTool& other) { static_cast<psToolSettings&>(*this) = other; }

    static std::span<const psTimingMethod> methods();
    static const psTimingMethod* findMethod(int id); // null: no such method
    // What the last measurement gave.
    psTimes times() const;

    void setMethodAuto() { method = PS_AUTO; }
    void setMethodLoop(int loops);
    void setMethodStat(int minCalls, long long maxClocks);
    void setMethodBest(int minLoops, int maxLoops, long long minClocks);
    // True, and the settings of that method, when it is the chosen one.
    bool getMethodAuto() const { return method == PS_AUTO; }
    bool getMethodLoop(int& loops) const;
    bool getMethodStat(int& minCalls, long long& maxClocks) const;
    bool getMethodBest(int& minLoops, int& maxLoops, long long& minClocks) const;
    // The fixed defaults of the auto method.
    static void getAutoParameters(int& minLoops, int& maxLoops, long long& minClocks);
    // Scales the loop range of the auto method by 2^-f: see psLoopRangeOfFactor.
    void setLoopFactor(int f);
    void setFuncTicks(double clocks) { funcClocks = clocks; }

    // The floating-point watchers, also for tests that time themselves.
    static void ctrlStart();
    static void ctrlStop();
    // Keeps the worse result, and its word as the note.
    void updateResult(psResult r);
    static psString getAccuracyStr(double accuracy);

    // Measures by the chosen method; returns the worst result met. Without any function to call,
    // an error message and PS_FAIL. A method that the functions cannot serve is replaced by one
    // that they can, with a message; this tool then stays with it.
    psResult timing(psLoopFunc loop, psStatFunc stat, psCallFunc call, psCallFunc init);
    psResult timing(psOldFunc old);
    psResult autoLoopTiming();

    psString note;       // for the report: "actual accuracy = 7.3%"
    psString methodInfo; // for the report: "nLps=4096 acc=7.3%"
    bool checkCtrlActive = false;
    long long numClocks = 0; // total of the last run
    // Within the timed spans of all runs of the last measurement: see countSpans.
    long long clocksInCalls = 0;
    double accuracy = 1.0;  // relative spread of the last judgement
    int factorMinLoops = 0; // 0: the default of the auto method
    int factorMaxLoops = 0;
    time_t startTime = 0;
    time_t createTime = time(nullptr);
    psLoopFunc funcLoop = nullptr;
    psStatFunc funcStat = nullptr;
    psCallFunc funcCall = nullptr;
    psCallFunc initFunc = nullptr;

    static int numIntLoops;
    static int tResolution;        // of the timer, clocks
    static int& m_numMilliseconds; // "-c"
    static int& m_minNumLoops;     // "-j": calls of the iterative method's statistic run, at least
    static int m_extLoopIdx;
    static int& m_numExtLoops; // "-J"
    static int extLoop, extLoopPoint;
    static int& m_priority; // class for psSetPriority
    // Judges a library status in the tool's own loops; null: they report PS_OK.
    static psResult (*m_pCheckStatus)(int status);
    static psString& path;     // the directory for inputs
    static psString& path_tmp; // for outputs

private:
    // How the label of a run reads, and what the iterative method still may do.
    struct Iteration {
        int loops, maxLoops;
        long long minClocks;
    };
    enum class Step { again, avoid, stop, exit };

    // The runners of the methods.
    void runAuto();
    void runManual();    // or the statistic method, when there is no loop
    void runStatistic(); // or the manual method, when there is no stat function
    void runIterative();

    void customLoopTiming();
    void statisticTiming();
    void runTimFuncStat(long long maxClocks, int calls);
    void runTimFunc(int loops, double* clocks, bool loopMode);
    psResult callOnce(int& loops, double budget, bool loopMode);
    psResult watchedRun(int& loops, double budget, bool loopMode);
    psResult harnessRun(int& loops, double budget, bool loopMode);
    int warmUp() const;
    psResult timCall_Loop(int loops, long long* clocks, bool reset);
    psResult timCall_Stat(int* calls, long long* clocks, bool reset);
    psResult statusResult(int status) const;
    void countSpans();
    // What the clocks that a run stored stand for.
    enum class Stored { oneCall, sum };
    double clocksPerCall(Stored stored) const;
    // By a function of the test that stores those of one call, else by a loop of the tool.
    Stored storedBy(bool byTest) const;
    // The lines that the message names are fixed: logs of many years are searched for them.
    static constexpr int nothingToCallLine = 288; // a run without a function that it could call
    static constexpr int unknownMethodLine = 864;
    psResult internalFail(int line) const;

    void bestTiming(int minLoops, int maxLoops, long long minClocks);
    bool priorMeasurement(Iteration& it);
    psResult startIterations(int loops, long long minClocks);
    void iterationMeasurement(Iteration& it);
    Step oneIteration(int startLoops, int maxLoops);
    psResult continueIterations(int startLoops, int maxLoops);
    psResult doubleLoops(int startLoops, int maxLoops);
    psResult statRun();
    Step judgeIteration(int maxLoops);
    psResult repeatTiming(int loops, int n);
    void avoidBadStatus();
    void finishBest();
    bool badStatusActive() const;
    void log(const psString& text) { m_detail += text; }
    void logLine(const char* label, const psString& value);
    Step failMeasurement(psResult r);
    void flushLog();
    void flushLogOnFailure();
    const char* runLabel() const { return countCalls ? "numCalls" : "numLoops"; }

    psString m_detail;
    int m_switches = 0; // of the last measurement
};

extern psTool g_tool;
