// Encodes the sources of a sequence, each after a dictionary: the data before it, as a rule.
//
// Two encoders work on one table of indices with one hash. liblz4's takes what is in the table
// without comparing it with the end of the data, so the table, which the caller may have changed,
// is read through first: about 200 clocks. That is 1% of what liblz4 needs for 8 KiB of text, 4% on
// `geo`, and a fifth on a bitmap, of which next to nothing is looked up. The own one
// (dictencoder.h) trusts no index and begins at once. It encodes
// - sources that are expected to make short blocks, as the last one did,
// - sources of 16 KiB and more of which little matches: 0.8 of liblz4's time on `geo`,
// - after a dictionary elsewhere: 0.8 of the time for 8 KiB of text, 0.95 to 1.0 for 64 KiB,
// - after less than what the table has seen, which liblz4 would have to look at for each position
//   (after nothing, the table is emptied for liblz4 instead),
// - everything when a table does not pass, or liblz4 is another version than was compiled with.
//
// Else the two are as fast as each other on data that are encoded once: in blocks of 8 and of 64
// KiB the own one takes 0.96 to 1.04 of liblz4's time on 12 of 14 files of a text corpus, up to
// 1.09 on `obj1` and 0.8 on `geo`. But on a source that is encoded again and again, as in a
// measurement, the processor remembers more of liblz4's branches: there the own one alone took up
// to 1.5 of the time (`bib`, 32 KiB).
//
// Tried and worse: the own encoder first, liblz4 from the first match on after which little was
// gained. As fast on text, but on `geo` liblz4 takes from 0.80 to 1.35 clocks a byte when it begins
// at other positions, and a block of 8 KiB took 1.7 of the time. AVX-512 for reading the table
// through: a bitmap took 1.31 of liblz4's time, not 1.36.
//
// State: the indices, the position in the caller's sequence up to which they have seen the data,
// its index, and how short the last block was. Pointers that liblz4 leaves in its stream are set
// anew before it is called.
//
// Invariants:
// - A table that does not end at the position where the call begins is rebuilt from the dictionary.
//   One that does may hold anything all the same. liblz4 gets no index behind the first of the
//   source; other wrong ones are harmless, because it limits them to the dictionary and compares
//   the bytes.
// - After a call that fails or stops early the table has seen more data than were encoded: it is
//   marked as unusable.
#pragma once

#include "arguments.h"
#include "tables.h"

namespace ntk::lz4 {

// Returns the length of the block, 0 if it does not fit: then the destination holds whole sequences
// of it. The source is not empty.
int encodeNext(HashTable& table, const DictArguments& d, const Ntk8u* src, int srcLen, Ntk8u* dst,
               int capacity);

} // namespace ntk::lz4
