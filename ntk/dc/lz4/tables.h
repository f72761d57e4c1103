// The tables of the LZ4 encoders, as they lie in the caller's blocks.
#pragma once

#include <lz4.h>
#include <lz4hc.h>

#include "ntkdefs.h"

namespace ntk::lz4 {

// No position of a sequence: what the table holds serves no later call.
inline constexpr Ntk64s noPosition = -1;

struct HashTable {
    LZ4_stream_t stream;
    // Position in the sequence up to which the stream has seen data. 0 in an empty table.
    Ntk64s position;
};

// The high-compression encoder of liblz4 has one state for both its tables. It lies in the block
// of the hash table; the block of the chain table holds what is known about it.
struct HcState {
    LZ4_streamHC_t stream;
};
struct HcRecord {
    Ntk64s position;
    // liblz4's index of that position.
    Ntk32u endIndex;
};

// Whether the liblz4 at hand is the one whose structures this was compiled with. Their fields may
// change from version to version, so without this they are not touched.
inline bool knowsFields() {
    return LZ4_versionNumber() == LZ4_VERSION_NUMBER;
}

} // namespace ntk::lz4
