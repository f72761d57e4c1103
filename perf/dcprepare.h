#pragma once

#include <climits>
#include <initializer_list>

#include "kxdc.h"

// What the families' preparations have in common.

// Whether a preparation call succeeded; a status that is not 0 is printed.
inline bool passed(int status, const char* name) {
    return !psIsFail(kxTest::checkStatus(status, name));
}

// Makes each a buffer of twice g_codeLen bytes, so that what does not compress fits too. A length
// that has no double is printed.
inline bool createBuffers(std::initializer_list<kxVector*> buffers) {
    constexpr int longest = INT_MAX / 2;
    if (g_codeLen.value() < 1 || g_codeLen.value() > longest) {
        g_ostrm << PS_ERR << "-- CodeLength=" << g_codeLen.value() << " is not within 1 to "
                << longest << "\n"
                << PS_END;
        return false;
    }
    for (kxVector* buffer : buffers) {
        if (!buffer->createVector(2 * g_codeLen.value())) {
            return false;
        }
    }
    return true;
}
