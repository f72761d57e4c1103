#include "sequence.h"

#include <algorithm>
#include <climits>
#include <cstddef>

#include "indexscan.h"

namespace ntk::lz4 {

namespace {

// To read the table through takes a twentieth of the time in which liblz4 writes so many bytes.
constexpr Ntk64u shortBlock = 1000;
constexpr Ntk32u whole = 256; // shares are in parts of it
constexpr Ntk32u unknownShare = 0;
constexpr Ntk32u usualShare = whole / 2;
constexpr Ntk32u hardShare = whole - whole / 16; // little matches
constexpr int shortSource = 16384;

// Whether the table holds positions of the data before the source, and of no other. An empty table
// has a position too: that of the start.
bool continuesAt(const HashTable& table, const DictArguments& d) {
    return table.position == d.srcIdx && (d.srcIdx > 0 || d.dictLen == 0);
}

// Whether the data before the source are there, as far as the table and the window go.
bool hasAllBefore(const HashTable& table, const DictArguments& d, const Ntk8u* src) {
    const bool isInPlace = d.dictLen == 0 || d.dict + d.dictLen == src;
    return isInPlace && static_cast<Ntk32u>(d.dictLen) >=
                            std::min(table.index, static_cast<Ntk32u>(windowBytes));
}

// Whether liblz4 gains more than it takes to prepare a table for it.
bool isWorthLiblz4(const HashTable& table, int srcLen) {
    const Ntk32u share = table.share == unknownShare ? usualShare : table.share;
    return static_cast<Ntk64u>(srcLen) * share >= shortBlock * whole &&
           (share < hardShare || srcLen < shortSource);
}

// liblz4 inserts the first position before it looks for any, so that one may be there already.
bool isSafeForLiblz4(const HashTable& table, int srcLen) {
    return knowsFields() && table.index + static_cast<Ntk64u>(srcLen) <= INT_MAX &&
           noneAbove.get()(table.positions.data(), table.positions.size(), table.index);
}

int encodeByLiblz4(HashTable& table, const DictArguments& d, const Ntk8u* src, int srcLen,
                   Ntk8u* dst, int capacity) {
    LZ4_stream_t_internal& stream = table.stream.internal_donotuse;
    static_assert(sizeof stream.hashTable == sizeof table.positions &&
                  offsetof(LZ4_stream_t_internal, hashTable) == 0);
    const int length = std::min(d.dictLen, windowBytes);
    stream.dictionary = length == 0 ? src : d.dict + (d.dictLen - length);
    stream.dictSize = static_cast<Ntk32u>(length);
    stream.dictCtx = nullptr;
    stream.currentOffset = table.index;
    return std::max(
        LZ4_compress_fast_continue(&table.stream, chars(src), chars(dst), srcLen, capacity, 1), 0);
}

// The table has now seen the source.
void noteBlock(HashTable& table, const DictArguments& d, int srcLen, int length) {
    table.index += static_cast<Ntk32u>(srcLen);
    table.position = noPosition;
    if (length > 0) {
        table.position = d.srcIdx + srcLen;
        table.share = static_cast<Ntk32u>(std::max<Ntk64s>(Ntk64s{length} * whole / srcLen, 1));
    }
}

} // namespace

int encodeNext(HashTable& table, const DictArguments& d, const Ntk8u* src, int srcLen, Ntk8u* dst,
               int capacity) {
    const bool isWorth = isWorthLiblz4(table, srcLen);
    if (!continuesAt(table, d) || (d.dictLen == 0 && isWorth)) {
        table.index = loadDictionary(table.positions, d);
    }
    const bool byLiblz4 = isWorth && hasAllBefore(table, d, src) && isSafeForLiblz4(table, srcLen);
    const int length = byLiblz4 ? encodeByLiblz4(table, d, src, srcLen, dst, capacity)
                                : encodeAfterDictionary(table.positions, table.index, d, src,
                                                        srcLen, dst, capacity);
    noteBlock(table, d, srcLen, length);
    return length;
}

} // namespace ntk::lz4
