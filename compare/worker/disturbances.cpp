#include "disturbances.h"

#include <sys/resource.h>

#include <cstdio>
#include <cstring>

namespace compare {

namespace {

// The kernel counts them where it was built with the scheduler's statistics; 0 elsewhere, and as
// the workers are pinned there should be none.
long migrations() {
    FILE* const file = fopen("/proc/self/sched", "r");
    if (!file) {
        return 0;
    }
    char line[256];
    long count = 0;
    while (fgets(line, sizeof line, file)) {
        if (strncmp(line, "se.nr_migrations", 16) == 0) {
            const char* const colon = strchr(line, ':');
            count = colon ? strtol(colon + 1, nullptr, 10) : 0;
            break;
        }
    }
    fclose(file);
    return count;
}

} // namespace

Disturbances Disturbances::now() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    Disturbances counts;
    counts.m_involuntarySwitches = usage.ru_nivcsw;
    counts.m_minorFaults = usage.ru_minflt;
    counts.m_majorFaults = usage.ru_majflt;
    counts.m_migrations = migrations();
    return counts;
}

void Disturbances::countSince(Turn& turn) const {
    const Disturbances later = now();
    turn.involuntarySwitches = later.m_involuntarySwitches - m_involuntarySwitches;
    turn.migrations = later.m_migrations - m_migrations;
    turn.minorFaults = later.m_minorFaults - m_minorFaults;
    turn.majorFaults = later.m_majorFaults - m_majorFaults;
}

} // namespace compare
