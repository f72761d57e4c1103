// What the stages of libbz2's compression cost, one by one.
//
// libbz2 offers no stage by itself, but its parts call each other as exported functions of its
// shared object. Functions of these names in this program take their places, take the time and call
// the real ones.
#pragma once

#include "comparison.h"

// Of the last block that libbz2 compressed, in clocks.
struct Bzip2Clocks {
    Ntk64u runs = 0;      // run lengths, with the checksum, which that loop takes too
    Ntk64u sort = 0;      // the Burrows-Wheeler transform
    Ntk64u positions = 0; // move-to-front, with the coding of zero runs, which is the same loop
    Ntk64u huffman = 0;   // tables and codes
};
extern Bzip2Clocks g_bzip2Clocks;

// Compresses data as one block at level 9, in memory that was used before. Returns the length of
// the file.
std::size_t bzip2CompressInStages(const Bytes& data);
