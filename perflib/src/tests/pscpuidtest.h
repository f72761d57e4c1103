#pragma once

#include "pstest.h"

// A test that measures nothing: it prints what it knows about the machine. Its name begins with
// "_", which puts it in front of the others.
class psInformationTest : public psTest {
public:
    psInformationTest(const psString& function, const psString& title, const psString& source);
    psResult run() override;

protected:
    virtual void printInformation() = 0;
};

class __psOSTest : public psInformationTest {
public:
    using psInformationTest::psInformationTest;

protected:
    void printInformation() override;
};

class __psHostTest : public psInformationTest {
public:
    using psInformationTest::psInformationTest;

protected:
    void printInformation() override;
};

// Its features in short, or the whole processor report for who asks for it: by a condition that
// names this test, or by the level of detailed output.
class __psBraskCpuTest : public psInformationTest {
public:
    using psInformationTest::psInformationTest;
    bool tobeRun(const psConditions& conditions) override;

protected:
    void printInformation() override;

private:
    bool m_named = false; // by the conditions last asked about
};
