// The dictionary of a block, for the stages that need its values.
#pragma once

#include "ntkdefs.h"

namespace ntk::bz2 {

// Lists the values in use in ascending order; returns their number.
int valuesInUse(const Ntk8u inUse[256], Ntk8u values[256]);

} // namespace ntk::bz2
