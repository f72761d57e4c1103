/* Huffman coding of the bzip2 format: part of libntkdc.so.12, included by ntkdc.h.
 *
 * A block has at most 900000 symbols of an alphabet of 1 to 258; the last symbol of the alphabet
 * ends the block. In a .bz2 file the alphabet has two symbols more than the block has byte values.
 * The functions write the part of a block from the number of its tables to its end-of-block symbol,
 * most significant bit first.
 *
 * pCode, pCodeLenBits: the pending bits between one call and the next, up to 32. They are at the
 * top of *pCode, the earliest highest; begin with 0 and 0. The bits below them are 0 on return and
 *   ignored on entry. ntkStsBadValue if the count is not within 0 to 32.
 * pState: memory of the size that the GetSize function gives. It must not be moved once it is
 *   initialised.
 * After an error the in/out arguments are unchanged and the contents of the destination undefined;
 * after ntkStsBadSrcData from unpacking, the decoder has no tables.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Encoder: ntksEncodeHuffInit, then ntksPackHuffContext, then ntksEncodeHuff -------------- */

/* The size in bytes of the encoder's state.
 *
 * blockLen: symbols in the longest block to come, 0 to 900000. The size does not depend on it:
 * every state has room for the longest possible block, because a block may get longer than its
 * data. Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if blockLen is out of range.
 */
NTK_API NtkStatus ntksEncodeHuffGetSize_BZ2_16u8u(int blockLen, int* pStateSize);

/* Chooses two to six code tables for a block, and for every group of 50 symbols the table that
 * encodes it shortest. Codes are at most 17 bits long; every symbol of the alphabet has one.
 *
 * sizeDictionary: number of symbols in the alphabet, 1 to 258.
 * pFreqTable: the caller's counts of the symbols. Not read, and may be null: the symbols are
 * counted here, because wrong counts would make longer blocks and counting takes little time. pSrc:
 * the srcLen symbols of the block, 1 to 900000, including the end-of-block symbol. Symbols outside
 * the alphabet are ignored. Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen is out of
 * range; ntkStsBadValue if sizeDictionary is.
 */
NTK_API NtkStatus ntksEncodeHuffInit_BZ2_16u8u(int sizeDictionary, const int* pFreqTable,
                                               const Ntk16u* pSrc, int srcLen, Ntk8u* pState);

/* Writes the context that a decoder needs: the number of the tables, the table of every group, and
 * the lengths of the codes. The next ntksEncodeHuff_BZ2_16u8u begins the block.
 *
 * pDstLen: capacity of pDst in bytes, 0 or more; on return the bytes written. 21000 are enough.
 * Fewer than 8 bits stay in *pCode.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize; ntkStsBadValue; ntkStsDstTooSmall.
 */
NTK_API NtkStatus ntksPackHuffContext_BZ2_16u8u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u* pDst,
                                                int* pDstLen, Ntk8u* pState);

/* Encodes symbols of the block, up to the end-of-block symbol; the call after that begins the block
 * again. A block may be encoded in pieces by several calls.
 *
 * ppSrc, pSrcLen: the symbols and their number, 0 or more; advanced past those that were encoded.
 * pDstLen: capacity of pDst in bytes, 0 or more; on return the bytes written.
 * Fewer than 8 bits stay in *pCode, or more if the destination is full. After the last symbol the
 * caller must write them.
 * Returns ntkStsNoErr; ntkStsDstFull if symbols are left that need more room; ntkStsNullPtr;
 * ntkStsBadSize; ntkStsBadValue; ntkStsBadSrcData if a symbol is not in the alphabet, or if the
 * block has more groups of 50 symbols than ntksEncodeHuffInit_BZ2_16u8u was given.
 */
NTK_API NtkStatus ntksEncodeHuff_BZ2_16u8u(Ntk32u* pCode, int* pCodeLenBits, Ntk16u** ppSrc,
                                           int* pSrcLen, Ntk8u* pDst, int* pDstLen, Ntk8u* pState);

/* ---- Decoder: ntksDecodeHuffInit, then for each block ntksUnpackHuffContext and ntksDecodeHuff -
 * The source may hold anything.
 */

/* The size in bytes of the decoder's state. As ntksEncodeHuffGetSize_BZ2_16u8u. */
NTK_API NtkStatus ntksDecodeHuffGetSize_BZ2_8u16u(int blockLen, int* pStateSize);

/* Initialises a decoder, without tables as yet.
 *
 * sizeDictionary: number of symbols in the alphabet of the blocks to come, 1 to 258.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadValue if sizeDictionary is out of range.
 */
NTK_API NtkStatus ntksDecodeHuffInit_BZ2_8u16u(int sizeDictionary, Ntk8u* pState);

/* Reads the context that ntksPackHuffContext_BZ2_16u8u writes, and begins a block. The source must
 * hold the whole context.
 *
 * ppSrc, pSrcLen: the source and its length in bytes, 0 or more; advanced past the last byte of
 *   which a bit was taken. What is left of that byte is in *pCode.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize; ntkStsBadValue; ntkStsBadSrcData if the source
 * is not a valid context for this alphabet, or is incomplete: the decoder then has no tables.
 * Incomplete codes, which leave bit patterns unused, are no error here.
 */
NTK_API NtkStatus ntksUnpackHuffContext_BZ2_8u16u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc,
                                                  int* pSrcLen, Ntk8u* pState);

/* Decodes symbols of the block, up to and including the end-of-block symbol; the call after that
 * begins the block again. A block may be decoded in pieces by several calls.
 *
 * ppSrc, pSrcLen: as for ntksUnpackHuffContext_BZ2_8u16u.
 * pDstLen: capacity of pDst in symbols, 0 or more; on return the symbols decoded.
 * Returns ntkStsNoErr at the end of the block; ntkStsDstFull if the destination is full: call again
 * with more room; ntkStsSrcEnd if the source ends within the block: all of it is taken, the bits of
 * an incomplete code are in *pCode, call again with more source; ntkStsNullPtr; ntkStsBadSize;
 * ntkStsBadValue; ntkStsBadSrcData if the bits are no code of the table, if the block has more
 * groups than its context, or if the decoder has no tables.
 */
NTK_API NtkStatus ntksDecodeHuff_BZ2_8u16u(Ntk32u* pCode, int* pCodeLenBits, Ntk8u** ppSrc,
                                           int* pSrcLen, Ntk16u* pDst, int* pDstLen, Ntk8u* pState);

#ifdef __cplusplus
}
#endif
