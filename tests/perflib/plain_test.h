#pragma once

#include "psexcept.h"
#include "pstest.h"

// A test of the harness that calls nothing: the result of its measurement is given beforehand.
class PlainTest : public psTest {
public:
    explicit PlainTest(const psString& function, const psString& info = "Plain",
                       const psString& source = "p_plain.cpp")
        : psTest(psOldFunc{}, function, source, info) {}

    // PS_UNDEFINED: a runTiming() without a result; PS_EXCEPTION: one that throws.
    PlainTest* giving(psResult r) {
        outcome = r;
        return this;
    }
    psResult runTiming() override {
        ++runs;
        if (outcome == PS_UNDEFINED) {
            return outcome;
        }
        psTool::ctrlStart();
        psTool::ctrlStop();
        if (outcome == PS_EXCEPTION) {
            throw psException("thrown");
        }
        return outcome;
    }

    psResult outcome = PS_OK;
    int runs = 0;
};
