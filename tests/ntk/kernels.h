// The kernels of a primitive that this machine can run.
#pragma once

#include <gtest/gtest.h>

#include "dc/dispatch.h"

inline Ntk64u machineFeatures() {
    Ntk64u features = 0;
    EXPECT_EQ(ntkGetCpuFeatures(&features, nullptr), ntkStsNoErr);
    return features;
}

template <class Function, class Visit>
void forEachKernel(const ntk::Choice<Function>& choice, Visit visit) {
    const Ntk64u machine = machineFeatures();
    for (const ntk::Candidate<Function>& candidate : choice.candidates()) {
        if (ntk::isEligible(candidate, machine, machine)) {
            SCOPED_TRACE(candidate.name);
            visit(*candidate.run);
        }
    }
}
