#pragma once

#include "psstring.h"

// The processor's frequency is measured once for each boot of a machine: that takes two to three
// seconds, which every run would spend. It is kept in the user's cache directory. A cache that
// cannot be read or written is none: nothing is reported.

// "$XDG_CACHE_HOME/ntkperf/frequency", else below "$HOME/.cache"; empty when neither is set.
psString psFrequencyCachePath();
// What the frequency belongs to: this boot and this processor. Empty: the system does not tell.
psString psFrequencyCacheKey();

// MHz kept in the file for this key; 0: none.
int psReadFrequency(const psString& path, const psString& key);
void psWriteFrequency(const psString& path, const psString& key, int mhz);
