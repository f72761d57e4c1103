// The largest cache of a processor.
#pragma once

#include "processor.h"

namespace ntk {

// Size in bytes of the largest cache that the processor describes, at most INT_MAX; 0 if it
// describes none.
int maxCacheSizeBytes(const Processor& processor);

} // namespace ntk
