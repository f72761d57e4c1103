// The decoder's fast way: whole groups.
#pragma once

#include "../dispatch.h"
#include "tokens.h"

namespace ntk::lzss {

// Decoded data from `begin` on, without gaps, the next byte of them, and the place from which on no
// more groups are begun. Behind that there must be room for maxGroupData and copySlack bytes.
struct Data {
    const Ntk8u* begin;
    Ntk8u* end;
    const Ntk8u* full;
};

// Source bytes that there must be from the start of a group on: the word behind its last token is
// loaded, too.
inline constexpr Ntk32u groupReadBytes = maxGroupBytes + 8;
inline constexpr Ntk32u maxGroupData = tokensPerGroup * maxMatch;

// Decodes groups as long as they begin at `last` at most and data.end is below data.full. Returns
// where the next group begins, null if one is malformed.
using DecodeGroups = const Ntk8u*(Data& data, const Ntk8u* from, const Ntk8u* last);
extern Choice<DecodeGroups> decodeGroupsKernel;

} // namespace ntk::lzss
