#pragma once

#include <cstdlib>

#include "aside.h"
#include "pslibrary.h"

// While this lives the library's answer on the largest cache is `bytes`, a failure when negative.
class FakeCache {
public:
    FakeCache() {
        ntk_GetMaxCacheSizeB = answer;
        bytes = 10000;
    }
    static inline int bytes = 0;

private:
    static NtkStatus answer(int* sizeBytes) {
        *sizeBytes = std::abs(bytes);
        return bytes < 0 ? ntkStsNoProcessorInfo : ntkStsNoErr;
    }
    const Aside<NtkStatus(int*)> m_query{ntk_GetMaxCacheSizeB};
};
