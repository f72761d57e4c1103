/* Stages of the bzip2 format: part of libntkdc.so.12, included by ntkdc.h.
 *
 * Called one after another, they encode the contents of bzip2's blocks:
 *
 *   ntksEncodeRLE_BZ2_8u .. Flush    shortens runs of four and more bytes; makes the in-use table
 *   ntksReduceDictionary_8u_I        replaces byte values by their ranks among those in use
 *   ntksBWTFwd_8u                    Burrows-Wheeler transform (ntkdcbwt.h)
 *   ntksMTFFwd_8u                    move-to-front, with a new state for every block
 *   ntksEncodeZ1Z2_BZ2_8u16u         encodes runs of zeroes, makes 16-bit symbols; then the caller
 *                                    appends the end-of-block symbol, sizeDictionary + 1
 *   ntksEncodeHuff*_BZ2_16u8u        Huffman coding of the symbols (ntkdcbz2huff.h)
 *
 * and decode them: ntksDecodeHuff_BZ2_8u16u, ntksDecodeBlock_BZ2_16u8u (the four stages in
 * between), ntksDecodeRLEState_BZ2_8u. Stream and block headers are up to the caller.
 *
 * Common to the functions:
 * - The caller provides the states, in the sizes that the GetSize functions give; an Init function
 *   initialises them. They refer to no buffer and may be copied.
 * - A function that takes Ntk8u** (Ntk16u**) and int* advances the pointer past what it has read or
 *   written, and sets the int to the number of elements (not bytes) left. For a destination passed
 *   as Ntk8u* (Ntk16u*) and int*, the int is the capacity in elements on entry, and the number of
 *   elements written on return.
 * - Source, destination, state and tables must not overlap.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a negative length or capacity; those
 *   named at the function. After ntkStsDstFull pointers and lengths are where the work stopped;
 *   another call continues it.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Run-length coding ------------------------------------------------------------------------
 * The first stage of bzip2: of a run of 4 to 255 equal bytes, four are kept, followed by a count
 * byte that says how many more there were (0 to 251). Longer runs are split.
 */

/* Size in bytes of a run-length state. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksRLEGetSize_BZ2_8u(int* pSize);

/* Initialise the state for a new block: nothing pending, no byte in use. Both do the same: a state
 * serves an encoder and a decoder, which do not affect each other.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeRLEInit_BZ2_8u(Ntk8u* pState);
NTK_API NtkStatus ntksDecodeRLEInit_BZ2_8u(Ntk8u* pState);

/* Encodes a piece of a block. The last run of the source, up to 255 bytes, stays pending in the
 * state because the source of the next call may continue it; see ntksEncodeRLEFlush_BZ2_8u. The
 * bytes written are added to the in-use table.
 *
 * pDst, pDstLen: a capacity of 5 or more guarantees progress; srcLen * 5 / 4 + 5 is always enough.
 * Also returns ntkStsDstFull if the next run does not fit; a run that has been read may then be
 * pending.
 */
NTK_API NtkStatus ntksEncodeRLE_BZ2_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                                       Ntk8u* pState);

/* Writes the pending run, 0 to 5 bytes, and adds it to the in-use table. This ends a block.
 *
 * pDst: 5 bytes; fewer if the pending run is known to be shorter (a run of 1 to 3 takes as many).
 * pDstLen: receives the number of bytes written; its value on entry does not matter.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeRLEFlush_BZ2_8u(Ntk8u* pDst, int* pDstLen, Ntk8u* pState);

/* Gets the byte values that the encoder has written since the Init: 1 for each in use, else 0.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksRLEGetInUseTable_8u(Ntk8u inUse[256], const Ntk8u* pState);

/* Decodes a piece of a block. Source and destination may be split anywhere. A count of 252 to 255,
 * which no encoder writes, is decoded like any other.
 *
 * pState: initialised by either Init; an encoder's state, flushed or not, may be used too.
 * Also returns ntkStsDstFull if the data do not fit. After ntkStsNoErr the whole source is taken;
 * it may have ended within a run.
 */
NTK_API NtkStatus ntksDecodeRLEState_BZ2_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst,
                                            int* pDstLen, Ntk8u* pState);

/* ---- Dictionary -------------------------------------------------------------------------------
 * inUse: a byte value is in use where the table is not 0.
 */

/* Replaces every byte by the number of values in use below it: for a value in use, its rank. The
 * result is defined for all bytes, in use or not.
 *
 * pSrcDst: srcLen bytes, changed in place.
 * pSizeDictionary: receives the number of values in use, 0 to 256.
 */
