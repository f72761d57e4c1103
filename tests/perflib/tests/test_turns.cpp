// Somebody who takes turns: what is asked, what is prepared, who measures.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured.h"
#include "psiterator.h"
#include "pstable.h"
#include "pstest.h"
#include "psturns.h"

namespace {
std::string g_steps; // of test and taker, in their order

psResult stat(int* calls, long long* clocks, int) {
    g_steps += "stat ";
    *calls = 1;
    *clocks = 1;
    return PS_OK;
}
psResult loop(int, long long* clocks) {
    g_steps += "loop ";
    *clocks = 1;
    return PS_OK;
}

class Stepped : public psTest {
public:
    explicit Stepped(psStatFunc statistic)
        : psTest(loop, statistic, "ntksStepped_8u", "stepped.cpp", "Stepped") {}
    bool canStart() override {
        for (psParameter* parm : parameters) {
            regParm(*parm);
        }
        return true;
    }
    bool initData() override {
        g_steps += "init ";
        return isReady;
    }
    void flushData() override { g_steps += "flush "; }

    std::vector<psParameter*> parameters;
    bool isReady = true;
};

class Taker : public psTurnTaker {
public:
    Taker() { g_turnTaker = this; }
    ~Taker() override { g_turnTaker = nullptr; }
    Taker(const Taker&) = delete;
    Taker& operator=(const Taker&) = delete;

    bool wants(const psString& function, const psNamedValues& parameters) override {
        g_steps += function.c_str();
        for (const psNamedValue& parameter : parameters) {
            const psString text = parameter.name + "=" + psValueText(parameter.value);
            (g_steps += ' ') += text.c_str();
        }
        g_steps += "? ";
        return count++ == wanted;
    }
    psResult atPrepared(const psTurns&) override {
        g_steps += "turns ";
        return outcome;
    }
    void released() override { g_steps += "released "; }

    int wanted = 0; // the combination that is
    int count = 0;
    psResult outcome = PS_OK;
};

psResult runLogged(psTest& test) {
    g_steps.clear();
    psSetTableColumns();
    const Captured log;
    return test.run();
}
} // namespace

TEST(Turns, OnlyWhatIsWantedIsPrepared) {
    psIterator<int> length(1, "Length");
    length.add(16);
    length.add(32);
    length.add(64);
    Stepped test(stat);
    test.parameters = {&length};
    Taker taker;
    taker.wanted = 1;
    EXPECT_EQ(runLogged(test), PS_OK);
    EXPECT_EQ(g_steps, "ntksStepped_8u Length=16? ntksStepped_8u Length=32? init turns flush "
                       "released ntksStepped_8u Length=64? ");
    taker.count = 0;
    taker.outcome = PS_FUNC_FAIL; // as of a measurement: the test ends there
    EXPECT_EQ(runLogged(test), PS_FUNC_FAIL);
}

TEST(Turns, WhatCannotBePreparedIsReleased) {
    Stepped test(stat);
    test.isReady = false;
    const Taker taker;
    runLogged(test);
    EXPECT_EQ(g_steps, "ntksStepped_8u? init flush released ");
}

TEST(Turns, WithoutAStatisticFunctionTheMethodMeasures) {
    Stepped test(nullptr);
    const Taker taker;
    g_tool.setMethodLoop(1);
    runLogged(test);
    g_tool.setMethodAuto();
    EXPECT_EQ(g_steps, "ntksStepped_8u? init loop flush released ");
}

TEST(Turns, NobodyTakesAnyAsARule) {
    Stepped test(stat);
    g_tool.setMethodStat(1, 0);
    runLogged(test);
    g_tool.setMethodAuto();
    EXPECT_EQ(g_steps, "init stat flush ");
}
