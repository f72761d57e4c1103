/* Stages of the bzip2 format: part of libntkdc.so.12, included by ntkdc.h.
 *
 * Chained, they make and read the contents of bzip2's blocks:
 *
 *   ntksEncodeRLE_BZ2_8u .. Flush    runs of four and more bytes to five; the block's in-use table
 *   ntksReduceDictionary_8u_I        byte values to their ranks among those in use
 *   ntksBWTFwd_8u                    rotations sorted (ntkdcbwt.h)
 *   ntksMTFFwd_8u                    move-to-front ranks, from a new state for every block
 *   ntksEncodeZ1Z2_BZ2_8u16u         runs of zeroes to digits, all else one up; then the caller
 *                                    appends the end-of-block symbol, sizeDictionary + 1
 *   ntksEncodeHuff*_BZ2_16u8u        coding of the symbols (ntkdcbz2huff.h)
 *
 * and backwards: ntksDecodeHuff_BZ2_8u16u, ntksDecodeBlock_BZ2_16u8u (all between), and
 * ntksDecodeRLEState_BZ2_8u. Stream and block headers are the caller's.
 *
 * Common to the functions:
 * - States are blocks of the caller's, of the sizes that the GetSize functions give, made by an
 *   Init function. They refer to no buffer and may be copied.
 * - A function that takes Ntk8u** (Ntk16u**) and int* moves the pointer on over what it has read
 *   or written, and leaves in the int the number of elements (not bytes) between there and the
 *   buffer's end. A function that takes a destination by Ntk8u* (Ntk16u*) and int* has the
 *   capacity in elements in the int on entry, and the number of elements written on return.
 * - Source, destination, state and tables must not overlap.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a negative length or capacity; those
 *   named at the function. ntkStsDstFull leaves pointers and lengths where the work stands, to go
 *   on with in another call.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Run-length coding ------------------------------------------------------------------------
 * The first stage of bzip2: of 4 to 255 equal bytes, four are kept and a byte follows that says
 * how many more there were (0 to 251). Longer runs are cut.
 */

/* Size in bytes of a run-length state. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksRLEGetSize_BZ2_8u(int* pSize);

/* Makes the state of a new block: nothing pending, no byte in use. The state serves an encoder
 * and a decoder, which do not disturb each other; ntksDecodeRLEInit_BZ2_8u does the same.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeRLEInit_BZ2_8u(Ntk8u* pState);
NTK_API NtkStatus ntksDecodeRLEInit_BZ2_8u(Ntk8u* pState);

/* Goes on encoding. The last run of the source stays pending in the state, up to 255 bytes,
 * because the next call's source may continue it: see ntksEncodeRLEFlush_BZ2_8u. What has been
 * written is added to the in-use table.
 *
 * pDst, pDstLen: a capacity of 5 or more is sure of some progress; srcLen * 5 / 4 + 5 takes
 *   everything.
 * Also returns ntkStsDstFull when the next run does not fit; a run that has been read may then be
 * pending.
 */
NTK_API NtkStatus ntksEncodeRLE_BZ2_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                                       Ntk8u* pState);

/* Writes the pending run, 0 to 5 bytes, and adds it to the in-use table. This ends a block.
 *
 * pDst: 5 bytes; fewer where less than that can be pending (a run of 1 to 3 takes as many).
 * pDstLen: receives the number of bytes written; what it holds before does not matter.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeRLEFlush_BZ2_8u(Ntk8u* pDst, int* pDstLen, Ntk8u* pState);

/* The byte values that the encoder has written since the Init: 1 for each in use, else 0.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksRLEGetInUseTable_8u(Ntk8u inUse[256], const Ntk8u* pState);

/* Goes on decoding. Source and destination may be cut anywhere. A count of 252 to 255, which no
 * encoder writes, stands for as many bytes.
 *
 * pState: made by either Init; an encoder's state, flushed or not, serves too.
 * Also returns ntkStsDstFull when there is more to write than there is room for. With ntkStsNoErr
 * the source is at its end, which may be the middle of a run.
 */
NTK_API NtkStatus ntksDecodeRLEState_BZ2_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst,
                                            int* pDstLen, Ntk8u* pState);

/* ---- Dictionary -------------------------------------------------------------------------------
 * inUse: a byte value is in use where the table is not 0.
 */

/* Replaces every byte by the number of values in use below it: for a value in use, its rank. The
 * result is defined for all bytes; reducing what is reduced already gives ranks of ranks.
 *
 * pSrcDst: srcLen bytes, changed in place.
 * pSizeDictionary: receives the number of values in use, 0 to 256.
 */
