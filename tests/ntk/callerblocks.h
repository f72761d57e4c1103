// Blocks that a caller provides.
#pragma once

#include <gtest/gtest.h>

#include "samples.h"

// A block of the size that a GetSize function gives for the arguments, filled with nonzero bytes.
template <class GetSize, class... Arguments>
Bytes blockFor(GetSize* getSize, Arguments... arguments) {
    int size = 0;
    EXPECT_EQ(getSize(arguments..., &size), ntkStsNoErr);
    return Bytes(static_cast<std::size_t>(size), 0xa5);
}
