#pragma once

#include "pscpuid.h"

// The numbers that identify a model among those of its maker.
struct psCpuSignature {
    int family;
    int model;
    int stepping;
    int type;
    int brandId;
};

// Decodes leaf 1.
psCpuSignature psSignatureOf(const CPUID& leaf1);

// A number of things in one package. Some leaves report only how many ids are reserved for them.
struct psPackageCount {
    int count = 0; // 0: not reported
    bool isUpperLimit = false;
};

struct psCpuThreads {
    bool supported = false; // more than one logical processor in a package
    psPackageCount logical;
    psPackageCount cores;
};

psCpuThreads psThreadsOf(psCpuidReader read);
