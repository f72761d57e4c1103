#pragma once

#include <ctime>
#include <memory>

#include "psparameter.h"
#include "psstepiterator.h"
#include "pstool.h"

class psCacheIterator;
class psConditions;
class psRunCheckpoint;
struct psRunFigures;
struct psLostTest;
struct psMeasurement;
class psNamedValues;

// What a test's registration text says: "name/second name/registering macro", each part empty
// when absent. Tests of a library give their class as the name.
struct psTestInfo {
    explicit psTestInfo(const psString& text);
    psString name;   // what "-t" conditions match
    psString second; // free for the author's use; shown in the test title
    psString macro;
};

// The floating-point words that the measured calls of a test left behind, united.
struct psCtrlWords {
    unsigned cw87 = 0, sw87 = 0, ssx = 0;
    bool recorded() const { return cw87 != 0; } // no control word is 0
};

// One registered test: a function of a library, the functions that call it, its parameters, and
// the outcome of running it over every combination of their values.
//
// run() drives the virtual steps in a fixed order and never throws: what a step throws, and what
// signal it raises, becomes result 10 and a message, and the test can be run again. A step that a
// fault jumps out of runs no destructors; what the test allocated is released all the same.
class psTest {
public:
    // Functions may be null. The source path is cut to its file name.
    psTest(psOldFunc custom, const psString& function, const psString& source,
           const psString& info);
    psTest(psLoopFunc loop, psStatFunc stat, const psString& function, const psString& source,
           const psString& info);
    psTest(psCallFunc call, psCallFunc init, psLoopFunc loop, psStatFunc stat,
           const psString& function, const psString& source, const psString& info);
    psTest(const psTest&) = delete;
    psTest& operator=(const psTest&) = delete;

    // The order of the virtual operations is kept by derived classes: add new ones at the end.
    virtual ~psTest();
    // Whether the user's conditions select this test. Asked before each run and by listings.
    virtual bool tobeRun(const psConditions& conditions);
    // The whole life of a measurement; returns the test's result.
    virtual psResult run();
    // Sort key of the list: below, equal to or above 0.
    virtual int compareFunc(const psTest* other) const;
    // The table row of a combination that holds a deprecated value.
    virtual void putTableResult_Deprecated(psResult r);
    // Once in a run, before the parameters are read: the test registers its parameters
    // (regParm). False: the test cannot be measured. Also called when only its parameters are
    // wanted, then followed by flushStart() alone.
    virtual bool canStart() { return true; }
    // Once in a run, at its end.
    virtual void flushStart() {}
    // Steps to the next combination of parameter values; false when all are done.
    virtual bool canContinue();
    // Once per combination: prepares the data. False: this combination is passed over.
    virtual bool initData() { return true; }
    // Once per combination, also when initData() failed: releases what it prepared. Called a
    // second time after a fault in between.
    virtual void flushData() {}
    // Measures the combination; PS_UNDEFINED when there is nothing to call.
    virtual psResult runTiming();
    virtual double getFlops() { return 0; }
    // Units of work (bytes, elements) in one call; asked after the measurement.
    virtual double getDivisor() { return 1.0; }
    virtual psString getUnit() { return " "; }
    // The function columns of a table row.
    virtual void funcToCstrm();
    virtual void parmsFromIstrm();
    virtual void parmsToOstrm();
    virtual void parmsToCstrm();
    virtual void parmsNameToCstrm();
    virtual void resultToCstrm(psResult r);
    virtual void constToOstrm() {}
    virtual void beginTest() {}
    virtual void endTest() {}
    virtual psString getComment();
    virtual bool isFloatFunction() { return false; }
    virtual bool isHotLine();
    virtual void initSettings();
    virtual void printAllMemoryBlocks(const psString&) {}
    virtual psString formatClocks(double clocks);
    virtual psString regInfo();
    virtual void putTableParms();
    virtual void putTableResult(psResult r);
    virtual void putTextParms(); // at the current message level
    virtual void putTextParms(MessageLevel level);
    virtual void loopData();
    virtual void outputResult(psResult r);
    virtual void outputConst();
    virtual void outputRegInfo();
    virtual void putTextResult(psResult r);
    // The types of the function's operands, "8u16u"; empty when there is nothing to say.
    virtual psString typeNames() { return {}; }
    // Asked after a measurement, when it is written: adds what tells measurements of the test
    // apart or came out of them, under the names of the registered table columns ("Length",
    // "Ratio"). A test that adds nothing has its parameters in the columns, in their order.
    virtual void addValues(psNamedValues&) {}
    // Asked after a measurement that did not fail: whether what its calls left is possible. What is
    // not, is printed as a failure of the measured function: nothing must be computed from it.
    virtual bool hasPossibleResult() { return true; }
    // What of these tells measurements apart, known as soon as the data are prepared: asked before
    // the first call when somebody outside keeps what a fatal call would take away. Adds what
    // addValues() adds under the same names.
    virtual void addKeys(psNamedValues&) {}

