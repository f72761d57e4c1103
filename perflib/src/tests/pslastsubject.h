#pragma once

#include "psstring.h"

// What is named last when a fault that the process does not survive ends it: the test, and while
// its data are prepared the combination, too, whose line is written to the log behind that. The
// same is said when the library calls exit() in a preparation.
class psLastSubject {
public:
    explicit psLastSubject(const psString& function);
    ~psLastSubject();
    psLastSubject(const psLastSubject&) = delete;
    psLastSubject& operator=(const psLastSubject&) = delete;

    static void prepares(const psString& function, const psString& combination);
    static void hasPrepared(const psString& function);
};
