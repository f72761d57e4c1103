/* Inflate: part of libntkdc.so.12, included by ntkdc.h.
 *
 * Decodes the deflate format (RFC 1951), in calls of any size: a stream may be cut at every byte
 * of its source and of its data. What stands around a stream in a file (zlib's and gzip's headers
 * and checksums) is the caller's.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Where a stream stands between two calls. Values above these stand for places within the header
 * of a block.
 */
enum {
    ntkInflateBlockHeader = 0, /* before a block; a stream of several blocks starts here */
    ntkInflateFixed = 1,       /* within a block of the fixed codes */
    ntkInflateDynamic = 2,     /* within a block of codes of its own */
    ntkInflateStored = 3,      /* within a block of plain bytes */
    ntkInflateFinished = 4     /* behind the last block */
};

/* What a stream needs to go on with the next call: 24 bytes, the caller's, all zero or made by
 * ntksInflateInit_8u before a stream starts. May be copied between calls.
 */
typedef struct {
    Ntk32u workBuffer[2]; /* address of the work buffer, low half first; 0: there is none */
    Ntk32u pending;       /* of the match or stored block that is not yet copied */
    Ntk32u progress;      /* 0 where a stream starts. A caller that sets it to 0, and nothing else
                           * in here, starts the next stream. */
    Ntk32u reserved[2];   /* not used */
} NtksInflateState;

/* Size in bytes of the work buffer, about 16 KiB.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksInflateGetSize_8u(int* pSize);

/* Makes a state for a new stream with a work buffer for the codes of dynamic blocks. The buffer
 * stays the caller's, must stay where it is while the state is used, and serves one stream at a
 * time. Call it again, or set pState->progress to 0, to start another stream, with *pMode and
 * *pCodeLenBits set anew.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksInflateInit_8u(NtksInflateState* pState, Ntk8u* pWorkBuffer);

/* Decodes until the stream ends, the source is used up or the destination is full.
 *
 * ppSrc, pSrcLen: source and its length in bytes, 0 or more; on return what is left of it. Nothing
 *   behind the byte that holds the stream's last bit is taken.
 * pCode, pCodeLenBits: the bits that were taken from the source and not yet decoded, least
 *   significant first, and their number, 0 to 32; 0 where a stream starts. Bits above that number
 *   are ignored on entry and 0 on return. At the stream's end fewer than 8 are left, the rest of
 *   its last byte, unless the caller put more in.
 * pHistory, historyLen: the data before *ppDst, for matches to refer to; the last 32768 bytes
 *   suffice. Null and 0: they lie directly before *ppDst, as far as the calls for this stream
 *   decoded them; a new stream has none. Otherwise historyLen bytes that end at any place: what
 *   was decoded to another buffer, or a preset dictionary.
 * ppDst, pDstLen: destination and its capacity in bytes, 0 or more; on return what is left of it,
 *   whose contents are then undefined. Must not overlap the source or the history.
 * pMode: where the stream stands, one of the values above; ntkInflateBlockHeader to start one.
 *   With ntkInflateFixed and a new state the source starts within a block of the fixed codes,
 *   behind its header, and that block is the last.
 * pState: with an all-zero state there is no work buffer, and only stored and fixed blocks can be
 *   decoded.
 *
 * Returns
 * - ntkStsNoErr when the stream ended (*pMode is ntkInflateFinished; a further call does nothing),
 *   or when the whole source is taken and the stream goes on (any other *pMode, *pSrcLen is 0);
 * - ntkStsDstFull, a warning, when the destination is full (*pDstLen is 0) and the stream has more
 *   data: call again with room;
 * - ntkStsBadSrcData for what is not a deflate stream: a block type of 3, a stored length that
 *   differs from its complement, more than 286 or 30 codes, over-subscribed codes, incomplete codes
 *   (but for one code of 1 bit, or no distance code, which are allowed and of which only the code
 *   there is may occur), no code for the block's end, a repeated code length without a first or
 *   beyond the last, the symbols 286, 287 and the distance symbols 30, 31, or a distance to before
 *   the history;
 * - ntkStsNullPtr, also for a dynamic block when there is no work buffer;
 * - ntkStsBadSize for a negative length;
 * - ntkStsBadValue when *pCodeLenBits or *pMode is out of range or *pMode is within a dynamic block
 *   without a work buffer or whose codes were never read.
 * After an error all values are as they were; the destination is undefined up to its capacity, and
 * a stream that had reached a dynamic block cannot be continued.
 */
NTK_API NtkStatus ntksInflate_8u(const Ntk8u** ppSrc, int* pSrcLen, Ntk32u* pCode,
                                 int* pCodeLenBits, const Ntk8u* pHistory, Ntk8u** ppDst,
                                 int* pDstLen, int historyLen, int* pMode,
                                 NtksInflateState* pState);

#ifdef __cplusplus
}
#endif
