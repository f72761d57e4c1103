/* Deflate (RFC 1951), encoding in two steps: a match search whose result is a row of entries, and
 * the Huffman coding of such entries. Part of libntkdc.so.12, included by ntkdc.h.
 *
 * An entry is one element of each of two arrays with the same index:
 *   pDist[i] == 0: a literal, the byte pLit[i];
 *   pDist[i] 1 to 32768: a match that far back, of pLit[i] + 3 bytes (3 to 258).
 *
 * Block headers, the end-of-block code and the choice of the codes are the caller's.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How far a call of ntksDeflateLZ77_8u goes. Flushes and the end differ in what the caller writes
 * after the entries, not in the entries.
 */
enum {
    ntkDeflateNoFlush = 0, /* more data follow: up to 262 bytes may be left for the next call */
    ntkDeflatePartialFlush = 1, /* all bytes become entries, as do they with the values below */
    ntkDeflateSyncFlush = 2,
    ntkDeflateFinish = 3
};

/* Codes of a symbol alphabet, indexed by symbol: the code with its bits reversed (the bit that goes
 * out first is the least significant one) and its length in bits, 1 to 15, or 0 for a symbol that
 * has no code. Bits above the length must be 0.
 */
typedef struct {
    Ntk16u code;
    Ntk16u len;
} NtkHuffCode;

/* Searches the source for repetitions and writes it as entries. A call that cannot finish is taken
 * up by another one with the arguments as this one left them (and room in the destination).
 *
 * ppSrc, pSrcLen: the source, *pSrcLen bytes at *ppSrc; on return what is left of it.
 * pSrcIdx: position of **ppSrc in the sequence of data, 0 or more; on return that of the new
 *   **ppSrc. *pSrcIdx + *pSrcLen must not exceed INT_MAX.
 * pWindow: where the data before *ppSrc that matches may lie in begin; they end at *ppSrc, which is
 *   pWindow itself where there are none. Of more than winSize or *pSrcIdx bytes the last ones
 *   count. Only what was the source of an earlier call with these tables is found there.
 * winSize: farthest distance of a match, a power of 2, 256 to 32768.
 * pHashHead, hashSize: positions by hash, hashSize of them, a power of 2, 256 to 65536. An entry
 *   that is no position in the window is none: a new sequence begins with all of them negative.
 * pHashPrev: winSize positions, which need no setting: any contents of the two tables are safe.
 * pLitFreq, pDistFreq: 286 and 30 counters, to which the literal/length and the distance symbols of
 *   the new entries are added (the end-of-block symbol is not).
 * pLit, pDist, pDstLen: the entries; *pDstLen is room for them on entry and room left on return.
 *   *pSrcLen entries always suffice.
 * level: effort, 1 (fastest) to 9 (smallest). Gain and cost are weighed with the fixed codes.
 * flush: see above.
 *
 * No two of the buffers and values may overlap, but source and window.
 * Returns ntkStsNoErr; ntkStsDstFull (a warning: the destination is full, source is left);
 * ntkStsNullPtr; ntkStsBadSize for a length, size or position out of range; ntkStsBadValue for
 * another level or flush, or when pWindow lies above *ppSrc. After an error everything is as it
 * was.
 */
NTK_API NtkStatus ntksDeflateLZ77_8u(const Ntk8u** ppSrc, int* pSrcLen, int* pSrcIdx,
                                     const Ntk8u* pWindow, int winSize, Ntk32s* pHashHead,
                                     Ntk32s* pHashPrev, int hashSize, Ntk32u* pLitFreq,
                                     Ntk32u* pDistFreq, Ntk8u* pLit, Ntk16u* pDist, int* pDstLen,
                                     int level, int flush);

/* Writes entries with the codes given, least significant bit first. Pieces chain: the next call
 * goes on at *pDstIdx with the bits left over in *pCode.
 *
 * pLit, pDist: srcLen entries, 0 or more.
 * pCode, pCodeLen: bits that are still to be written, *pCodeLen (0 to 32) of them, least
 *   significant first; bits above them are ignored. On return fewer than 8, those above them 0.
 * pLitCodes, pDistCodes: 288 literal/length codes and 30 distance codes.
 * pDst, pDstIdx: whole bytes are written to pDst from *pDstIdx on, which ends behind the last one.
 *   The caller provides room for them: an entry takes at most 48 bits, with the fixed codes at most
 *   31. Nothing behind the last whole byte is written.
 *
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when srcLen, *pDstIdx or *pCodeLen is out of
 * range; ntkStsBadValue when a code is longer than 15 bits or an entry's symbol has none;
 * ntkStsBadSrcData for a distance above 32768. After an error the values are as they were, the
 * destination undefined as far as the entries would have filled it.
 */
NTK_API NtkStatus ntksDeflateHuff_8u(const Ntk8u* pLit, const Ntk16u* pDist, int srcLen,
                                     Ntk32u* pCode, int* pCodeLen, const NtkHuffCode* pLitCodes,
                                     const NtkHuffCode* pDistCodes, Ntk8u* pDst, int* pDstIdx);

#ifdef __cplusplus
}
#endif