NTK_API NtkStatus ntksReduceDictionary_8u_I(const Ntk8u inUse[256], Ntk8u* pSrcDst, int srcLen,
                                            int* pSizeDictionary);

/* Replaces every rank by the value in use that has it. Bytes that are no rank stay unchanged.
 *
 * sizeDictionary: 0 to 256; if inUse has another number of values, the smaller number applies.
 * Also returns ntkStsBadValue if sizeDictionary is out of range.
 */
NTK_API NtkStatus ntksExpandDictionary_8u_I(const Ntk8u inUse[256], Ntk8u* pSrcDst, int srcLen,
                                            int sizeDictionary);

/* ---- Move-to-front ----------------------------------------------------------------------------
 * Every byte is replaced by its position in a list of all byte values, then moved to the front of
 * the list.
 */

/* Size in bytes of a move-to-front state. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksMTFGetSize_8u(int* pSize);

/* Sets the list to 0, 1 .. 255. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksMTFInit_8u(Ntk8u* pState);

/* Bytes to positions, and back. The state keeps the list from call to call, so data may be passed
 * in pieces; both directions change it in the same way.
 *
 * pSrc, pDst: srcLen bytes each.
 * pState: initialised by the Init. Other contents give undefined output, but nothing outside the
 *   buffers is read or written.
 */
NTK_API NtkStatus ntksMTFFwd_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, Ntk8u* pState);
NTK_API NtkStatus ntksMTFInv_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, Ntk8u* pState);

/* ---- Runs of zeroes ---------------------------------------------------------------------------
 * A run of n zeroes is encoded as the digits of n in bijective base 2, least significant first,
 * with the symbols 0 for the digit 1 (RUNA) and 1 for the digit 2 (RUNB). Any other byte b is
 * encoded as the symbol b + 1, 2 to 256.
 */

/* Encodes a block. A run ends at the end of the source: pass a block in one call, or in pieces that
 * do not split a run.
 *
 * pDst, pDstLen: in 16-bit symbols; srcLen of them are always enough.
 * freqTable: the number of times that each symbol was written is added, modulo 2^32.
 * Also returns ntkStsDstFull if the next symbol or run does not fit.
 */
NTK_API NtkStatus ntksEncodeZ1Z2_BZ2_8u16u(Ntk8u** ppSrc, int* pSrcLen, Ntk16u* pDst, int* pDstLen,
                                           int freqTable[258]);

/* Decodes a block without its end-of-block symbol. Pass it in one call, or in pieces that do not
 * split the digits of a run.
 *
 * pSrcLen: in 16-bit symbols.
 * Also returns ntkStsDstFull if the next byte or run does not fit (the source is left before it),
 * and ntkStsBadSrcData for a symbol above 256 and for a run longer than INT_MAX. After
 * ntkStsBadSrcData pointers and lengths are unchanged.
 */
NTK_API NtkStatus ntksDecodeZ1Z2_BZ2_16u8u(Ntk16u** ppSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen);

/* Decodes a block from its symbols to its run-length coded bytes: runs of zeroes, move-to-front
 * from a new list, expansion of the dictionary, inverse Burrows-Wheeler transform. The source may
 * hold anything.
 *
 * pSrc: srcLen 16-bit symbols, without an end-of-block symbol.
 * pDst, pDstLen: *pDstLen is the capacity on entry and the number of bytes decoded on return.
 * idx: row of the text among its sorted rotations. Any other row gives another rotation.
 * sizeDictionary, inUse: the dictionary that the block was reduced with.
 * pBuff: a work buffer of the size that ntksBWTInvGetSize_8u gives for the length of the block or,
 *   if that is not known in advance, for the capacity.
 * Also returns ntkStsBadSize if the block exceeds 16777216 bytes; ntkStsBadValue if idx is negative
 * or not below the length of the block, or if sizeDictionary is not the number of values in use;
 * ntkStsDstTooSmall if the block exceeds the capacity; ntkStsBadSrcData for a symbol above
 * sizeDictionary and for a run longer than INT_MAX. An empty block needs an idx of 0. After an
 * error *pDstLen is unchanged.
 */
NTK_API NtkStatus ntksDecodeBlock_BZ2_16u8u(const Ntk16u* pSrc, int srcLen, Ntk8u* pDst,
                                            int* pDstLen, int idx, int sizeDictionary,
                                            const Ntk8u inUse[256], Ntk8u* pBuff);

#ifdef __cplusplus
}
#endif
