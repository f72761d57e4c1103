#pragma once

#include "pscpuid.h"
#include "psstring.h"

// What is known of the processor, in sections separated by lines: first what the identification
// instruction reports, then the features by the library's masks. A section without facts is left
// out, and so is a line whose value the processor does not report: a virtual machine may hide any
// leaf. savedStates: see psSavedStates.
psString psCpuReport(psCpuidReader read, unsigned long long present, unsigned long long enabled,
                     unsigned long long savedStates = psSavedStates());

// The features' own section: which the processor has, which are enabled, which vector states the
// operating system saves. Empty for a present of 0, which no answer of the library can be.
psString psFeatureFlags(unsigned long long present, unsigned long long enabled,
                        unsigned long long savedStates);

// The short form: " Features : ...", the labels of what is present, "(off)" behind what is not
// enabled; as many lines of 79 columns as it takes.
psString psFeatureLine(unsigned long long present, unsigned long long enabled);
