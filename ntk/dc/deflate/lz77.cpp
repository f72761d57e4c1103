// Deflate's match search: encodes data as literals and matches.
//
// Format (RFC 1951, 2 and 4): a match repeats 3 to 258 bytes from 1 to 32768 bytes back; it may
// overlap itself. With the fixed codes (3.2.6) a literal takes 8 or 9 bits, a match 12 or 13 and
// extra bits: up to 5 for its length, up to 13 for its distance.
//
// Method: hash chains, as the RFC proposes, of the positions whose next 4 bytes have the same hash.
// With keys of 4 bytes the chains are a few times shorter than with keys of 3. The matches of 3
// bytes that they miss are found by a second table, without chains: only the nearest one can be
// worth its bits, and only if it is not far away. Candidates are compared by the bits they save
// with the fixed codes, not by their length: one more byte is not worth a distance of many more
// bits. The levels (effort.h) differ in how many candidates they try, at which length they stop,
// and in the parsing:
// - Greedy: a match is always taken. Of the positions inside longer matches only two are inserted.
// - Lazy: unless the match is long, the next position is searched for one that saves more; if there
//   is one, this position becomes a literal.
//
// The time goes into branches that cannot be predicted, some 5 a match, and with more than a few
// candidates into the way along the chain: 12 clocks a candidate, because its link is loaded from
// the second-level cache before the next one is known. Hence a position has the links to the next
// two: two candidates are tried for one such wait (a tenth to a quarter less time at levels 6 to
// 9).
//
// On the files that are measured, helped: few candidates where the nearest 3 bytes differ (2 to 20%
// by level), two positions of a long match inserted in place of all (10% at level 1: all of them
// take a loop whose end is a wrong guess; at levels 4 to 7 only of the longest that repeat
// themselves: of others, long texts that come back would be found less well, 5% longer). Did not
// help:
// - candidates compared without branches: a quarter slower at level 1, because each then costs as
//   much as the first;
// - positions inserted in batches ahead of the search: no loop ends wrongly guessed, but `trans` at
//   level 4 takes 18.8 clocks a byte in place of 14.9. Elsewhere insertion is done while the
//   processor waits for something else;
// - the nearest candidate of every position compared in such batches: 15 clocks for each byte, in
//   matches too, so that level 1 takes 20.8 clocks on `book1` in place of 16.9, and twice as long
//   on data that repeat themselves;
// - after a match, the chain of those 4 bytes within it whose next position is the farthest back:
//   every longer match is in it, too. At level 9 5 to 13% faster (`trans` 0.60 of zlib's clocks in
//   place of 0.63), at level 6 10% slower; not worth a search of its own for one level;
// - the walk along a chain as a function of its own: a fifth slower at level 1;
// - a smaller table by 3 bytes (1% slower), lengths compared 16 bytes at a time (5 to 15% slower:
//   most matches end within 8).
//
// State: in the caller's tables. The lower half of pHashHead holds the newest position of each
// chain, its upper half the newest position by 3 bytes; pHashPrev holds how far back the next two
// older positions in the chain are (16 bits each), indexed by position modulo the window. Positions
// count through the whole sequence of data, so tables need no change when buffers move.
//
// Invariants:
// - No entry of a table is trusted. A position outside the window ends the chain, which never leads
//   to newer ones, and the bytes at any other are compared. So tables may hold anything; what older
//   data left in pHashPrev cannot be reached from heads that were reset.
// - Between two calls no position from *pSrcIdx on is in a chain: a position is removed again when
//   it was searched but the call ends before its entry is written. (The table by 3 bytes keeps it,
//   which costs the next call at most one match of 3 bytes.) The last 3 positions before it, which
//   lacked some of their 4 bytes, are inserted by the next call.
// - Each step writes one entry, so that a call can stop after any of them.
//
// Limits: positions up to INT_MAX; no match begins in the last 3 bytes of the data.

#include "ntkdc.h"

#include <climits>

#include "../callerblock.h"
#include "effort.h"
#include "entrywriter.h"
#include "matchfinder.h"

