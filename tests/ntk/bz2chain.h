// Encodes whole .bz2 files with the library's stages, and decodes them. Only headers, checksums and
// block limits are handled here.
#pragma once

#include "samples.h"

// level: 1 to 9, the longest block in units of 100000 bytes.
Bytes makeBzip2File(Bytes data, int level);

// Decodes a file of one stream. Throws std::runtime_error saying what is wrong with it.
Bytes readBzip2File(Bytes file);
