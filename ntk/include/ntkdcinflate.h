/* Inflate: part of libntkdc.so.12, included by ntkdc.h.
 *
 * Decodes the deflate format (RFC 1951) in calls of any size: a stream may be split at every byte
 * of its source and of its data. The headers and checksums around a stream in zlib's and gzip's
 * formats are up to the caller.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The place in a stream between two calls. Larger values are places within the header of a block.
 */
enum {
    ntkInflateBlockHeader = 0, /* before a block; a stream of several blocks starts here */
    ntkInflateFixed = 1,       /* within a block with the fixed codes */
    ntkInflateDynamic = 2,     /* within a block with codes of its own */
    ntkInflateStored = 3,      /* within a stored block */
    ntkInflateFinished = 4     /* after the last block */
};

/* The state of a stream between two calls: 24 bytes, provided by the caller, all zero or
 * initialised by ntksInflateInit_8u before a stream starts. May be copied between calls.
 */
typedef struct {
    Ntk32u workBuffer[2]; /* address of the work buffer, low half first; 0: there is none */
    Ntk32u pending;       /* what is still to be copied of a match or stored block */
    Ntk32u progress;      /* 0 at the start of a stream: setting it to 0, and nothing else in here,
                           * starts the next stream */
    Ntk32u reserved[2];   /* not used */
} NtksInflateState;

/* Size in bytes of the work buffer, about 32 KiB.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksInflateGetSize_8u(int* pSize);

/* Initialises a state for a new stream, with a work buffer for the codes of dynamic blocks. The
 * buffer must not be moved while the state is used, and serves one stream at a time. To start
 * another stream, call this again or set pState->progress to 0, and reset *pMode and *pCodeLenBits.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksInflateInit_8u(NtksInflateState* pState, Ntk8u* pWorkBuffer);

/* Decodes until the stream ends, the source is used up or the destination is full.
 *
 * ppSrc, pSrcLen: source and its length in bytes, 0 or more; on return what is left of it. Nothing
 *   after the byte that holds the stream's last bit is taken.
 * pCode, pCodeLenBits: the bits that were taken from the source and not yet decoded, least
 *   significant first, and their number, 0 to 32; 0 at the start of a stream. Bits above that
 * number are ignored on entry and 0 on return. At the end of the stream fewer than 8 are left, the
 * rest of its last byte, unless the caller passed in more. pHistory, historyLen: the history, the
 * data before *ppDst that matches may refer to; the last 32768 bytes are enough. Null and 0: what
 * the calls for this stream have decoded directly before *ppDst; a new stream has no history.
 * Otherwise historyLen bytes in any place: data decoded to another buffer, or a preset dictionary.
 * ppDst, pDstLen: destination and its capacity in bytes, 0 or more; on return what is left of it,
 *   with undefined contents. Must not overlap the source or the history.
 * pMode: the place in the stream, one of the values above; ntkInflateBlockHeader to start one.
 *   With ntkInflateFixed and a new state the source starts within a block with the fixed codes,
 * after its header, and that block is the last. pState: an all-zero state has no work buffer; only
 * stored and fixed blocks can then be decoded.
 *
 * Returns
 * - ntkStsNoErr if the stream has ended (*pMode is ntkInflateFinished; a further call does
 * nothing), or if the whole source is taken and the stream continues (any other *pMode, *pSrcLen is
 * 0);
 * - ntkStsDstFull, a warning, if the destination is full (*pDstLen is 0) and the stream has more
 *   data: call again with room;
 * - ntkStsBadSrcData if the source is not a deflate stream: a block type of 3, a stored length that
 *   does not match its complement, more than 286 or 30 codes, over-subscribed codes, incomplete
 * codes (except a single code of 1 bit, or no distance code, which are allowed as long as no unused
 * bit pattern occurs), no code for the end of the block, a repetition of code lengths before the
 * first or beyond the last, the symbols 286 and 287 and the distance symbols 30 and 31, or a
 * distance that reaches back beyond the history;
 * - ntkStsNullPtr, also for a dynamic block if there is no work buffer;
 * - ntkStsBadSize for a negative length;
 * - ntkStsBadValue if *pCodeLenBits or *pMode is out of range, or *pMode is within a dynamic block
 *   but there is no work buffer or its codes were never read.
 * After an error all values are unchanged; the destination is undefined up to its capacity, and a
 * stream that had reached a dynamic block cannot be continued.
 */
NTK_API NtkStatus ntksInflate_8u(const Ntk8u** ppSrc, int* pSrcLen, Ntk32u* pCode,
                                 int* pCodeLenBits, const Ntk8u* pHistory, Ntk8u** ppDst,
                                 int* pDstLen, int historyLen, int* pMode,
                                 NtksInflateState* pState);

#ifdef __cplusplus
}
#endif
