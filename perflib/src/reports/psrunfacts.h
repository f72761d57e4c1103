#pragma once

#include <optional>

#include "psrecordwriter.h"

// Where and with what a run measures, for programs: the title has the same for people. What cannot
// be had is empty or 0.

struct psLibraryFacts {
    psString name, version, build, date;
};

// A file that tests read.
struct psInputFacts {
    psString name; // as the tests' parameter has it
    psString path; // absolute, without links
    long long bytes = 0;
    unsigned long crc32 = 0; // of all of it
};
// Empty when it is no regular file that can be read.
std::optional<psInputFacts> psInputFactsOf(const psString& name);

struct psRunFacts {
    psRunPlan plan;
    psString processor, os, computer;
    int processors = 0;
    int ticksMHz = 0; // 0: not measured yet on this boot
    int cacheBytes = 0;
    psList<psLibraryFacts> libraries;
    psStringList libraryFiles; // in this process, as the loader found them
    psList<psInputFacts> corpus;
};
psRunFacts psRunFactsOf(const psRunPlan& plan);
