/* libntkdc.so.12: data-compression primitives. Checksums and LZ4 are declared here, the other
 * methods in the headers that this one includes.
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

/* The library's name, version and build date. Never null; the library owns the record. */
NTK_API const NtkLibraryVersion* ntkdcGetLibVersion(void);

/* ---- Checksums --------------------------------------------------------------------------------
 * Each function continues a checksum over srcLen bytes at pSrc: on entry the value is the checksum
 * of the bytes before, on return that of all bytes so far, so data may be passed in pieces. A
 * srcLen of 0 leaves a CRC unchanged.
 *
 * pSrc: srcLen bytes, 0 or more; must not overlap the value.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen is negative. After an error the value
 * is unchanged.
 */

/* Adler-32 (RFC 1950). The initial value is 1. Each 16-bit half of the value passed in is taken
 * modulo 65521, so any value is valid to continue from; the value returned is always reduced.
 * The checksum of "123456789" is 0x091e01de.
 */
NTK_API NtkStatus ntksAdler32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pAdler32);

/* CRC-32 of gzip and PNG (polynomial 0x04c11db7, least significant bit first; RFC 1952). The value
 * is the finished checksum, complements included; the initial value is 0. The checksum of
 * "123456789" is 0xcbf43926.
 */
NTK_API NtkStatus ntksCRC32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32);

/* CRC-32C of iSCSI (polynomial 0x1edc6f41, least significant bit first; RFC 3720). The value is the
 * finished checksum, complements included; the initial value is 0. The checksum of "123456789" is
 * 0xe3069283.
 */
NTK_API NtkStatus ntksCRC32C_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32C);

/* CRC of bzip2's blocks (polynomial 0x04c11db7, most significant bit first). The value is the
 * finished checksum, complements included; the initial value is 0. The checksum of "123456789" is
 * 0xfc891918.
 */
NTK_API NtkStatus ntksCRC32_BZ2_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32);

/* ---- LZ4 --------------------------------------------------------------------------------------
 * Blocks in the LZ4 block format: no header, no length, no checksum. The caller of the decoder must
 * know the length of the block and an upper bound for the length of the data. An empty source is
 * encoded as a block of one byte.
 *
 * Common to the encoders:
 * - pSrc: srcLen bytes, 0 to 0x7e000000 (2113929216).
 * - pDst, pDstLen: *pDstLen is the capacity of pDst on entry, 0 or more, and the length of the
 *   block on return. A capacity of srcLen + srcLen / 255 + 16 is enough for every block.
 * - Source, dictionary and destination must not overlap (the dictionary may end where the source
 *   begins), and none of them may overlap a table or a length.
 * - The caller provides the tables, in the sizes that the GetSize functions give; an Init function
 *   empties them. Between calls they refer to no buffer: source, dictionary and destination may be
 *   moved or freed after every call. Any contents are safe: a table is checked against the call,
 * and rebuilt if it does not fit it.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a length, capacity or position out of
 *   range; those named at the function. After an error the lengths are unchanged, the destination
 * is undefined up to its capacity, and the contents of the tables are lost.
 */

/* Size in bytes of the hash table of the LZ4, LZ4Safe, LZ4Dict and LZ4DictSafe encoders.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeLZ4HashTableGetSize_8u(int* pSize);

/* Empties a table for ntksEncodeLZ4_8u and ntksEncodeLZ4Safe_8u.
 * srcLen: length in bytes of the longest source to come, 0 or more; a hint, not a limit.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen is negative.
 */
NTK_API NtkStatus ntksEncodeLZ4HashTableInit_8u(Ntk8u* pHashTable, int srcLen);

/* Empties a table for a sequence of ntksEncodeLZ4Dict_8u and ntksEncodeLZ4DictSafe_8u calls.
 * Arguments and statuses as for ntksEncodeLZ4HashTableInit_8u.
 */
NTK_API NtkStatus ntksEncodeLZ4DictHashTableInit_8u(Ntk8u* pHashTable, int srcLen);

/* Encodes the source into one self-contained block.
 * Also returns ntkStsDstTooSmall if the block does not fit.
 */
