#pragma once

#include "pscpuid.h"

// The numbers by which a processor's maker tells its models apart.
struct psCpuSignature {
    int family;
    int model;
    int stepping;
    int type;
    int brandId;
};

// Decodes leaf 1.
psCpuSignature psSignatureOf(const CPUID& leaf1);

// A number of things in one package. Some leaves tell only how many numbers are set aside.
struct psPackageCount {
    int count = 0;        // 0: not told
    bool isBound = false; // at most so many
};

struct psCpuThreads {
    bool supported = false; // more than one logical processor in a package
    psPackageCount logical;
    psPackageCount cores;
};

psCpuThreads psThreadsOf(psCpuidReader read);
