#pragma once

#include "psostream.h"

// The result of a measurement and of a whole test, in order of severity: a test keeps the largest
// code it meets. 2 to 6 are notes and warnings, 7 and above failures.
enum psResult : int {
    PS_UNDEFINED = 0,   // nothing was measured
    PS_OK = 1,          //
    PS_ACCUR_WARN = 2,  // the accuracy limit was missed
    PS_STATUS_WARN = 3, // the calls left floating-point exception flags behind
    PS_DATA_NOTE = 4,
    PS_FUNC_NOTE = 5, // the library returned a warning
    PS_NOTE = 6,
    PS_ACCUR_FAIL = 7,
    PS_DATA_FAIL = 8,
    PS_FUNC_FAIL = 9, // the library returned an error
    PS_EXCEPTION = 10,
    PS_FAIL = 11,
};
constexpr int psResultCount = 12;

constexpr bool psIsFail(int r) {
    return r >= PS_ACCUR_FAIL;
}
constexpr bool psIsNote(int r) {
    return r >= PS_ACCUR_WARN && r <= PS_NOTE;
}
constexpr psResult psWorse(psResult a, psResult b) {
    return a > b ? a : b;
}

// "accuracy fail" and alike; "was not run" and "successfully" for 0 and 1, "unknown result"
// outside 0 to 11.
const char* psResultWord(int result);
// The summary's names: "OK", "ACCURWRN" and alike; "UNKNOWN" from 12 on.
const char* psResultShortName(int result);
// The kind of the message that reports this result: warning for notes, error for failures.
MessageLevel psResultLevel(int result);
// Notes count as passed when the user asked for errors only.
psResult psResultAtLevel(psResult result, int outLevel);
