// A stream during one call: the caller's arguments taken apart, and the parts of the decoder that
// work on them.
#pragma once

#include <array>
#include <cstddef>

#include "alphabets.h"
#include "bitreader.h"
#include "ntkdcinflate.h"

namespace ntk::inflate {

// The modes within a block's header, behind the public ones.
enum : int {
    modeStoredLength = ntkInflateFinished + 1,
    modeCodeCounts,
    modeLengthCodeLengths,
    modeCodeLengths,
    numModes
};

// Why a step ended.
enum class Outcome {
    goOn,            // the mode has changed: take the next step
    sourceUsedUp,    // all of it is taken, and the bits left do not make a symbol
    destinationFull, // and there is something to be written
    malformed,
    noWorkBuffer
};

// The caller's work buffer: codes of a dynamic block, and what is known of them while its header is
// read. An error leaves it as it is while the caller's arguments go back, so any mode may meet it
// in any state: each field keeps its bounds by itself.
struct WorkBuffer {
    std::array<Entry, entriesNeeded(maxLiteralCodes, literalRootBits)> literals;
    std::array<Entry, entriesNeeded(maxDistanceCodes, distanceRootBits)> distances;
    std::array<Entry, 1U << lengthCodeRootBits> lengthCodes;
    unsigned literalBits; // root bits of the tables
    unsigned distanceBits;
    unsigned lengthCodeBits;
    unsigned numLiteralCodes;
    unsigned numDistanceCodes;
    unsigned numLengthCodesGiven;
    unsigned position; // how many lengths of the sequence being read are there
    // 0 to 7: their table never needs subtables.
    std::array<Ntk8u, numLengthCodes> lengthCodeLengths;
    // Of the literal and distance codes, in one row.
    std::array<Ntk8u, maxLiteralCodes + maxDistanceCodes> lengths;
};

struct Output {
    const Ntk8u* oldest; // first byte of the data that lie directly before `next`
    Ntk8u* begin;
    Ntk8u* next;
    Ntk8u* end;
    // The end of data that come before `oldest` and lie elsewhere.
    const Ntk8u* farEnd;
    std::size_t farBytes;

    std::size_t room() const { return static_cast<std::size_t>(end - next); }
    std::size_t nearBytes() const { return static_cast<std::size_t>(next - oldest); }
};

struct Stream {
    BitReader in;
    Output out;
    int mode;
    bool isLastBlock;
    unsigned pendingLength;   // of the match being decoded, 0: none
    unsigned pendingDistance; // 0: not read yet
    unsigned storedBytes;     // left of a stored block
    WorkBuffer* work;         // null: none

    void endBlock() { mode = isLastBlock ? ntkInflateFinished : ntkInflateBlockHeader; }
};

// One step each. A step goes on as long as its mode lasts.
Outcome readBlockHeader(Stream& s); // blocks.cpp
Outcome readStoredLength(Stream& s);
Outcome readCodeCounts(Stream& s); // dynamicheader.cpp
Outcome readLengthCodeLengths(Stream& s);
Outcome readCodeLengths(Stream& s);
Outcome copyStored(Stream& s); // blocks.cpp
// symbols.cpp
Outcome decodeSymbols(Stream& s, const CodeTable& literals, const CodeTable& distances);

// Decodes symbols as long as source and destination are far from their ends; then, or with a match
// pending that refers to before `oldest`, it returns goOn with the mode unchanged. fastloop.cpp
Outcome decodeFast(Stream& s, CodeTable literals, CodeTable distances);

} // namespace ntk::inflate
