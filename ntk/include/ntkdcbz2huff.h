/* Huffman coding of the bzip2 format: part of libntkdc.so.12, included by ntkdc.h.
 *
 * A block is at most 900000 symbols of an alphabet of 1 to 258; the last symbol of the alphabet
 * ends the block. In a .bz2 file the alphabet has two symbols more than the block has byte values.
 * What the functions write is the part of a block from the number of its tables to its
 * end-of-block symbol, most significant bit first.
 *
 * pCode, pCodeLenBits: the bits between one call and the next, up to 32. They stand at the top of
 *   *pCode, the earliest highest; 0 and 0 begin with none. *pCode has no bits below them on return
 *   and may have any on entry. ntkStsBadValue when the count is not within 0 to 32.
 * pState: memory of the size that the GetSize function gives. It needs no alignment; it may not be
 *   moved once it is initialised. Symbols are aligned as their type, but for
 *   ntksEncodeHuffInit_BZ2_16u8u, which takes any address.
 * After an error the in/out arguments are as they were and what the destination holds is undefined;
 * after ntkStsBadSrcData from unpacking the decoder knows no tables.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Encoder: ntksEncodeHuffInit, then ntksPackHuffContext, then ntksEncodeHuff -------------- */

/* The size in bytes of the encoder's state.
 *
 * blockLen: symbols in the longest block that is asked for, 0 to 900000. Every state has room for
 *   the longest of all, because a block may become longer than the data that it is made of.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for another blockLen.
 */
NTK_API NtkStatus ntksEncodeHuffGetSize_BZ2_16u8u(int blockLen, int* pStateSize);

/* Chooses two to six code tables for a block, and for every 50 symbols of it the table that codes
 * them shortest. Codes are at most 17 bits long; every symbol of the alphabet has one.
 *
 * sizeDictionary: number of symbols in the alphabet, 1 to 258.
 * pFreqTable: the caller's counts of the symbols. Not read, and may be null: the symbols are
 *   counted here, because a count that is wrong must not cost more than the counting.
 * pSrc: the srcLen symbols of the block, 1 to 900000, the end-of-block symbol included. Symbols
 *   outside the alphabet have no influence.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for another srcLen; ntkStsBadValue for another
 * sizeDictionary.
 */
NTK_API NtkStatus ntksEncodeHuffInit_BZ2_16u8u(int sizeDictionary, const int* pFreqTable,
                                               const Ntk16u* pSrc, int srcLen, Ntk8u* pState);

/* Writes what a decoder must know of the tables: their number, which of them codes which symbols,
 * and the lengths of their codes. The next ntksEncodeHuff_BZ2_16u8u begins the block.
 *
 * pDstLen: capacity of pDst in bytes, 0 or more; on return the bytes written. 21000 are enough.
 * Fewer than 8 bits stay in *pCode.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize; ntkStsBadValue; ntkStsDstTooSmall.
 */
NTK_API NtkStatus ntksPackHuffContext_BZ2_16u8u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u* pDst,
                                                int* pDstLen, Ntk8u* pState);

/* Codes symbols of the block, up to the end-of-block symbol; the call after that begins the block
 * anew. Several calls may code a block in pieces.
 *
 * ppSrc, pSrcLen: the symbols and their number, 0 or more; moved behind those that were coded.
 * pDstLen: capacity of pDst in bytes, 0 or more; on return the bytes written.
 * Fewer than 8 bits stay in *pCode, more when the destination is full. Behind the last symbol it is
 * the caller who writes them.
 * Returns ntkStsNoErr; ntkStsDstFull when symbols are left that need more room; ntkStsNullPtr;
 * ntkStsBadSize; ntkStsBadValue; ntkStsBadSrcData when a symbol is not in the alphabet, or
 * when the block goes on for more groups of 50 symbols than ntksEncodeHuffInit_BZ2_16u8u has seen.
 */
NTK_API NtkStatus ntksEncodeHuff_BZ2_16u8u(Ntk32u* pCode, int* pCodeLenBits, Ntk16u** ppSrc,
                                           int* pSrcLen, Ntk8u* pDst, int* pDstLen, Ntk8u* pState);

/* ---- Decoder: ntksDecodeHuffInit, then for each block ntksUnpackHuffContext and ntksDecodeHuff -
 * The source may hold anything.
 */

/* The size in bytes of the decoder's state. As ntksEncodeHuffGetSize_BZ2_16u8u. */
NTK_API NtkStatus ntksDecodeHuffGetSize_BZ2_8u16u(int blockLen, int* pStateSize);

/* Makes a decoder that knows no tables yet.
 *
 * sizeDictionary: number of symbols in the alphabet of the blocks to come, 1 to 258.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadValue for another sizeDictionary.
 */
NTK_API NtkStatus ntksDecodeHuffInit_BZ2_8u16u(int sizeDictionary, Ntk8u* pState);

/* Reads what ntksPackHuffContext_BZ2_16u8u writes, and begins a block. All of it must be there.
 *
 * ppSrc, pSrcLen: the source and its length in bytes, 0 or more; moved behind the last byte of
 *   which a bit was taken. What is left of that byte is in *pCode.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize; ntkStsBadValue; ntkStsBadSrcData when it is
 * not such a context for this alphabet, or not a whole one: the decoder then knows no tables.
 * Codes that leave patterns unused are no error here.
 */
NTK_API NtkStatus ntksUnpackHuffContext_BZ2_8u16u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc,
                                                  int* pSrcLen, Ntk8u* pState);

/* Decodes symbols of the block, up to and with the end-of-block symbol; the call after that begins
 * the block anew. Several calls may decode a block in pieces.
 *
 * ppSrc, pSrcLen: as for ntksUnpackHuffContext_BZ2_8u16u.
 * pDstLen: capacity of pDst in symbols, 0 or more; on return the symbols decoded.
 * Returns ntkStsNoErr when the block is at its end; ntkStsDstFull, to go on with more room;
 * ntkStsSrcEnd, to go on with more source, when it ends within the block: all of it is taken then,
 * and the bits of an unfinished code are in *pCode; ntkStsNullPtr; ntkStsBadSize; ntkStsBadValue;
 * ntkStsBadSrcData when the bits are no code of the table, when the block goes on beyond the
 * groups that its context names, or when the decoder knows no tables.
 */
NTK_API NtkStatus ntksDecodeHuff_BZ2_8u16u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc,
                                           int* pSrcLen, Ntk16u* pDst, int* pDstLen, Ntk8u* pState);

#ifdef __cplusplus
}
#endif