namespace ntk::deflate {

namespace {

// With this many bytes from a position on, more of them would not change its entry: what
// ntkDeflateNoFlush waits for. Includes the search at the next position.
constexpr int lookaheadBytes = maxMatch + 1 + keyBytes;

// The loops below copy the members to locals: writes through pointers cannot alias these, so they
// stay in registers.
template <class Finder> struct Search {
    Finder finder;
    EntryWriter entries;
};
using GreedySearch = Search<MatchFinder<false>>;
using LazySearch = Search<MatchFinder<true>>;

template <class Finder>
[[gnu::always_inline]] inline Match findAt(Finder& finder, int position, const Effort& effort) {
    return finder.canSearch(position) ? finder.findAndInsert(position, 0, effort.limits)
                                      : Match{0, 0, 0};
}

// Inserts positions of a match: all, or of a long one the first and the last of them.
template <class Finder>
[[gnu::always_inline]] inline void insertMatch(Finder& finder, int first, int end,
                                               const Effort& effort) {
    if (end - first < effort.insertLength) {
        finder.insertRange(first, end);
    } else {
        finder.insertRange(first, first + 1);
        finder.insertRange(end - 1, end);
    }
}

// Writes entries from `position` until `stop`; returns the position reached.
int searchGreedily(GreedySearch& search, const Effort& effort, int position, int stop) {
    auto [finder, entries] = search;
    while (position < stop && !entries.isFull()) {
        const Match match = findAt(finder, position, effort);
        if (match.length == 0) {
            entries.literal(*finder.at(position++));
            continue;
        }
        entries.match(match.length, match.distance);
        const int first = position + 1;
        position += match.length;
        insertMatch(finder, first, position, effort);
    }
    search.entries = entries;
    return position;
}

// Whether the match at the position should be deferred until the next position is searched.
bool isWorthWaiting(const MatchFinder<true>& finder, const Match& match, int position,
                    const Effort& effort) {
    return match.length < effort.lazyLength && finder.canSearch(position + 1);
}

// A match at the position that saves more than the one deferred at the position before.
[[gnu::always_inline]] inline Match findBetter(MatchFinder<true>& finder, const Match& waiting,
                                               int position, const Effort& effort) {
    SearchLimits limits = effort.limits;
    if (waiting.length >= effort.goodLength) {
        limits.chainLength /= 4;
    }
    return finder.findAndInsert(position, waiting.gain, limits);
}

// As searchGreedily. Long, because the deferred match is part of the loop's state.
int searchLazily(LazySearch& search, const Effort& effort, int position, int stop) {
    auto [finder, entries] = search;
    bool isSearched = false; // whether `match` is that of the position
    Match match{0, 0, 0};
    while (position < stop && !entries.isFull()) {
        match = isSearched ? match : findAt(finder, position, effort);
        isSearched = false;
        if (match.length == 0) {
            entries.literal(*finder.at(position++));
            continue;
        }
        int first = position + 1; // first position not yet inserted
        if (isWorthWaiting(finder, match, position, effort)) {
            const Match better = findBetter(finder, match, first++, effort);
            if (better.length != 0) {
                entries.literal(*finder.at(position++));
                match = better;
                isSearched = true;
                continue;
            }
        }
        entries.match(match.length, match.distance);
        position += match.length;
        if (match.distance < match.length) { // repeats itself
            insertMatch(finder, first, position, effort);
        } else {
            finder.insertRange(first, position);
        }
    }
    if (isSearched) {
        finder.remove(position);
    }
    search.entries = entries;
    return position;
}

int searchAll(const SearchSpace& space, EntryWriter& entries, const Effort& effort, int position,
              int stop) {
    const auto searchAs = [&](auto search, auto run) {
        search.finder.insertBefore(position);
        const int reached = run(search, effort, position, stop);
        entries = search.entries;
        return reached;
    };
    return effort.lazyLength > 0
               ? searchAs(LazySearch{MatchFinder<true>(space), entries}, searchLazily)
               : searchAs(GreedySearch{MatchFinder<false>(space), entries}, searchGreedily);
}

constexpr bool isPowerOf2Within(int value, int least, int most) {
    return value >= least && value <= most && (value & (value - 1)) == 0;
}

} // namespace

} // namespace ntk::deflate

using namespace ntk;
using namespace ntk::deflate;

NtkStatus ntksDeflateLZ77_8u(const Ntk8u** ppSrc, int* pSrcLen, int* pSrcIdx, const Ntk8u* pWindow,
                             int winSize, Ntk32s* pHashHead, Ntk32s* pHashPrev, int hashSize,
                             Ntk32u* pLitFreq, Ntk32u* pDistFreq, Ntk8u* pLit, Ntk16u* pDist,
                             int* pDstLen, int level, int flush) {
    if (anyNull(ppSrc, pSrcLen, pSrcIdx, pWindow, pHashHead, pHashPrev, pLitFreq, pDistFreq, pLit,
                pDist, pDstLen) ||
        *ppSrc == nullptr) {
        return ntkStsNullPtr;
    }
    const int begin = *pSrcIdx;
    if (*pSrcLen < 0 || begin < 0 || *pSrcLen > INT_MAX - begin || *pDstLen < 0 ||
        !isPowerOf2Within(winSize, 256, maxDistance) || !isPowerOf2Within(hashSize, 256, 65536)) {
        return ntkStsBadSize;
    }
    if (level < 1 || level > 9 || flush < ntkDeflateNoFlush || flush > ntkDeflateFinish ||
        pWindow > *ppSrc) {
        return ntkStsBadValue;
    }
    const auto history = static_cast<int>(std::min<std::ptrdiff_t>(*ppSrc - pWindow, begin));
    const int end = begin + *pSrcLen;
    const SearchSpace space{*ppSrc,   begin,
                            end,      begin - history,
                            winSize,  atAnyAddress(pHashHead),
                            hashSize, reinterpret_cast<Links*>(pHashPrev)};
    EntryWriter entries(pLit, pDist, *pDstLen, pLitFreq, pDistFreq);
    const int stop = flush == ntkDeflateNoFlush ? end - lookaheadBytes + 1 : end;
    const Effort& effort = efforts[static_cast<std::size_t>(level - 1)];
    const int reached = searchAll(space, entries, effort, begin, stop);
    *ppSrc += reached - begin;
    *pSrcLen = end - reached;
    *pSrcIdx = reached;
    *pDstLen = entries.left();
    return reached < stop ? ntkStsDstFull : ntkStsNoErr;
}
