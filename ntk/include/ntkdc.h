/* libntkdc.so.12: data-compression primitives. Checksums and LZ4 stand here, the other methods in
 * the headers that this one includes.
 */
#pragma once

#include "ntkdcbwt.h"
#include "ntkdcbz2.h"
#include "ntkdcbz2huff.h"
#include "ntkdcdeflate.h"
#include "ntkdcinflate.h"
#include "ntkdclzo.h"
#include "ntkdclzss.h"
#include "ntkdczfp.h"
#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's name, number and build day. Never null; the record is the library's. */
NTK_API const NtkLibraryVersion* ntkdcGetLibVersion(void);

/* ---- Checksums --------------------------------------------------------------------------------
 * Each function continues a checksum over srcLen bytes at pSrc: the value in is that of the bytes
 * before, the value out that of all bytes so far, so that pieces chain in order. A srcLen of 0
 * leaves a CRC as it is.
 *
 * pSrc: srcLen bytes, 0 or more; must not overlap the value.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when srcLen is negative. After an error the
 * value is as it was.
 */

/* Adler-32 (RFC 1950). A checksum starts at 1. Each 16-bit half of the value in is taken modulo
 * 65521, so that any value is a valid one to continue from, and the value out is always reduced.
 * "123456789" gives 0x091e01de.
 */
NTK_API NtkStatus ntksAdler32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pAdler32);

/* CRC-32 of gzip and PNG (polynomial 0x04c11db7, least significant bit first; RFC 1952). The value
 * is the finished checksum, complements included; it starts at 0. "123456789" gives 0xcbf43926.
 */
NTK_API NtkStatus ntksCRC32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32);

/* CRC-32C of iSCSI (polynomial 0x1edc6f41, least significant bit first; RFC 3720). The value is the
 * finished checksum, complements included; it starts at 0. "123456789" gives 0xe3069283.
 */
NTK_API NtkStatus ntksCRC32C_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32C);

/* CRC of bzip2's blocks (polynomial 0x04c11db7, most significant bit first). The value is the
 * finished checksum, complements included; it starts at 0. "123456789" gives 0xfc891918.
 */
NTK_API NtkStatus ntksCRC32_BZ2_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32);

/* ---- LZ4 --------------------------------------------------------------------------------------
 * Blocks in the LZ4 block format: no header, no length, no checksum. The decoder's caller knows
 * the block's length and a bound of the data's. An empty source makes a block of one byte.
 *
 * Common to the encoders:
 * - pSrc: srcLen bytes, 0 to 0x7e000000 (2113929216).
 * - pDst, pDstLen: *pDstLen is the capacity of pDst on entry, 0 or more, and the length of the
 *   block on return. With a capacity of srcLen + srcLen / 255 + 16 every block fits.
 * - Source, dictionary and destination must not overlap (the dictionary may end where the source
 *   begins), nor may any of them overlap a table or a length.
 * - Tables are blocks of the caller's, of the sizes that the GetSize functions give, made empty by
 *   an Init function. Between calls they refer to no buffer: source, dictionary and destination
 *   may be moved or freed after every call. Any contents are safe: what a table says is checked
 *   against the call, and a table that does not fit it is made anew.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a length, capacity or position out of
 *   range; those named at the function. After an error the lengths are as they were, the
 *   destination is undefined up to its capacity, and the tables hold nothing of use.
 */

/* Size in bytes of the hash table of the LZ4, LZ4Safe, LZ4Dict and LZ4DictSafe encoders.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeLZ4HashTableGetSize_8u(int* pSize);

/* Makes an empty table for ntksEncodeLZ4_8u and ntksEncodeLZ4Safe_8u.
 * srcLen: length in bytes of the longest source to come, 0 or more; a hint, not a limit.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when srcLen is negative.
 */
NTK_API NtkStatus ntksEncodeLZ4HashTableInit_8u(Ntk8u* pHashTable, int srcLen);

/* Makes an empty table for a sequence of ntksEncodeLZ4Dict_8u and ntksEncodeLZ4DictSafe_8u calls.
 * Arguments and statuses as for ntksEncodeLZ4HashTableInit_8u.
 */
NTK_API NtkStatus ntksEncodeLZ4DictHashTableInit_8u(Ntk8u* pHashTable, int srcLen);

