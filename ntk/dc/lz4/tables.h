// The tables of the LZ4 encoders in the caller's blocks.
#pragma once

#include <lz4.h>
#include <lz4hc.h>

#include "dictencoder.h"
#include "ntkdefs.h"

namespace ntk::lz4 {

// Not a position: the contents of the table are of no use to a later call.
inline constexpr Ntk64s noPosition = -1;

struct HashTable {
    union {
        LZ4_stream_t stream;
        PositionTable positions; // the first field of the stream
    };
    // Position in the sequence up to which `positions` has seen the data. 0 in an empty table.
    Ntk64s position;
    // The index of that position, counted from the first that the table has seen.
    Ntk32u index;
    // Bytes of the last block for 256 bytes of its source; 0 if there was none. It only decides
    // which encoder takes the next source.
    Ntk32u share;
};

// The high-compression encoder of liblz4 has one state for both its tables. It is in the block of
// the hash table; the block of the chain table records how far it has seen the data.
struct HcState {
    LZ4_streamHC_t stream;
};
struct HcRecord {
    Ntk64s position;
    // liblz4's index of that position.
    Ntk32u endIndex;
};

// Whether the liblz4 found at run time is the one whose structures this was compiled with. Their
// fields may change from version to version; those of another version are not touched.
inline bool knowsFields() {
    return LZ4_versionNumber() == LZ4_VERSION_NUMBER;
}

} // namespace ntk::lz4
