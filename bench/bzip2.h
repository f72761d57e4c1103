// What the comparisons with libbz2 share.
#pragma once

#include <bzlib.h>

#include "comparison.h"

// A whole file of libbz2's, at level 9: one block for as little data as is compared.
inline Bytes bzip2Compressed(Bytes data) {
    auto length = static_cast<unsigned>(data.size() + data.size() / 50 + 1000);
    Bytes file(length);
    BZ2_bzBuffToBuffCompress(chars(file), &length, chars(data), static_cast<unsigned>(data.size()),
                             9, 0, 0);
    file.resize(length);
    return file;
}

inline void bzip2Decompress(Bytes& file, Bytes& data) {
    auto length = static_cast<unsigned>(data.size());
    BZ2_bzBuffToBuffDecompress(chars(data), &length, chars(file),
                               static_cast<unsigned>(file.size()), 0, 0);
}
