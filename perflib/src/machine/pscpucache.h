#pragma once

#include "pscpuid.h"
#include "pslist.h"

// One cache as the processor describes it.
struct psCpuCache {
    enum Kind { data = 1, instruction = 2, unified = 3 };

    int kind; // above 3: reserved
    int level;
    int bytes; // ways x partitions x lineBytes x sets
    int ways;
    int partitions;
    int lineBytes;
    int sets;
    int maxThreads; // upper limit of the threads that share it
    bool selfInitializing;
    bool fullyAssociative;
    bool ownFlushOnly; // WBINVD may leave the lower caches of other threads alone
    bool inclusive;    // of the lower levels
};

// The caches that leaf 4 lists, or where that leaf is empty those of the extended cache leaf.
// Empty when neither lists any.
psList<psCpuCache> psCpuCaches(psCpuidReader read = psReadCpuid);
