#pragma once

#include <exception>

#include "psstring.h"

// Functions that the tests call, or one part of the measured library in another, and that the
// loaded build lacks, an older one for instance. The loader looks a function up at its first call,
// and when there is none it ends the process. Before that can happen a stand-in takes the place of
// each, which throws; so a test fails that calls it, be it in its preparation, and the others run.

// What a stand-in throws.
class psMissingFunction : public std::exception {
public:
    explicit psMissingFunction(const char* name) : m_name(name) {}
    const char* name() const { return m_name; }
    const char* what() const noexcept override { return "a missing function was called"; }

private:
    const char* m_name;
};

// Puts the stand-ins in their places. Only for what is linked lazily: anything else does not start
// with such a library. A second call finds nothing to do.
void psStandInForMissingFunctions();
// Whether a stand-in was put in for it.
bool psIsMissingFunction(const psString& name);

// "the library has no function <name> (<files of the library>)", name may be several; empty when
// there is one in this process.
psString psMissingFunctionText(const psString& name);
// The same without asking.
psString psNoFunctionText(const psString& name);
