/* Deflate (RFC 1951), encoding in two steps: a match search that produces a sequence of entries,
 * and the Huffman coding of such entries. Part of libntkdc.so.12, included by ntkdc.h.
 *
 * An entry is the pair of the elements with the same index in two arrays:
 *   pDist[i] == 0: a literal, the byte pLit[i];
 *   pDist[i] 1 to 32768: a match at that distance, of pLit[i] + 3 bytes (3 to 258).
 *
 * Block headers, the end-of-block code and the choice of the codes are up to the caller.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How much of the source a call of ntksDeflateLZ77_8u encodes. The flushes and the end differ in
 * what the caller writes after the entries, not in the entries.
 */
enum {
    ntkDeflateNoFlush = 0, /* more data follow: up to 262 bytes may be left for the next call */
    ntkDeflatePartialFlush = 1, /* all bytes are encoded, as with the two values below */
    ntkDeflateSyncFlush = 2,
    ntkDeflateFinish = 3
};

/* The code of a symbol: its bits reversed (the bit that is written first is the least significant
 * one), and its length in bits, 1 to 15, or 0 for a symbol without a code. Bits above the length
 * must be 0.
 */
typedef struct {
    Ntk16u code;
    Ntk16u len;
} NtkHuffCode;

/* Searches the source for matches and writes it as entries. Another call continues one that could
 * not finish, with the arguments as that one left them (and room in the destination).
 *
 * ppSrc, pSrcLen: the source, *pSrcLen bytes at *ppSrc; on return what is left of it.
 * pSrcIdx: position of **ppSrc in the sequence of data, 0 or more; on return that of the new
 *   **ppSrc. *pSrcIdx + *pSrcLen must not exceed INT_MAX.
 * pWindow: begin of the data before *ppSrc that matches may refer to; they end at *ppSrc, and
 *   pWindow is *ppSrc if there are none. Only the last winSize or *pSrcIdx bytes are used. Matches
 *   are found only in what was the source of an earlier call with these tables.
 * winSize: largest distance of a match, a power of 2, 256 to 32768.
 * pHashHead, hashSize: positions by hash, hashSize of them, a power of 2, 256 to 65536. Positions
 *   outside the window are ignored: set all of them negative to begin a new sequence.
 * pHashPrev: winSize elements, which need no initialisation: any contents of the two tables are
 *   safe.
 * pLitFreq, pDistFreq: 286 and 30 counters, to which the literal/length and the distance symbols of
 *   the new entries are added (the end-of-block symbol is not).
 * pLit, pDist, pDstLen: the entries; *pDstLen is the room for them on entry and the room left on
 *   return. Room for *pSrcLen entries is always enough.
 * level: effort, 1 (fastest) to 9 (smallest). Matches are valued by their length in the fixed
 *   codes.
 * flush: see above.
 *
 * No two of the buffers and values may overlap, except source and window.
 * Returns ntkStsNoErr; ntkStsDstFull (a warning: the destination is full, source is left);
 * ntkStsNullPtr; ntkStsBadSize for a length, size or position out of range; ntkStsBadValue if level
 * or flush is out of range or pWindow is above *ppSrc. After an error everything is unchanged.
 */
NTK_API NtkStatus ntksDeflateLZ77_8u(const Ntk8u** ppSrc, int* pSrcLen, int* pSrcIdx,
                                     const Ntk8u* pWindow, int winSize, Ntk32s* pHashHead,
                                     Ntk32s* pHashPrev, int hashSize, Ntk32u* pLitFreq,
                                     Ntk32u* pDistFreq, Ntk8u* pLit, Ntk16u* pDist, int* pDstLen,
                                     int level, int flush);

/* Encodes entries with the given codes, least significant bit first. Entries may be passed in
 * pieces: the next call continues at *pDstIdx with the pending bits in *pCode.
 *
 * pLit, pDist: srcLen entries, 0 or more.
 * pCode, pCodeLen: the pending bits, *pCodeLen (0 to 32) of them, least significant first; bits
 *   above them are ignored. On return there are fewer than 8, and the bits above them are 0.
 * pLitCodes, pDistCodes: 288 literal/length codes and 30 distance codes.
 * pDst, pDstIdx: whole bytes are written to pDst from index *pDstIdx on; on return *pDstIdx is the
 *   index after the last one. The caller must provide room for them: an entry takes at most 48
 *   bits, with the fixed codes at most 31. Nothing after the last whole byte is written.
 *
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen, *pDstIdx or *pCodeLen is out of
 * range; ntkStsBadValue if a code is longer than 15 bits or the symbol of an entry has none;
 * ntkStsBadSrcData for a distance above 32768. After an error the values are unchanged, and the
 * destination is undefined as far as the entries would have filled it, with one bit for each that
 * has no code.
 */
NTK_API NtkStatus ntksDeflateHuff_8u(const Ntk8u* pLit, const Ntk16u* pDist, int srcLen,
                                     Ntk32u* pCode, int* pCodeLen, const NtkHuffCode* pLitCodes,
                                     const NtkHuffCode* pDistCodes, Ntk8u* pDst, int* pDstIdx);

#ifdef __cplusplus
}
#endif