NTK_API NtkStatus ntksEncodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen,
                                   Ntk8u* pHashTable);

/* Encodes as much of the source as fits the destination into one self-contained block.
 * pSrcLen: length of the source on entry, number of bytes encoded on return.
 * Also returns ntkStsDstFull (a warning: the block holds the first *pSrcLen bytes, call again for
 * the rest) and ntkStsDstTooSmall if the capacity is 0.
 */
NTK_API NtkStatus ntksEncodeLZ4Safe_8u(const Ntk8u* pSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                                       Ntk8u* pHashTable);

/* Encodes the source into one block that may refer back into a dictionary.
 *
 * pSrc: the first byte to encode (not the start of the data that srcIdx counts from).
 * srcIdx: position of pSrc in the sequence of data encoded with this table, 0 or more; srcIdx +
 *   srcLen must not exceed INT_MAX.
 * pDict, dictLen: the dictionary, dictLen bytes (0 or more) that the decoder will have; only the
 *   last 65536 are used. It may end just before pSrc or be anywhere else. Null and 0 for none: the
 *   block is then self-contained.
 * pHashTable: if the previous call with it ended at position srcIdx, its entries for that call's
 *   source are used to find matches in the dictionary, which should hold the same bytes. Otherwise
 *   the table is first rebuilt from the dictionary, which takes about a tenth of the time that it
 *   takes to encode that much data. The block is valid either way, whatever the table holds.
 * Also returns ntkStsDstTooSmall if the block does not fit.
 */
NTK_API NtkStatus ntksEncodeLZ4Dict_8u(const Ntk8u* pSrc, int srcIdx, int srcLen, Ntk8u* pDst,
                                       int* pDstLen, Ntk8u* pHashTable, const Ntk8u* pDict,
                                       int dictLen);

/* As ntksEncodeLZ4Dict_8u, but stops when the destination is full, with pSrcLen and the statuses
 * of ntksEncodeLZ4Safe_8u. The sequence continues at position srcIdx + *pSrcLen.
 */
NTK_API NtkStatus ntksEncodeLZ4DictSafe_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst,
                                           int* pDstLen, Ntk8u* pHashTable, const Ntk8u* pDict,
                                           int dictLen);

/* Sizes in bytes of the two tables of the high-compression encoder, which are always used together.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeLZ4HCHashTableGetSize_8u(int* pHashTableSize, int* pChainTableSize);

/* Empties both tables for a sequence of ntksEncodeLZ4HC_8u calls.
 * ppHashTables: the hash table, then the chain table.
 * Returns ntkStsNoErr; ntkStsNullPtr if the array or one of its two pointers is null.
 */
NTK_API NtkStatus ntksEncodeLZ4HCHashTableInit_8u(Ntk8u** ppHashTables);

/* As ntksEncodeLZ4DictSafe_8u, with a longer search for shorter blocks.
 * ppHashTables: the hash table, then the chain table.
 * level: 1 (fast) to 12 (smallest), or 0 for the default of 9. Levels from 10 on allocate about 64
 *   KiB during the call; if there is no memory, the block is valid but hardly shorter than the
 *   source.
 * Also returns ntkStsBadValue for another level.
 */
NTK_API NtkStatus ntksEncodeLZ4HC_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst,
                                     int* pDstLen, Ntk8u** ppHashTables, const Ntk8u* pDict,
                                     int dictLen, int level);

/* Decodes one self-contained block. The source may hold anything: nothing outside the two buffers
 * is read or written.
 *
 * pSrc: srcLen bytes, the whole block.
 * pDst, pDstLen: *pDstLen is the capacity of pDst on entry, 0 or more, and the number of bytes
 *   decoded on return; must not overlap the source.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen or *pDstLen is negative;
 * ntkStsDstTooSmall if the block is valid and its data exceed the capacity; ntkStsBadSrcData if the
 * source is not a self-contained block; one of 0 bytes is none. After an error *pDstLen is
 * unchanged and the destination undefined up to its capacity. A match at distance 0, which the
 * format forbids, is not rejected; the bytes that it decodes to are undefined.
 */
NTK_API NtkStatus ntksDecodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen);

#ifdef __cplusplus
}
#endif
