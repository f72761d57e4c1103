// A stream during one call: the caller's arguments unpacked, and the steps of the decoder that work
// on them.
#pragma once

#include <array>
#include <cstddef>

#include "../dispatch.h"
#include "alphabets.h"
#include "bitreader.h"
#include "ntkdcinflate.h"
#include "pairs.h"

namespace ntk::inflate {

// The modes within a block's header, numbered after the public ones.
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
    sourceUsedUp,    // all of it is taken, and the bits left are less than a symbol
    destinationFull, // and more data are to be written
    malformed,
    noWorkBuffer
};

// The codes of a block.
struct Codes {
    CodeTable literals; // and lengths
    CodeTable distances;
    PairTable pairs;
};

// The caller's work buffer: the codes of a dynamic block, and what is known of them while its
// header is read. An error restores the caller's arguments but not this buffer, so any mode may
// find it in any state: each field must stay within its own bounds.
struct WorkBuffer {
    std::array<Entry, entriesNeeded(maxLiteralCodes, literalRootBits)> literals;
    std::array<Entry, entriesNeeded(maxDistanceCodes, distanceRootBits)> distances;
    alignas(64) Pairs<pairBits> pairs;
    std::array<Entry, 1U << lengthCodeRootBits> lengthCodes;
    // Root bits of the tables. One of them is 0 unless all three tables are those of one block.
    unsigned literalBits;
    unsigned distanceBits;
    unsigned lengthCodeBits;
    unsigned numLiteralCodes;
    unsigned numDistanceCodes;
    unsigned numLengthCodesGiven;
    unsigned position; // how many lengths of the current sequence have been read
    // 0 to 7: their table never needs subtables.
    std::array<Ntk8u, numLengthCodes> lengthCodeLengths;
    // Of the literal and then the distance codes.
    std::array<Ntk8u, maxLiteralCodes + maxDistanceCodes> lengths;

    Codes codes() const {
        return {{literals.data(), lowMask(literalBits)},
                {distances.data(), lowMask(distanceBits)},
                {pairs.data(), pairBits}};
    }
};

struct Output {
    const Ntk8u* historyBegin; // first byte of the history that ends at `next`
    Ntk8u* begin;
    Ntk8u* next;
    Ntk8u* end;
    // History from before `historyBegin`, in a buffer of its own.
    const Ntk8u* externalHistoryEnd;
    std::size_t externalHistoryBytes;

    std::size_t room() const { return static_cast<std::size_t>(end - next); }
    std::size_t contiguousHistoryBytes() const {
        return static_cast<std::size_t>(next - historyBegin);
    }
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

// One step each. A step continues for as long as its mode lasts.
Outcome readBlockHeader(Stream& s); // blocks.cpp
Outcome readStoredLength(Stream& s);
Outcome readCodeCounts(Stream& s); // dynamicheader.cpp
Outcome readLengthCodeLengths(Stream& s);
Outcome readCodeLengths(Stream& s);
Outcome copyStored(Stream& s); // blocks.cpp
// symbols.cpp
Outcome decodeSymbols(Stream& s, const Codes& codes);

// Decodes symbols as long as source and destination are far from their ends (fastloop.cpp). Then,
// or with a pending match that begins before `historyBegin` or for which the room may be too small,
// it returns goOn with the mode unchanged.
using DecodeFast = Outcome(Stream& s, const Codes& codes);
extern Choice<DecodeFast> decodeFastKernel;

} // namespace ntk::inflate
