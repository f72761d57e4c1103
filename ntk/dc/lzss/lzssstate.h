// The states of the LZSS coders, and the source and destination of a call.
#pragma once

#include <algorithm>
#include <cstring>

#include "copymatch.h"
#include "windowsearch.h"

namespace ntk::lzss {

// Marks what a state was last initialised for.
inline constexpr Ntk32u encoderTag = 0x45535a4c;
inline constexpr Ntk32u decoderTag = 0x44535a4c;
inline constexpr Ntk32u brokenDecoderTag = 0x42535a4c; // after a malformed stream

struct Encoder {
    Ntk32u tag;
    // The current group: flags and up to eight tokens. The first groupSent bytes are written.
    Ntk32u tokens;
    Ntk32u groupLen;
    Ntk32u groupSent;
    Ntk8u group[maxGroupBytes];
    // The match at the current position, if the lazy search has already found it.
    bool isNextFound;
    Match next;
    MatchFinder finder;
};

struct Decoder {
    Ntk32u tag;
    // The place in a group: tokens to come, their flags, and the bytes taken of an incomplete
    // token.
    Ntk32u tokens;
    Ntk32u flags;
    Ntk32u tokenLen;
    Ntk8u token[maxTokenBytes];
    // Decoded data up to `end`, of which those from `sent` on are still to be delivered.
    Ntk32u sent;
    Ntk32u end;
    Ntk8u bytes[65536 + copySlack];
};

struct Source {
    const Ntk8u* at;
    int left;

    Ntk32u available(Ntk32u most) const { return std::min(static_cast<Ntk32u>(left), most); }
    void skip(Ntk32u bytes) {
        at += bytes;
        left -= static_cast<int>(bytes);
    }
};

struct Destination {
    Ntk8u* at;
    int left;

    // Writes as many of the bytes as fit; returns how many.
    Ntk32u put(const Ntk8u* bytes, Ntk32u count) {
        const Ntk32u taken = std::min(static_cast<Ntk32u>(left), count);
        std::memcpy(at, bytes, taken);
        at += taken;
        left -= static_cast<int>(taken);
        return taken;
    }
};

} // namespace ntk::lzss
