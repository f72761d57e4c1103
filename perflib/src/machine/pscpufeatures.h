#pragma once

#include "psstring.h"

// A row of the feature table. The masks of the older extensions include those they are built on,
// the later ones are single bits (see ntkcore.h).
struct psCpuFeature {
    const char* label;
    unsigned long long mask;
    const char* description;
};

// Names of processor features, as option "-T" takes them and the processor report prints them.
class psCpuFeatures {
public:
    // The masks of the labels in a list separated by "," together. Labels are compared exactly;
    // an unknown one counts as 0.
    static unsigned long long cpuFeatures(const psString& list);
    // The label of the first row with exactly this mask, "Undefined" for none.
    static psString cpuLabel(unsigned long long mask);
    // Likewise the description, "Unknown processor" for none.
    static psString cpuName(unsigned long long mask);
    // A line for every feature that a library can have a kernel for.
    static psString optimizedList();

    // Cuts in at every sep; count receives the number of pieces, which is one more than the
    // separators. pieces: null to count only, else room for count strings.
    static void split(psString* pieces, const psString& in, char sep, int& count);

    // The table, in the order of the lookups.
    static const psCpuFeature* begin();
    static const psCpuFeature* end();
};