/* Encodes the source into one block that decodes by itself.
 * Also returns ntkStsDstTooSmall when the block does not fit.
 */
NTK_API NtkStatus ntksEncodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen,
                                   Ntk8u* pHashTable);

/* Encodes as much of the source as the destination takes into one block that decodes by itself.
 * pSrcLen: length of the source on entry, number of its bytes encoded on return.
 * Also returns ntkStsDstFull (a warning: the block holds the first *pSrcLen bytes, call again for
 * the rest) and ntkStsDstTooSmall when the capacity is 0.
 */
NTK_API NtkStatus ntksEncodeLZ4Safe_8u(const Ntk8u* pSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                                       Ntk8u* pHashTable);

/* Encodes the source into one block that may refer back into a dictionary.
 *
 * pSrc: the first byte to encode (not the start of the data that srcIdx counts from).
 * srcIdx: position of pSrc in the sequence of data encoded with this table, 0 or more; srcIdx +
 *   srcLen must not exceed INT_MAX.
 * pDict, dictLen: the dictionary, dictLen bytes (0 or more) that the decoder will have; of more
 *   than 65536 the last ones count. It may end just before pSrc or lie anywhere else. Null and 0
 *   for none: then the block decodes by itself.
 * pHashTable: where the last call that wrote it ended at position srcIdx, what it knows of that
 *   call's source serves to find matches in the dictionary, which should hold the same bytes.
 *   Otherwise it is first made anew from the dictionary, which takes about as long as it takes to
 *   encode a tenth as much. The block is right either way.
 * Also returns ntkStsDstTooSmall when the block does not fit.
 */
NTK_API NtkStatus ntksEncodeLZ4Dict_8u(const Ntk8u* pSrc, int srcIdx, int srcLen, Ntk8u* pDst,
                                       int* pDstLen, Ntk8u* pHashTable, const Ntk8u* pDict,
                                       int dictLen);

/* As ntksEncodeLZ4Dict_8u, but stops when the destination is full, with pSrcLen and the statuses
 * of ntksEncodeLZ4Safe_8u. The sequence goes on at position srcIdx + *pSrcLen.
 */
NTK_API NtkStatus ntksEncodeLZ4DictSafe_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst,
                                           int* pDstLen, Ntk8u* pHashTable, const Ntk8u* pDict,
                                           int dictLen);

/* Sizes in bytes of the two tables of the high-compression encoder, which belong together.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeLZ4HCHashTableGetSize_8u(int* pHashTableSize, int* pChainTableSize);

/* Makes empty tables for a sequence of ntksEncodeLZ4HC_8u calls.
 * ppHashTables: the hash table, then the chain table.
 * Returns ntkStsNoErr; ntkStsNullPtr when the array or one of its two pointers is null.
 */
NTK_API NtkStatus ntksEncodeLZ4HCHashTableInit_8u(Ntk8u** ppHashTables);

/* As ntksEncodeLZ4DictSafe_8u, searching longer for shorter blocks.
 * ppHashTables: the hash table, then the chain table.
 * level: 1 (fast) to 12 (smallest), or 0 for the default of 9. Levels from 10 on take about 64 KiB
 *   from the heap for the time of the call; without it the block is sound but hardly shorter than
 *   the source.
 * Also returns ntkStsBadValue for another level.
 */
NTK_API NtkStatus ntksEncodeLZ4HC_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst,
                                     int* pDstLen, Ntk8u** ppHashTables, const Ntk8u* pDict,
                                     int dictLen, int level);

/* Decodes one block made without a dictionary. The source may hold anything: nothing outside the
 * two buffers is read or written.
 *
 * pSrc: srcLen bytes, the whole block.
 * pDst, pDstLen: *pDstLen is the capacity of pDst on entry, 0 or more, and the number of bytes
 *   decoded on return; must not overlap the source.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when srcLen or *pDstLen is negative;
 * ntkStsDstTooSmall when the block is sound and its data exceed the capacity; ntkStsBadSrcData when
 * it is not a block that decodes without a dictionary, an empty one included. After an error
 * *pDstLen is as it was and the destination undefined up to its capacity. A match at distance 0,
 * which the format forbids, is not refused; the bytes that it stands for are undefined.
 */
NTK_API NtkStatus ntksDecodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen);

#ifdef __cplusplus
}
#endif
