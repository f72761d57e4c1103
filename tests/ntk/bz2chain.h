// Whole .bz2 files out of the library's stages, and back. Headers, checksums and block limits are
// all that is done here.
#pragma once

#include "samples.h"

// level: 1 to 9, the longest block in units of 100000 bytes.
Bytes makeBzip2File(Bytes data, int level);

// Takes a file of one stream apart. Throws std::runtime_error saying what is wrong with it.
Bytes readBzip2File(Bytes file);
