#pragma once

#include "psstring.h"

// What the command line decides for a run, in one place: the statics of the classes that act on it
// (psTest::m_cache, psTool::m_priority and so on) are references to these members. Constant at
// first, so that static initialisers of any file may read and change it. A copy keeps a state, an
// assignment gives it back.
struct psSettings {
    // Where the program and its files lie; directories end in a separator.
    psString programPath; // as it was called
    psString inDir, outDir;
    psString defName; // of files without a name of their own

    // What the session is for.
    int exitLevel = 0;     // it only prints help (2), lists the tests (1) or prints the version (3)
    int nameMode = 0;      // bit 1: name lines in the performance table, bit 2: name table
    bool nameExit = false; // only the name table is written

    // Which tests run, and in which surroundings.
    bool cacheMode = false; // "-C"
    bool unmasked = false;  // "-W": floating-point exceptions of the measured code trap
    bool pressing = false;  // "-P": only tests that the settings file names
    int hot = 0;            // "-H": 0 no, 1 with the column, 2 only hot lines
    psString startFunc;     // "-F"; emptied when that function is reached

    // How they are timed.
    int milliseconds = 100; // "-c"
    int minCalls = 8;       // "-j": calls of the iterative method's statistic run, at least
    int extLoops = 8;       // "-J"
    int priority = 0;       // class for psSetPriority

    // How their vectors lie in memory.
    int vectorAlign = 0;       // misalignment step
    int vectorShiftStep = 512; // bytes by which each vector lies further in its block
    bool alignSrcOnly = true;  // the first vector of a combination alone is misaligned
    bool alignByByte = true;   // the misalignment counts bytes, else elements
};

extern psSettings g_settings;
