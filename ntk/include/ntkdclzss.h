/* LZSS, streaming: part of libntkdc.so.12, included by ntkdc.h.
 *
 * A stream of literals and matches of 3 to 386 bytes at distances up to 16383; the note at the
 * head of ntk/dc/lzss/encode.cpp has the format to the bit. Source of the method: J. A. Storer, T.
 * G. Szymanski, "Data Compression via Textual Substitution", 1982. A stream holds neither its
 * length nor that of its data.
 *
 * Common to the calls that code:
 * - *ppSrc, *pSrcLen, *ppDst, *pDstLen: what is left of source and destination, moved on by what
 *   the call took and gave. The window is in the state: both may be cut anywhere, and a piece may
 *   be moved or freed after the call. How they are cut does not change the stream. On an error the
 *   arguments stay as they were; the destination may have been written to, and data not yet
 *   delivered are lost.
 * - Source, destination and state must not overlap.
 * - pState: a block of the size that ntksLZSSGetSize_8u gives, for encoding or decoding, whichever
 *   it was last initialised for. Any length of data may pass through it.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr for a null pointer, or one pointed to; ntkStsBadSize when
 *   a length is negative; ntkStsDstFull (a warning: everything else is done as far as it goes; call
 *   again with more room, even with an empty source); ntkStsBadValue when the state is not
 *   initialised for the call.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Size in bytes of a state. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksLZSSGetSize_8u(int* pSize);

/* Makes the state that of an encoder at the start of a stream.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeLZSSInit_8u(Ntk8u* pState);

/* Takes the source and writes what can be written: the encoder looks ahead, so that up to 3088
 * bytes of the source are written by later calls or by a flush. After ntkStsNoErr the source is
 * taken whole.
 */
NTK_API NtkStatus ntksEncodeLZSS_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                                    Ntk8u* pState);

/* Writes all that was taken: after ntkStsNoErr what was written so far decodes to all of it. The
 * stream may go on after a flush, at the price of a few bytes; to go on after ntkStsDstFull without
 * ending the flush is sound, too. A second flush writes nothing.
 */
NTK_API NtkStatus ntksEncodeLZSSFlush_8u(Ntk8u** ppDst, int* pDstLen, Ntk8u* pState);

/* Makes the state that of a decoder at the start of a stream.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksDecodeLZSSInit_8u(Ntk8u* pState);

/* Decodes the source, which may hold anything: nothing outside the buffers is read or written. The
 * decoder may run ahead of the destination: after ntkStsDstFull the state holds data to come, and
 * the source may be taken whole. Where the destination takes exactly the data of the source, the
 * status is ntkStsNoErr.
 * Also returns ntkStsBadSrcData when the stream is malformed, in this call or in an earlier one;
 * then the state must be initialised again. A stream that is cut off is no error: the rest may
 * come.
 */
NTK_API NtkStatus ntksDecodeLZSS_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                                    Ntk8u* pState);

#ifdef __cplusplus
}
#endif
