// The dictionary of a block, for the stages that need its values.
#pragma once

#include "ntkdefs.h"

namespace ntk::bz2 {

// The values in use in their order; returns how many there are.
int valuesInUse(const Ntk8u inUse[256], Ntk8u values[256]);

} // namespace ntk::bz2
