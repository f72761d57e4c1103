// Blocks that a caller provides.
#pragma once

#include <stdexcept>

#include "samples.h"

// A block of the size that a GetSize function gives for the arguments, filled with nonzero bytes.
// Throws std::logic_error where it gives none. (Also used without GoogleTest, by fuzz/.)
template <class GetSize, class... Arguments>
Bytes blockFor(GetSize* getSize, Arguments... arguments) {
    int size = 0;
    if (getSize(arguments..., &size) != ntkStsNoErr) {
        throw std::logic_error("no size of a block");
    }
    return Bytes(static_cast<std::size_t>(size), 0xa5);
}