    const psString& functionName() const { return m_function; }
    const psString& sourceName() const { return m_source; }
    const psTestInfo& info() const { return m_info; }
    psResult result() const { return m_result; }
    time_t startTime() const { return m_startTime; }
    time_t endTime() const { return m_endTime; }
    bool hasMeasured() const { return m_measured; }             // any combination of the last run
    long long clocksInCalls() const { return m_clocksInCalls; } // as psTool has them, of all of it
    const psCtrlWords& ctrlWords() const { return m_ctrlWords; }
    psTool& tool() { return m_tool; }

    // The test's parameters, in the order of their loops (the last varies fastest). The objects
    // stay their owner's.
    void regParm(psParameter& parm) { m_parms.append(&parm); }
    const psList<psParameter*>& parms() const { return m_parms; }
    void forgetParms();
    // As regParm, but in cache mode the first such parameter is scaled until the data fit into
    // the cache, then until they do not. object: whose size counts (null: all blocks); setter:
    // the test's own way of scaling (null: by powers of two).
    void regCacheParm(psIterator<int>& parm, psObject* object = nullptr,
                      bool (*setter)(psParameter*, int, int, bool) = nullptr);

    // False: the settings file names the tests to run and this one is not among them.
    bool setIniSection(const psString& function);
    void putTableName();
    // Makes the test register its parameters, nothing else.
    void startAndStop();
    void initCtrlStatus();
    psResult checkCtrlStatus();
    static bool badCtrlStatus(bool& bad87, bool& badSSX);
    static void printCtrlStatus(bool p87, bool pSSX);
    static void clearCtrlStatus();
    void setDeprecatedFlag(bool on);
    void setTimingResult(double clocks, const psString& comment);
    // What the parameters stand on, in the order of their loops.
    psNamedValues parameterValues() const;
    psString combination() const; // the same as a text
    // What another process was in when it ended, in place of run().
    void reportLost(const psLostTest& lost);
    psStringList combinationCells();
    // The record of the combination that was measured last.
    psMeasurement record(psResult r);
    // Clocks per unit, or with rate the floating-point operations per second in millions.
    psString perfString(bool rate);
    psString testResultString();
    // The cache mode and the separator behind it; empty outside of cache mode.
    psString getCacheComment(const psString& separator);
    // A vector of this combination: see psAllocateVector.
    static void* allocate(int size, int n, void* tag = nullptr);
    static void deallocate(void* block);
    // Copies of all blocks, and back from the copies.
    static void reserveAllVectors();
    static void resetAllVectors();
    static void deleteReservedVectors();

    static void raiseResult(psResult r) { m_currentResult = psWorse(m_currentResult, r); }

    static psResult m_currentResult; // of the test being run
    static bool& m_cache;            // "-C"
    static bool& m_unmasked;         // "-W": floating-point exceptions of the measured code trap
    static bool& m_pressing;         // "-P"
    static int& m_hot;               // "-H": 0 no, 1 with the column, 2 only hot lines
    static int& m_vectorNum;         // vectors of the current combination
    static int& m_vectorShift;
    // Columns of the performance table: the function's and the parameters', then the result's.
    static int m_numParmsColm;
    static int m_numResultColm;
    static psRunFigures m_figures; // of this run

protected:
    void putTextError(psResult r);
    // The ends of run(): the state of a test that has not run; its result, with text and record.
    void beginRun();
    void endRun();
    // Whether the next cache parameter is to be scaled, and the iterator (taken) that does it.
    bool wantsCacheIterator() const { return m_cache && !m_cacheIterator; }
    void regCacheIterator(psCacheIterator* iterator);

private:
    bool runSteps();
    void measure();
    void putLostRow(const psLostTest& lost);
    void afterException(const psString& message, psResult result,
                        const psRunCheckpoint& checkpoint);
    void readParms();
    void restoreParms();

    bool nextCombination();
    bool stepParms();
    bool retryCacheSize();
    void runCombination(bool& isFirst);
    bool prepared(bool& isFirst);
    void measureCombination();
    psResult timedResult();
    bool validCacheSize();
    bool reportDamage(const char* part);
    void endLoop();

    bool m_deprecated = false;
    time_t m_startTime;
    time_t m_endTime;
    psString m_function;
    psString m_source;
    psTestInfo m_info;
    psTool m_tool;
    psResult m_result = PS_UNDEFINED;
    psLoopFunc m_loop = nullptr;
    psStatFunc m_stat = nullptr;
    psCallFunc m_call = nullptr;
    psCallFunc m_init = nullptr;
    psOldFunc m_custom = nullptr;
    bool m_noCombination = true;
    psList<psParameter*> m_parms;
    psList<std::function<void()>> m_keptDefinitions; // from before this test read its own
    psCacheIterator* m_cacheIterator = nullptr;      // owned
    bool m_cacheInvalid = false;
    bool m_dataHeld = false; // between initData() and flushData()
    bool m_measured = false;
    long long m_clocksInCalls = 0;
    psCtrlWords m_ctrlWords;
    // While a combination is written: what its writers share, as a test is asked only once.
    std::unique_ptr<psMeasurement> m_record;
};