NTK_API NtkStatus ntksReduceDictionary_8u_I(const Ntk8u inUse[256], Ntk8u* pSrcDst, int srcLen,
                                            int* pSizeDictionary);

/* Replaces every rank by the value in use that has it. Bytes that are no rank of the dictionary
 * stay as they are.
 *
 * sizeDictionary: 0 to 256; where inUse has another number of values, the smaller one counts.
 * Also returns ntkStsBadValue when sizeDictionary is out of its range.
 */
NTK_API NtkStatus ntksExpandDictionary_8u_I(const Ntk8u inUse[256], Ntk8u* pSrcDst, int srcLen,
                                            int sizeDictionary);

/* ---- Move-to-front ----------------------------------------------------------------------------
 * Every byte becomes its position in a list of all byte values, and moves to the list's front.
 */

/* Size in bytes of a move-to-front state. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksMTFGetSize_8u(int* pSize);

/* Makes the list 0, 1 .. 255. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksMTFInit_8u(Ntk8u* pState);

/* Bytes to positions, and back. The list stays in the state from call to call, so that pieces
 * chain in order; both directions change it alike.
 *
 * pSrc, pDst: srcLen bytes each.
 * pState: made by the Init; what else it may hold leads to undefined output, but not outside the
 *   buffers.
 */
NTK_API NtkStatus ntksMTFFwd_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, Ntk8u* pState);
NTK_API NtkStatus ntksMTFInv_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, Ntk8u* pState);

/* ---- Runs of zeroes ---------------------------------------------------------------------------
 * A run of n zeroes becomes the digits of n in the bijective system of base 2, the least one
 * first, with the symbols 0 for the digit 1 (RUNA) and 1 for the digit 2 (RUNB). Any other byte
 * becomes the symbol one above it, 2 to 256.
 */

/* Encodes a block. A run ends where the source ends: a block must come whole, or in pieces that do
 * not cut a run.
 *
 * pDst, pDstLen: in 16-bit symbols; srcLen of them take everything.
 * freqTable: the number of times that each symbol was written is added, modulo 2^32.
 * Also returns ntkStsDstFull when the next symbol or run does not fit.
 */
NTK_API NtkStatus ntksEncodeZ1Z2_BZ2_8u16u(Ntk8u** ppSrc, int* pSrcLen, Ntk16u* pDst, int* pDstLen,
                                           int freqTable[258]);

/* Decodes a block, which must come whole, or in pieces that do not cut the digits of a run, and
 * without an end-of-block symbol.
 *
 * pSrcLen: in 16-bit symbols.
 * Also returns ntkStsDstFull when the next byte or run does not fit (the source stands before it),
 * and ntkStsBadSrcData for a symbol above 256 and for a run longer than an int counts. After
 * ntkStsBadSrcData pointers and lengths are as they were.
 */
NTK_API NtkStatus ntksDecodeZ1Z2_BZ2_16u8u(Ntk16u** ppSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen);

/* Decodes a block from its symbols to the bytes that were run-length coded: runs of zeroes,
 * move-to-front from a new list, expansion, inverse Burrows-Wheeler transform. The source may hold
 * anything.
 *
 * pSrc: srcLen 16-bit symbols, without an end-of-block symbol.
 * pDst, pDstLen: *pDstLen is the capacity on entry and the number of bytes decoded on return.
 * idx: row of the text among its sorted rotations. Any row gives some rotation of the text.
 * sizeDictionary, inUse: the dictionary that the block was reduced with.
 * pBuff: ntksBWTInvGetSize_8u(length of the block) bytes; where the length is not known
 *   beforehand, those of the capacity.
 * Also returns ntkStsBadSize when the block exceeds 16777216 bytes; ntkStsBadValue when idx is
 * negative or not below the block's length, or when
 * sizeDictionary is not the number of values in use; ntkStsDstTooSmall when the block exceeds the
 * capacity; ntkStsBadSrcData for a symbol above sizeDictionary and for a run longer than an int
 * counts. An empty block decodes to nothing with an idx of 0. After an error *pDstLen is as it was.
 */
NTK_API NtkStatus ntksDecodeBlock_BZ2_16u8u(const Ntk16u* pSrc, int srcLen, Ntk8u* pDst,
                                            int* pDstLen, int idx, int sizeDictionary,
                                            const Ntk8u inUse[256], Ntk8u* pBuff);

#ifdef __cplusplus
}
#endif
