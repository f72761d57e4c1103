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

class __psBraskCpuTest : public psInformationTest {
public:
    using psInformationTest::psInformationTest;

protected:
    void printInformation() override;
};
