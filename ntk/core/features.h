// The feature mask of a processor.
#pragma once

#include "ntkcore.h"
#include "processor.h"

namespace ntk {

// The features that the processor has and the operating system lets programs use.
Ntk64u featuresOf(const Processor& processor);

} // namespace ntk
